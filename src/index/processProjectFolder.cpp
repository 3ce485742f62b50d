// How FsEventHandler takes one event in one project folder.
#include <fcntl.h>

#include <cerrno>
#include <cstring>

#include "index/FSEventHandlerArguments.h"
#include "index/FsEventHandler.h"
#include "index/Metadata.h"
#include "index/checkPathComponents.h"
#include "index/exclusionStatus.h"
#include "index/trace.h"
#include "util/FileIO.h"

namespace {

constexpr uint32_t kAccessChanged =
    kFSEventStreamEventFlagItemChangeOwner | kFSEventStreamEventFlagItemXattrMod;

bool isReadable(const FileURL& folder) {
    return static_cast<bool>(
        FileHandle(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)));
}

exclusion_status_t statusOf(const FSEventHandlerArguments& arguments) {
    if (!arguments.relativePath) return kStatusNoRule;  // the folder itself
    return exclusionStatus(arguments.relativePath->path(),
                           arguments.relativePath->lastPathComponentOffset(),
                           arguments.eventPathType, arguments.rules->rules);
}

uint8_t typeInRecentItems(uint8_t type) {
    return type == ITEM_FILE || type == ITEM_BUNDLE ? 1 : 2;
}

}  // namespace

void FsEventHandler::processProjectFolder(Arguments& arguments) {
    const EventId id = arguments.eventId;
    Cache& cache = *arguments.cache;
    if (arguments.hasFlag(kFSEventStreamEventFlagUnmount)) {
        logIf(debug_, Info, "%llu         Volume unmounted. Removing event path from cache", id);
        // Its files are not to be found now, but they are not gone.
        cache.removePath(arguments.eventURL, arguments.eventId, Marks::stay);
        return;
    }
    const bool isMount = arguments.hasFlag(kFSEventStreamEventFlagMount);
    if (isMount) {
        logIf(debug_, Info, "%llu         Volume mounted. Setting event path to folder path", id);
        arguments.eventURL = arguments.folder->url;
        arguments.eventPathIsBundle = false;
        arguments.eventPathType = ITEM_DIRECTORY;
    }
    const bool exists = lookAtDisk(arguments);
    FileURL bundle;
    switch (checkPathComponents(arguments, types_, bundle)) {
        case PathComponents::insideBundle:
            return addBundle(arguments, bundle);
        case PathComponents::tooDeep:
        case PathComponents::excluded:
            return;
        case PathComponents::wellFormed:
            break;
    }
    if (isToBeCleared(arguments, exists)) {
        clear(arguments);
        if (arguments.hasFlag(kFSEventStreamEventFlagItemRemoved) && !exists) return;
        if (isMount) return;
        // Kept: what vanished before it was looked at, and was not said to be removed, is added.
    }
    const exclusion_status_t status = statusOf(arguments);
    const bool wantUnmatchedItems = arguments.rules->wantUnmatchedItems;
    logIf(debug_, Info, "%llu     Exclusion status: %d; wantUnmatchedItems: %d", id, status,
          wantUnmatchedItems);
    const bool wanted =
        status == kStatusIncluded || (status == kStatusNoRule && wantUnmatchedItems);
    if (wanted && arguments.folder->includeContentsInRecentItems &&
        arguments.hasFlag(kFSEventStreamEventFlagItemModified))
        cache.addRecentItem(arguments.eventURL,
                            {.inode = arguments.inode,
                             .ofType = typeInRecentItems(arguments.eventPathType),
                             .change = 2});
    if (arguments.hasFlag(kFSEventStreamEventFlagItemRenamed) &&
        !handleRenameEvent(arguments, exists, status))
        return;
    const bool isFolder = arguments.eventPathIsDir && !arguments.eventPathIsBundle;
    if (arguments.hasFlag(kFSEventStreamEventFlagMustScanSubDirs) || isFolder) {
        if (wanted) addFolder(arguments);
    } else if (wanted) {
        addFile(arguments, status);
    }
    logIf(debug_, Info, "%llu     -> Done processing event path", id);
}

