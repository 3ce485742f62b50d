#pragma once
#include <memory>
#include <string_view>
#include <vector>

#include "index/globalRules.h"

class Project;

/// Which folders of a project can have items in its index: the others need no watching.
/// A value of its time: made anew when rules change. Threads: any, one at a time.
class FoldersOfInterest {
  public:
    explicit FoldersOfInterest(std::shared_ptr<const Project> project);
    /// Asked from the top down: a folder below one that is none is never asked about.
    bool contains(std::string_view path) const;

  private:
    std::shared_ptr<const Project> project_;
    std::vector<FolderRules> rules_;  // of the folders in sorderFoldersDesc
};
