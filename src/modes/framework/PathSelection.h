#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "util/FileURL.h"

/// Which leading part of a row's path line is selected. A value.
/// Owner:   whoever moves it. Threads: any.
/// Units:   0: nothing; 1: the root; k from 2 on: the path of the first k - 1 components.
/// Fails:   never; a component that the line does not have counts as nothing.
class PathSelection {
  public:
    explicit PathSelection(const FileURL& path);

    uint64_t selectedPathComponent() const { return selectedPathComponent_; }
    uint64_t count() const { return pathComponents_.size(); }
    bool isPathComponentSelected() const { return pathSelection().has_value(); }
    std::optional<FileURL> pathSelection() const;
    /// As deep as this path; whose components need not be the line's.
    void setPathSelection(const std::optional<FileURL>& url);
    /// True if something was selected.
    bool clearPathSelection();
    /// From nothing to the whole path, then towards the root, then to nothing.
    void shrinkPathSelection();
    /// The other way round.
    void extendPathSelection();
    /// Nothing without a selection.
    std::optional<FileURL> urlFromSelectedPathComponents() const;

  private:
    std::vector<std::string> pathComponents_;  // behind the root
    uint64_t selectedPathComponent_ = 0;
};
