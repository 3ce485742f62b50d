#include "index/FSScanner.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>

#include "index/ScanDirectoryOperation.h"
#include "index/trace.h"
#include "util/FileIO.h"
#include "util/World.h"
#include "util/log.h"

namespace {

/// Newest first: depth first, so that few folders are open and few jobs wait.
std::unique_ptr<OperationQueue> newQueue() {
    const unsigned jobsAtOnce = 2 * std::max(1u, std::thread::hardware_concurrency());
    return std::make_unique<OperationQueue>("scanDirectoryQ", jobsAtOnce, Qos::userInitiated,
                                            OperationQueue::Order::newestFirst);
}

bool becomesIdle(const OperationQueue& queue) {
    constexpr std::chrono::milliseconds kPatience(250), kStep(1);
    for (auto waited = std::chrono::milliseconds(0); waited < kPatience; waited += kStep) {
        if (queue.isIdle()) return true;
        std::this_thread::sleep_for(kStep);
    }
    return queue.isIdle();
}

/// The directory as an item of its own, or as a recent one, as far as that is asked for.
void addDirectory(const FileURL& url, const ScanRequest& request) {
    struct statx status;
    if (!request.includeRootItem && request.changeType == 0) return;
    if (!statItem(url.c_str(), status)) return;
    if (request.includeRootItem)
        request.cache->addPath(
            url, {.ofType = ITEM_DIRECTORY,
                  .inode = status.stx_ino,
                  .metadata = processFlags.processMetadata ? metadataFromStatBuf(&status) : nullptr,
                  .fsEventId = request.fsEventId,
                  .changeType = request.changeType});
    else
        request.cache->addRecentItem(
            url, {.inode = status.stx_ino, .ofType = ITEM_DIRECTORY, .change = request.changeType});
}

}  // namespace

FSScanner::FSScanner() : scanDirectoryQ_(newQueue()) {}

FSScanner::~FSScanner() = default;

FSScanner& FSScanner::sharedInstance() {
    return World::current().shared<FSScanner>();
}

void FSScanner::contentsOfDirectory(const FileURL& url, ScanRequest request) {
    if (FileHandle handle{::open(url.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)}; !handle) {
        traceScan("%llu     opendir(\"%s\") failed: %s", EventId{request.fsEventId}, url.c_str(),
                  std::strerror(errno));
        if (request.projectFolderCountSemaphore) request.projectFolderCountSemaphore->signal();
        return;
    }
    addDirectory(url, request);
    const std::optional<int64_t> maxDepth = request.maxDepth;
    const std::shared_ptr<ProjectFolderScan> scan = beginScan(std::move(request));
    const std::future<void> firstJob = scan->firstJob();
    scan->queue.addOperation(std::make_shared<ScanDirectoryOperation>(
        scan,
        ScanDirectoryOperation::Directory{.url = url, .maxDepth = maxDepth, .isFirst = true}));
    firstJob.wait();
}

OperationQueue& FSScanner::scanDirectoryQ() {
    std::lock_guard lock(mutex_);
    return *scanDirectoryQ_;
}

std::shared_ptr<ProjectFolderScan> FSScanner::beginScan(ScanRequest request) {
    forgetWhatHasEnded();
    std::lock_guard lock(mutex_);
    auto scan = std::make_shared<ProjectFolderScan>(*this, *scanDirectoryQ_, std::move(request));
    scans_.push_back(scan);
    return scan;
}

void FSScanner::abortScan() {
    isAborting_ = true;
    abortCount_.add(1);
    OperationQueue& queue = scanDirectoryQ();
    queue.cancelAllOperations();
    if (!becomesIdle(queue)) leaveBehind(queue);
    isAborting_ = false;
}

void FSScanner::leaveBehind(const OperationQueue& queue) {
    std::vector<std::weak_ptr<ProjectFolderScan>> scans;
    {
        std::lock_guard lock(mutex_);
        if (scanDirectoryQ_.get() != &queue) return;  // somebody else has done it
        leftBehind_.push_back(std::exchange(scanDirectoryQ_, newQueue()));
        scans.swap(scans_);
        logWarning("Scan jobs do not end and are left behind; queues left behind: %zu",
                   leftBehind_.size());
    }
    for (const auto& scan : scans)
        if (const auto alive = scan.lock()) alive->release();
}

void FSScanner::forgetWhatHasEnded() {
    std::vector<std::unique_ptr<OperationQueue>> ended;  // their ends wait for their threads
    std::lock_guard lock(mutex_);
    std::erase_if(scans_, [](const auto& scan) { return scan.expired(); });
    std::erase_if(leftBehind_, [&](auto& queue) {
        if (!queue->isIdle()) return false;
        ended.push_back(std::move(queue));
        return true;
    });
}
