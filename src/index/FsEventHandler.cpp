#include "index/FsEventHandler.h"

#include <strings.h>

#include "index/FSEventHandlerArguments.h"
#include "index/NamesOnDisk.h"
#include "index/consolidateEvents.h"
#include "index/fsEventFlagNames.h"
#include "index/trace.h"

FsEventHandler::FsEventHandler(FsEventClient& client, FSScanner& scanner, const FileTypes& types)
    : FsEventHandler(client, scanner, types, std::make_unique<NamesOnDisk>()) {}

FsEventHandler::FsEventHandler(FsEventClient& client, FSScanner& scanner, const FileTypes& types,
                               std::unique_ptr<const NamesOnDisk> names)
    : client_(client), scanner_(scanner), types_(types), names_(std::move(names)) {}

FsEventHandler::~FsEventHandler() = default;

std::optional<FSEventHandlerArguments> FsEventHandler::newArguments() const {
    Arguments arguments;
    arguments.project = client_.currentProject();
    arguments.cache = client_.cacheForEvents();
    if (!arguments.project || !arguments.cache) return std::nullopt;
    arguments.global = GlobalRules::fromSettings();
    return arguments;
}

void FsEventHandler::processFsEvents(FileEventBatch events) {
    const bool debug = processFlags.debugFsEvents;
    logIf(debug, Info, "processFsEvents called for %zu events", events.size());
    std::optional<Arguments> arguments = newArguments();
    if (!arguments) return;
    consolidateEvents(events, debug);
    for (const FileEvent& event : events) process(*arguments, event);
    endRename(*arguments);
}

void FsEventHandler::processDifferences(std::span<const Difference> differences, uint64_t eventId) {
    std::optional<Arguments> arguments = newArguments();
    if (!arguments) return;
    for (const Difference& each : differences) {
        if (!each.remove) continue;
        client_.clearSelection(each.url);
        arguments->cache->removePath(each.url, eventId);
    }
    for (const Difference& each : differences) {
        if (!each.create) continue;
        const uint32_t kind =
            each.isDirectory ? kFSEventStreamEventFlagItemIsDir : kFSEventStreamEventFlagItemIsFile;
        arguments->withRecentItem = each.withRecentItem;
        process(*arguments, {.id = eventId,
                             .flags = kFSEventStreamEventFlagItemCreated | kind,
                             .path = each.url.path()});
    }
}

void FsEventHandler::rescan(const FileURL& folder, uint64_t eventId) {
    std::optional<Arguments> arguments = newArguments();
    if (!arguments) return;
    arguments->withRecentItem = false;
    process(*arguments,
            {.id = eventId,
             .flags = kFSEventStreamEventFlagMustScanSubDirs | kFSEventStreamEventFlagItemIsDir,
             .path = folder.path()});
}

bool FsEventHandler::isDebugged(const std::string& path) const {
    if (debugFsEventPath_ && !debugFsEventPath_->empty())
        return strcasecmp(path.c_str(), debugFsEventPath_->c_str()) == 0;
    return processFlags.debugFsEvents;
}

void FsEventHandler::process(Arguments& arguments, const FileEvent& event) {
    const EventId id = event.id;
    arguments.debug = debug_ = isDebugged(event.path);
    logIf(debug_, Info, "%llu Event path: '%s'", id, event.path.c_str());
    logIf(debug_, Info, "%llu     %s", id, fsEventFlagNames(event.flags).c_str());
    arguments.eventId = event.id;
    arguments.eventFlags = event.flags;
    if (isSkipped(arguments)) {
        logIf(debug_, Info, "%llu     -> Skipping event due to flag", id);
        return;
    }
    arguments.eventURL = FileURL::standardized(event.path);
    arguments.eventPathIsDir = arguments.hasFlag(kFSEventStreamEventFlagItemIsDir);
    arguments.eventPathIsBundle =
        arguments.eventPathIsDir &&
        arguments.eventURL.lastPathComponent().find('.') != std::string_view::npos &&
        isFilePackage(types_, arguments.eventURL);
    for (const auto& folder : arguments.project->sorderFoldersDesc()) {
        if (arguments.eventURL.hasPrefix(folder->url)) {
            arguments.folder = folder.get();
            processProjectFolder(arguments);
            arguments.metadata.reset();
            return;  // what the deepest folder says holds
        }
        logIf(debug_, Info, "%llu         Folder path does not match event path. Skipping.", id);
    }
}

bool FsEventHandler::isSkipped(const Arguments& arguments) const {
    constexpr uint32_t kChanges =
        kFSEventStreamEventFlagMustScanSubDirs | kFSEventStreamEventFlagItemCreated |
        kFSEventStreamEventFlagItemRemoved | kFSEventStreamEventFlagItemRenamed |
        kFSEventStreamEventFlagItemModified | kFSEventStreamEventFlagMount |
        kFSEventStreamEventFlagUnmount;
    constexpr uint32_t kFolderAccess =
        kFSEventStreamEventFlagItemChangeOwner | kFSEventStreamEventFlagItemXattrMod;
    constexpr uint32_t kMetadata = kFSEventStreamEventFlagItemInodeMetaMod |
                                   kFSEventStreamEventFlagItemChangeOwner |
                                   kFSEventStreamEventFlagItemModified;
    if (arguments.eventFlags == kFSEventStreamEventFlagHistoryDone) return true;
    if (arguments.hasFlag(kFSEventStreamEventFlagOwnEvent)) return true;
    if (arguments.hasFlag(kChanges)) return false;
    if (arguments.hasFlag(kFSEventStreamEventFlagItemIsDir) && arguments.hasFlag(kFolderAccess))
        return false;
    return !(processFlags.processMetadata && arguments.hasFlag(kMetadata));
}

void FsEventHandler::endRename(Arguments& arguments) {
    if (!previousEventPath_) return;
    const EventId id = lastEventId_;
    logIf(debug_, Info,
          "%llu     Did not receive matching rename event. Simply clearing previous eventPath "
          "'%s'",
          id, previousEventPath_->c_str());
    logIf(debug_, Info, "%llu     -> Clearing previous event path", id);
    arguments.cache->removePath(*previousEventPath_, lastEventId_);
    previousEventPath_.reset();
}

uint8_t FSEventHandlerArguments::changeType() const {
    if (!withRecentItem || !folder->includeContentsInRecentItems) return 0;
    if (hasFlag(kFSEventStreamEventFlagItemRenamed)) return 4;
    return hasFlag(kFSEventStreamEventFlagItemCreated | kFSEventStreamEventFlagItemCloned) ? 1 : 2;
}
