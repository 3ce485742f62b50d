#include "index/DirectoryListing.h"

#include <dirent.h>

#include <cerrno>
#include <climits>
#include <cstring>

#include "index/exclusionStatus.h"
#include "index/trace.h"
#include "platform/FileTypes.h"

namespace {

constexpr int64_t kEntriesAtOnce = 8192;  // so that rows of a large directory appear early

}  // namespace

uint8_t DirectoryListing::Kind::type() const {
    const int type = isBundle ? ITEM_BUNDLE : isDirectory ? ITEM_DIRECTORY : ITEM_FILE;
    return static_cast<uint8_t>(isLink ? type | ITEM_SYMLINK : type);
}

DirectoryListing::DirectoryListing(const ScanDirectoryOperation& operation,
                                   std::shared_ptr<ProjectFolderScan> scan,
                                   const ScanDirectoryOperation::Directory& directory,
                                   FileHandle handle)
    : operation_(operation),
      scan_(std::move(scan)),
      request_(scan_->request),
      directory_(directory),
      handle_(std::make_shared<FolderHandle>(std::move(handle), scan_->openFolders)),
      withMetadata_(processFlags.processMetadata),
      lane_(request_.cache->pool().take()) {
    if (!request_.rules.rules.empty() || !request_.rules.foldersToSkip.empty())
        subject_.emplace(request_.projectSearchFolderURL.path(), directory_.url.path());
    beginBatch();
}

void DirectoryListing::beginBatch() {
    batch_ = {};
    batch_.folder = directory_.url;
    batch_.folderItem = directory_.item;
    batch_.structureVersion = directory_.structureVersion;
    batch_.fsEventId = request_.fsEventId;
    version_ = request_.cache->structureVersion();
}

void DirectoryListing::publish() {
    if (!batch_.items.empty()) {
        // Later parts of a large directory meet the first one, and have no map of their own.
        if (isFirstBatch_) batch_.makeMap(*lane_);
        isFirstBatch_ = false;
        request_.cache->addBatch(std::move(batch_));
    }
    // Only now: what the jobs find is taken in after the items that they hang on.
    scan_->queue.addOperations(children_);
    children_.clear();
    count();
    beginBatch();
}

void DirectoryListing::count() {
    if (request_.ignored) request_.ignored->add(ignored_);
    if (request_.scanned && request_.performBlock) {
        const int64_t after = request_.scanned->add(scanned_), before = after - scanned_;
        const int64_t every = request_.every;
        for (int64_t due = every ? after / every - before / every : 0; due > 0; due--)
            if (scan_->scanner.searchModeActive()) request_.performBlock();
    }
    scanned_ = ignored_ = 0;
}

bool DirectoryListing::run() {
    bool any = false;
    FolderReader reader(handle_->get());
    while (!operation_.isCancelled()) {
        const auto entry = reader.next();
        if (!entry) {
            publish();
            return any;
        }
        any = true;
        takeEntry(*entry);
        if (scanned_ >= kEntriesAtOnce) publish();
    }
    children_.clear();
    publish();
    return true;
}

void DirectoryListing::takeEntry(const FolderReader::Entry& entry) {
    scanned_++;
    const Kind kind = kindOf(entry);
    if (subject_) subject_->setName(entry.nameView());
    const bool scan = isToBeScanned(entry, kind);
    fs_item_t* item = nullptr;
    if (isWanted(kind.type())) {
        item = batch_.add(*lane_, {.name = entry.nameView(),
                                   .type = kind.type(),
                                   .inode = entry.inode,
                                   .withMap = (kind.type() & ITEM_DIRECTORY) != 0});
        if (item && withMetadata_ && kind.hasStatus) {
            fs_item_metadata metadata;
            fillMetadata(metadata, status_);
            ItemTree::setMetadata(*lane_, item, &metadata);
        }
    }
    if (scan) addChild(entry, item);
}

DirectoryListing::Kind DirectoryListing::kindOf(const FolderReader::Entry& entry) {
    Kind kind;
    kind.isDirectory = entry.type == DT_DIR;
    kind.isLink = entry.type == DT_LNK;
    if (entry.type == DT_UNKNOWN || withMetadata_) {
        kind.hasStatus = statItem(handle_->get(), entry.name, status_);
        if (kind.hasStatus) {
            kind.isDirectory = S_ISDIR(status_.stx_mode);
            kind.isLink = kind.isLink || S_ISLNK(status_.stx_mode);
        } else {
            traceScan("%llu     Failed to lstat '%s': %s", EventId{request_.fsEventId},
                      urlOf(entry).c_str(), std::strerror(errno));
        }
    }
    if (kind.isLink) reportBrokenLink(entry);
    kind.isBundle = kind.isDirectory && entry.nameView().find('.') != std::string_view::npos &&
                    request_.cache->fileTypes().isFilePackageAtPath(urlOf(entry));
    return kind;
}

/// Where a link leads decides nothing here, so it is only looked at when somebody reads the log:
/// the way there may lead over a dead server.
void DirectoryListing::reportBrokenLink(const FolderReader::Entry& entry) const {
    struct stat target;
    if (processFlags.debugScan && fstatat(handle_->get(), entry.name, &target, 0) != 0 &&
        errno != ENOENT)
        traceScan("%llu     Failed to stat '%s': %s", EventId{request_.fsEventId},
                  urlOf(entry).c_str(), std::strerror(errno));
}

bool DirectoryListing::isToBeScanned(const FolderReader::Entry& entry, const Kind& kind) {
    if (!kind.isDirectory || kind.isBundle || kind.isLink) return false;
    if (subject_ &&
        exclusionStatus(subject_->path(), subject_->lastPathComponentOffset(), ITEM_DIRECTORY,
                        request_.rules.foldersToSkip) == kStatusExcluded) {
        traceScan(
            "%llu        Not adding path to list of folders to be scanned. Path has been "
            "excluded: %s",
            EventId{request_.fsEventId}, urlOf(entry).c_str());
        return false;
    }
    return !directory_.maxDepth || *directory_.maxDepth >= 1;
}

bool DirectoryListing::isWanted(uint8_t type) {
    exclusion_status_t status = kStatusNoRule;
    if (subject_)
        status = exclusionStatus(subject_->path(), subject_->lastPathComponentOffset(), type,
                                 request_.rules.rules);
    if (status == kStatusExcluded) {
        traceScan("%llu        Item has been explicitly excluded.", EventId{request_.fsEventId});
        ignored_++;
        return false;
    }
    if (status == kStatusIncluded || request_.rules.wantUnmatchedItems) return true;
    traceScan(
        "%llu         Item not matched and unmatched items should be ignored. Ignoring event "
        "path.",
        EventId{request_.fsEventId});
    return false;
}

void DirectoryListing::addChild(const FolderReader::Entry& entry, fs_item_t* item) {
    scan_->addJob();
    ScanDirectoryOperation::Directory child{
        .url = urlOf(entry), .item = item, .structureVersion = version_};
    if (directory_.maxDepth) child.maxDepth = *directory_.maxDepth - 1;
    const bool hasUsablePath = child.url.path().size() < PATH_MAX;
    if (!hasUsablePath || !handle_->isOneTooMany()) child.parent = handle_;
    children_.push_back(std::make_shared<ScanDirectoryOperation>(scan_, std::move(child)));
}

FileURL DirectoryListing::urlOf(const FolderReader::Entry& entry) const {
    return directory_.url.appending(entry.nameView());
}
