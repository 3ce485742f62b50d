#include "index/ScanDirectoryOperation.h"

#include <fcntl.h>

#include <cerrno>
#include <cstring>

#include "index/DirectoryListing.h"
#include "util/log.h"

namespace {

using Id = unsigned long long;

#define debugLog(...) logIf(processFlags.debugScan, Info, __VA_ARGS__)

}  // namespace

ScanDirectoryOperation::ScanDirectoryOperation(std::shared_ptr<ProjectFolderScan> scan,
                                               Directory directory)
    : scan_(std::move(scan)), directory_(std::move(directory)) {
    completionBlock = [this] { complete(); };
}

ScanDirectoryOperation::~ScanDirectoryOperation() {
    if (!completed_) complete();
}

std::future<void> ScanDirectoryOperation::ended() {
    ended_ = std::make_unique<std::promise<void>>();
    return ended_->get_future();
}

void ScanDirectoryOperation::complete() {
    completed_ = true;
    if (scan_->operations_left.fetch_sub(1) == 0) endScan();
    if (ended_) ended_->set_value();
}

/// Whoever waits for the scan may then drop the Cache, and it is not to end on a thread of ours.
void ScanDirectoryOperation::endScan() {
    const auto semaphore = std::move(scan_->request.projectFolderCountSemaphore);
    {
        const ScanRequest request = std::move(scan_->request);
        request.cache->takeInBatches();
        debugLog("%llu     Scan of %s ended", Id{request.fsEventId},
                 request.projectSearchFolderURL.c_str());
    }
    if (semaphore) semaphore->signal();
}

void ScanDirectoryOperation::main() {
    const Id id = scan_->request.fsEventId;
    if (isCancelled()) {
        debugLog("%llu     Scan of %s aborted.", id, directory_.url.c_str());
        return;
    }
    bool hasEntries = false;
    if (FileHandle handle = open())
        hasEntries = DirectoryListing(*this, scan_, directory_, std::move(handle)).run();
    else
        debugLog("%llu Failed to open folder: %s", id, std::strerror(errno));
    if (!hasEntries) addDirectoryItself();
}

FileHandle ScanDirectoryOperation::open() {
    const int noFollow = directory_.isFirst ? 0 : O_NOFOLLOW;
    const int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | noFollow;
    if (!directory_.parent) return FileHandle(::open(directory_.url.c_str(), flags));
    // The name ends the path, and so is NUL-terminated as the path is.
    const char* name = directory_.url.lastPathComponent().data();
    FileHandle handle(openat(directory_.parent->get(), name, flags));
    if (handle) directory_.parent.reset();
    return handle;
}

/// Kept: a directory without entries, or one that cannot be read, is added whatever the rules have
/// said about it.
void ScanDirectoryOperation::addDirectoryItself() {
    struct statx status;
    const std::string_view name = directory_.url.lastPathComponent();
    if (name == "/" || !statItem(directory_.url.c_str(), status)) return;
    Cache& cache = *scan_->request.cache;
    const ItemPool::Borrowed lane = cache.pool().take();
    ScanBatch batch;
    batch.folder = directory_.url.deletingLastPathComponent();
    batch.fsEventId = scan_->request.fsEventId;
    fs_item_t* item = batch.add(
        *lane, {.name = name, .type = ITEM_DIRECTORY, .inode = status.stx_ino, .withMap = true});
    if (!item) return;
    if (processFlags.processMetadata) {
        fs_item_metadata metadata;
        fillMetadata(metadata, status);
        ItemTree::setMetadata(*lane, item, &metadata);
    }
    cache.addBatch(std::move(batch));
}
