#include "index/ProjectFolderScan.h"

#include "index/trace.h"

ProjectFolderScan::ProjectFolderScan(FSScanner& owner, OperationQueue& jobs, ScanRequest what)
    : scanner(owner),
      queue(jobs),
      request(std::move(what)),
      projectFolderCountSemaphore_(request.projectFolderCountSemaphore) {}

void ProjectFolderScan::jobEnded() {
    if (operations_left.fetch_sub(1) != 0) return;
    {
        // Whoever waits may drop the Cache next, and it is not to end on a thread of ours.
        const ScanRequest ended = std::move(request);
        ended.cache->takeInBatches();
        traceScan("%llu     Scan of %s ended", EventId{ended.fsEventId},
                  ended.projectSearchFolderURL.c_str());
    }
    signalEnd();
}

void ProjectFolderScan::firstJobEnded() {
    if (!isFirstJobOver_.exchange(true)) firstJob_.set_value();
}

void ProjectFolderScan::signalEnd() {
    if (!isOver_.exchange(true) && projectFolderCountSemaphore_)
        projectFolderCountSemaphore_->signal();
}

void ProjectFolderScan::release() {
    firstJobEnded();
    signalEnd();
}
