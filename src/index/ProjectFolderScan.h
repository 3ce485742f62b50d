#pragma once
#include <atomic>
#include <future>

#include "index/FSScanner.h"
#include "index/FolderHandle.h"

/// What all jobs for one project folder share, and who waits for them.
/// Owner:   the jobs, together. Threads: any.
class ProjectFolderScan {
  public:
    ProjectFolderScan(FSScanner& owner, OperationQueue& jobs, ScanRequest what);

    /// One more job, beyond the first.
    void addJob() { operations_left.fetch_add(1, std::memory_order_relaxed); }
    /// A job has ended, whether it ran or not.
    void jobEnded();
    /// Ready when the first job has ended, or is not waited for any more.
    std::future<void> firstJob() { return firstJob_.get_future(); }
    void firstJobEnded();
    /// Nobody is to wait for these jobs any more: they hang on a disk that does not answer.
    void release();

    FSScanner& scanner;
    OperationQueue& queue;
    ScanRequest request;  // given up by the last job
    FolderHandle::Count openFolders = 0;

  private:
    void signalEnd();

    std::atomic<int64_t> operations_left = 0;
    const std::shared_ptr<ReverseSemaphore> projectFolderCountSemaphore_;
    std::promise<void> firstJob_;
    std::atomic<bool> isFirstJobOver_ = false;
    std::atomic<bool> isOver_ = false;
};
