#pragma once
#include <cstdint>
#include <functional>
#include <optional>

#include "util/FileURL.h"

class ModeHost;
class ModeSwitcher;
class Project;
class ProjectSwitcher;
class TRVMode;
class TRVSearchMode;
class UserMessages;

/// The digits with Command: the first nine projects; with Shift too, the current project takes that
/// place among them.
/// Owner:   AppDelegate. Threads: main.
class ProjectKeys {
  public:
    struct Parts {
        ModeHost& host;
        TRVSearchMode& searchMode;
        ModeSwitcher& modeSwitcher;
        ProjectSwitcher& projectSwitcher;
        UserMessages& messages;
        /// Shows a folder in Browser mode. Not on the main thread.
        std::function<void(const FileURL& folder)> browsePath;
    };
    explicit ProjectKeys(Parts parts) : parts_(std::move(parts)) {}

    /// Nothing: it is no such key. False: it is, and must do nothing in this mode.
    std::optional<bool> handleDigit(uint64_t keyCode, uint64_t flags, const TRVMode& mode);

  private:
    void switchTo(size_t index);
    void browse(const Project& project);
    void moveCurrentProjectTo(size_t index);

    const Parts parts_;
};
