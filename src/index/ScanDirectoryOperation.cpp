#include "index/ScanDirectoryOperation.h"

#include <fcntl.h>

#include <cerrno>
#include <cstring>

#include "index/DirectoryListing.h"
#include "index/trace.h"

ScanDirectoryOperation::ScanDirectoryOperation(std::shared_ptr<ProjectFolderScan> scan,
                                               Directory directory)
    : scan_(std::move(scan)), directory_(std::move(directory)) {
    completionBlock = [this] { complete(); };
}

ScanDirectoryOperation::~ScanDirectoryOperation() {
    if (!completed_) complete();
}

void ScanDirectoryOperation::complete() {
    completed_ = true;
    if (directory_.isFirst) scan_->firstJobEnded();
    scan_->jobEnded();
}

void ScanDirectoryOperation::main() {
    const EventId id = scan_->request.fsEventId;
    if (isCancelled()) {
        traceScan("%llu     Scan of %s aborted.", id, directory_.url.c_str());
        return;
    }
    bool hasEntries = false;
    if (FileHandle handle = open())
        hasEntries = DirectoryListing(*this, scan_, directory_, std::move(handle)).run();
    else
        traceScan("%llu Failed to open folder: %s", id, std::strerror(errno));
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
