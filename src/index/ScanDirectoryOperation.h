#pragma once
#include <atomic>
#include <future>
#include <memory>
#include <optional>

#include "index/FSScanner.h"
#include "index/FolderHandle.h"

/// What all jobs for one project folder share.
/// Owner:   the jobs, together. Threads: any.
struct ProjectFolderScan {
    ProjectFolderScan(FSScanner& owner, ScanRequest what)
        : scanner(owner), request(std::move(what)) {}

    FSScanner& scanner;
    ScanRequest request;                       // given up by the last job
    std::atomic<int64_t> operations_left = 0;  // beyond the first: queued or running
    FolderHandle::Count openFolders = 0;
};

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

    /// Ready when the job has ended.
    std::future<void> ended();

  private:
    void complete();
    void endScan();
    FileHandle open();
    void addDirectoryItself();

    const std::shared_ptr<ProjectFolderScan> scan_;
    Directory directory_;
    std::unique_ptr<std::promise<void>> ended_;
    bool completed_ = false;
};
