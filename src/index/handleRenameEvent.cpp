// How FsEventHandler pairs the two halves of a rename.
#include <strings.h>

#include "index/FSEventHandlerArguments.h"
#include "index/FsEventHandler.h"
#include "index/NamesOnDisk.h"
#include "index/exclusionStatus.h"
#include "index/trace.h"

/// Whether the item is still to be taken as one that was created.
bool FsEventHandler::handleRenameEvent(Arguments& arguments, bool exists, int32_t status) {
    const EventId id = arguments.eventId;
    Cache& cache = *arguments.cache;
    if (exists && previousEventPath_) {
        if (status == kStatusNoRule && arguments.folder->ruleType != kRuleExclude) {
            logIf(debug_, Info,
                  "%llu     Should move previous eventPath '%s' to eventPath, but eventPath is "
                  "configured to be ignored.",
                  id, previousEventPath_->c_str());
            logIf(debug_, Info, "%llu     -> Clearing previous event path", id);
            cache.removePath(*previousEventPath_, arguments.eventId);
            client_.reloadResultSet();
            previousEventPath_.reset();
            return false;
        }
        return moveHere(arguments);
    }
    if (exists) {
        logIf(debug_, Info,
              "%llu     2nd rename event; we didn't get the first one, so we treat this as a "
              "normal item creation",
              id);
        return true;
    }
    if (previousEventPath_) {
        logIf(debug_, Info,
              "%llu     There has already been a (unrelated) rename event; the move target was "
              "outside the scope, so we never got the balancing one and the item was never "
              "actually moved. we'll do that now.",
              id);
        logIf(debug_, Info, "%llu     -> Clearing previous event path", id);
        cache.removePath(*previousEventPath_, arguments.eventId);
    }
    logIf(debug_, Info, "%llu     -> Remembering event path for processing by next event", id);
    previousEventPath_ = arguments.eventURL;
    previousInode_ = arguments.inode;
    lastEventId_ = arguments.eventId;
    return false;
}

bool FsEventHandler::moveHere(Arguments& arguments) {
    const EventId id = arguments.eventId;
    Cache& cache = *arguments.cache;
    const FileURL from = *std::exchange(previousEventPath_, std::nullopt);
    const FileURL& to = arguments.eventURL;
    cache.removePath(to, arguments.eventId);
    logIf(debug_, Info, "%llu     -> Moving previous eventPath '%s' to eventPath", id,
          from.c_str());
    const bool isFile =
        arguments.eventPathType == ITEM_FILE || arguments.eventPathType == ITEM_BUNDLE;
    const MoveStatus status =
        cache.movePath(from, to,
                       {.fromInode = previousInode_,
                        .toInode = arguments.inode,
                        .ofType = static_cast<uint8_t>(isFile ? 1 : 2),
                        .forFsEventId = arguments.eventId,
                        .includeInRecentItems = arguments.folder->includeContentsInRecentItems});
    if (processFlags.dumpCache) cache.dumpItem(nullptr, arguments.eventId);
    switch (status) {
        case MoveStatus::moved:
        case MoveStatus::sourceRemoved:
            client_.itemRenamedFrom(
                from, to,
                {.fromInode = previousInode_, .toInode = arguments.inode, .external = true});
            return false;
        case MoveStatus::unknown:
            logIf(debug_, Info,
                  "%llu     Previous eventPath '%s' does not exist in cache, so we treat this as "
                  "a normal item creation.",
                  id, from.c_str());
            cache.removeRecentItemsBelowURL(from);
            return true;
        case MoveStatus::destinationExists:
            break;
    }
    return false;
}

bool FsEventHandler::pathDiffersOnlyInCase(uint64_t eventId, const FileURL& url) const {
    const EventId id = eventId;
    const Result<bool> isCaseSensitive = names_->isCaseSensitive(url);
    if (!isCaseSensitive) {
        logIf(debug_, Info,
              "%llu      Failed to check wheter path is on a case sensitive filesystem: %s; "
              "Assuming value NO",
              id, isCaseSensitive.error().description.c_str());
    } else if (isCaseSensitive.value()) {
        logIf(debug_, Info, "%llu     Filesystem is case-sensitive: %s", id, url.c_str());
        return false;
    }
    const Result<std::string> actual = names_->nameOf(url);
    if (!actual) {
        logIf(debug_, Info, "%llu      Failed to read actual path from filesystem: %s", id,
              actual.error().description.c_str());
        return false;
    }
    const std::string name(url.lastPathComponent());
    return strcasecmp(actual.value().c_str(), name.c_str()) == 0 && actual.value() != name;
}
