#include "index/FSScanner.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <thread>

#include "index/ScanDirectoryOperation.h"
#include "util/FileIO.h"
#include "util/World.h"
#include "util/log.h"

namespace {

using Id = unsigned long long;

unsigned jobsAtOnce() {
    return 2 * std::max(1u, std::thread::hardware_concurrency());
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

FSScanner::FSScanner()
    : scanDirectoryQ_("scanDirectoryQ", jobsAtOnce(), Qos::userInitiated,
                      OperationQueue::Order::newestFirst) {}

FSScanner& FSScanner::sharedInstance() {
    return World::current().shared<FSScanner>();
}

void FSScanner::contentsOfDirectory(const FileURL& url, ScanRequest request) {
    if (FileHandle handle{::open(url.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)}; !handle) {
        logIf(processFlags.debugScan, Info, "%llu     opendir(\"%s\") failed: %s",
              Id{request.fsEventId}, url.c_str(), std::strerror(errno));
        if (request.projectFolderCountSemaphore) request.projectFolderCountSemaphore->signal();
        return;
    }
    addDirectory(url, request);
    const std::optional<int64_t> maxDepth = request.maxDepth;
    auto scan = std::make_shared<ProjectFolderScan>(*this, std::move(request));
    auto first = std::make_shared<ScanDirectoryOperation>(
        std::move(scan),
        ScanDirectoryOperation::Directory{.url = url, .maxDepth = maxDepth, .isFirst = true});
    const std::future<void> ended = first->ended();
    scanDirectoryQ_.addOperation(std::move(first));
    ended.wait();
}

void FSScanner::abortScan() {
    isAborting_ = true;
    abortCount_.add(1);
    scanDirectoryQ_.cancelAllOperations();
    scanDirectoryQ_.waitUntilAllOperationsAreFinished();
    isAborting_ = false;
}