/// Whether it exists, as far as the event goes; kind, type, inode and metadata follow the disk.
bool FsEventHandler::lookAtDisk(Arguments& arguments) {
    struct statx found;
    bool exists = statItem(arguments.eventURL.c_str(), found);
    if (exists) {
        arguments.eventPathIsDir = S_ISDIR(found.stx_mode);
        arguments.eventPathIsBundle = arguments.eventPathIsDir &&
                                      !arguments.eventURL.pathExtension().empty() &&
                                      isFilePackage(types_, arguments.eventURL);
        arguments.inode = found.stx_ino;
        if (processFlags.processMetadata) arguments.metadata = metadataFromStatBuf(&found);
        if (arguments.hasFlag(kFSEventStreamEventFlagItemRenamed) &&
            pathDiffersOnlyInCase(arguments.eventId, arguments.eventURL))
            exists = false;
    } else {
        arguments.eventPathIsDir = !arguments.hasFlag(kFSEventStreamEventFlagItemIsFile);
        arguments.eventPathIsBundle = false;
        arguments.inode = 0;
    }
    arguments.eventPathType = arguments.eventPathIsBundle ? ITEM_BUNDLE
                              : arguments.eventPathIsDir  ? ITEM_DIRECTORY
                                                          : ITEM_FILE;
    logIf(debug_, Info, "%llu     Event path exists: %d", EventId{arguments.eventId}, exists);
    return exists;
}

void FsEventHandler::addBundle(Arguments& arguments, const FileURL& bundle) {
    struct statx found;
    if (!statItem(bundle.c_str(), found)) {
        logError("Failed to stat bundle path %s: %s", bundle.c_str(), std::strerror(errno));
        return;
    }
    const bool isRecent =
        arguments.withRecentItem && arguments.folder->includeContentsInRecentItems;
    const AddPathResult added = arguments.cache->addPath(
        bundle, {.ofType = ITEM_BUNDLE,
                 .inode = found.stx_ino,
                 .metadata = processFlags.processMetadata ? metadataFromStatBuf(&found) : nullptr,
                 .fsEventId = arguments.eventId,
                 .changeType = uint8_t{isRecent}});
    if (added.alreadyExists && processFlags.processMetadata)
        client_.updateRowRepresentingURL(bundle);
}

void FsEventHandler::addFile(Arguments& arguments, int32_t status) {
    const EventId id = arguments.eventId;
    const char* kind = arguments.eventPathIsBundle ? "bundle" : "file";
    logIf(debug_, Info,
          "%llu     Exclusion status: %d; Enqueueing request to add event path as new %s", id,
          status, kind);
    logIf(debug_, Info, "%llu     -> Adding event path as new %s", id, kind);
    // Kept: a link that comes by an event is a plain file, where a scan gives it its flag.
    const AddPathResult added = arguments.cache->addPath(
        arguments.eventURL,
        {.ofType = arguments.eventPathIsBundle ? uint8_t{ITEM_BUNDLE} : uint8_t{ITEM_FILE},
         .inode = arguments.inode,
         .metadata = std::move(arguments.metadata),
         .fsEventId = arguments.eventId,
         .changeType = arguments.changeType()});
    if (added.alreadyExists && processFlags.processMetadata)
        client_.updateRowRepresentingURL(arguments.eventURL);
}

bool FsEventHandler::isToBeCleared(const Arguments& arguments, bool exists) const {
    bool readable = true;
    if (exists && arguments.eventPathIsDir && arguments.hasFlag(kAccessChanged)) {
        readable = isReadable(arguments.eventURL);
        logIf(debug_, Info, "%llu     Event path is readable: %d", EventId{arguments.eventId},
              readable);
    }
    return arguments.hasFlag(kFSEventStreamEventFlagMustScanSubDirs) ||
           (!exists && !arguments.hasFlag(kFSEventStreamEventFlagItemRenamed)) || !readable;
}

void FsEventHandler::clear(const Arguments& arguments) {
    logIf(debug_, Info, "%llu     Enqueueing clear request for event path",
          EventId{arguments.eventId});
    client_.clearSelection(arguments.eventURL);
    arguments.cache->removePath(arguments.eventURL, arguments.eventId);
}
