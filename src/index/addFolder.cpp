// How FsEventHandler reads a folder anew.
#include "index/FSEventHandlerArguments.h"
#include "index/FSScanner.h"
#include "index/FsEventHandler.h"
#include "index/trace.h"
#include "util/Timer.h"

namespace {

constexpr uint32_t kContentsChanged =
    kFSEventStreamEventFlagItemCreated | kFSEventStreamEventFlagItemRemoved;
constexpr uint32_t kAccessChanged =
    kFSEventStreamEventFlagItemChangeOwner | kFSEventStreamEventFlagItemXattrMod;

std::optional<int64_t> levelsLeft(const FSEventHandlerArguments& arguments) {
    if (!arguments.folder->limitSearchDepth) return std::nullopt;
    const auto depth = static_cast<int64_t>(arguments.eventURL.pathComponents().size() -
                                            arguments.folder->url.pathComponents().size());
    // Kept: below a folder that is as deep as items may be, its own entries are still listed.
    return *arguments.folder->limitSearchDepth - depth;
}

}  // namespace

/// An event on the rights of a folder matters only if it was barred before.
bool FsEventHandler::isToBeScanned(const Arguments& arguments) const {
    if (arguments.hasFlag(kContentsChanged) || !arguments.hasFlag(kAccessChanged)) return true;
    const bool isKnown = arguments.cache->performBlockReadOnly([&](const ReadSection& section) {
        return arguments.cache->existsFsItemWithPath(section, arguments.eventURL);
    });
    const char* tail =
        arguments.eventURL == arguments.folder->url ? " Event path equals folder path." : "";
    const EventId id = arguments.eventId;
    if (isKnown)
        logIf(debug_, Info,
              "%llu     -> Skipping event path. Event was triggered by "
              "kFSEventStreamEventFlagItemChangeOwner or kFSEventStreamEventFlagItemXattrMod but "
              "this path has already been scanned.%s",
              id, tail);
    else
        logIf(debug_, Info,
              "%llu     Event was triggered by kFSEventStreamEventFlagItemChangeOwner or "
              "kFSEventStreamEventFlagItemXattrMod and this path has not been scanned yet.%s",
              id, tail);
    return !isKnown;
}

void FsEventHandler::addFolder(Arguments& arguments) {
    if (!isToBeScanned(arguments)) return;
    const EventId id = arguments.eventId;
    logIf(debug_, Info, "%llu     -> Enqueueing scan request for event path", id);
    Timer& timer = Timer::sharedInstance();
    const std::string measured =
        std::to_string(arguments.eventId) + ":SCAN:" + arguments.eventURL.path();
    timer.start(measured);
    const bool includeRootItem =
        arguments.eventURL != arguments.folder->url || arguments.folder->includeRoot;
    logIf(debug_, Info, "%llu     -> Scanning event path; Include root directory: %d", id,
          includeRootItem);
    const auto end = ReverseSemaphore::initWithCount(1);
    scanner_.contentsOfDirectory(arguments.eventURL,
                                 {.projectSearchFolderURL = arguments.folder->url,
                                  .cache = arguments.cache,
                                  .maxDepth = levelsLeft(arguments),
                                  .includeRootItem = includeRootItem,
                                  .rules = *arguments.rules,
                                  .fsEventId = arguments.eventId,
                                  .changeType = arguments.changeType(),
                                  .projectFolderCountSemaphore = end});
    end->wait();
    logIf(debug_, Info, "%llu     -> Scanning event path done", id);
    if (processFlags.dumpCache) arguments.cache->dumpItem(nullptr, arguments.eventId);
    timer.stop(measured);
}
