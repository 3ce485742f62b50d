#pragma once
#include <memory>
#include <optional>

#include "index/ProjectFolderScan.h"

/// The job that reads one directory, and makes one for each subfolder that is to be read too.
/// Owner:   scanDirectoryQ. Threads: made on any, runs on the queue's.
class ScanDirectoryOperation : public Operation {
  public:
    struct Directory {
        FileURL url;
        std::optional<int64_t> maxDepth = {};       // levels still allowed below it; none: all
        std::shared_ptr<FolderHandle> parent = {};  // to open it by its name; null: by its path
        fs_item_t* item = nullptr;                  // a hint, see ScanBatch
        uint64_t structureVersion = 0;
        bool isFirst = false;  // what the request names, even if it is a link
    };

    ScanDirectoryOperation(std::shared_ptr<ProjectFolderScan> scan, Directory directory);
    /// The completion step, unless it has been taken: also for a job that the queue has dropped.
    ~ScanDirectoryOperation() override;
    void main() override;

  private:
    void complete();
    FileHandle open();
    void addDirectoryItself();

    const std::shared_ptr<ProjectFolderScan> scan_;
    Directory directory_;
    bool completed_ = false;
};
