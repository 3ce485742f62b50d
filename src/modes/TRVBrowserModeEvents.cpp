#include <sys/stat.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>

#include "index/DirectoryOnDisk.h"
#include "index/Metadata.h"
#include "index/fsEventFlagNames.h"
#include "modes/TRVBrowserMode.h"
#include "modes/framework/ModeHost.h"
#include "util/Unicode.h"
#include "util/log.h"

using namespace std::chrono_literals;

// How the list follows its folder.

namespace {

struct ItemOnDisk {
    FileURL path;
    bool exists;
};

/// The folder's path without links; the item's own name stays, so that a link is itself and not
/// what it leads to.
ItemOnDisk normalized(const std::string& path) {
    const FileURL url(path);
    struct statx info;
    const bool exists = statItem(path.c_str(), info);
    if (!exists && errno != ENOENT)
        logWarning("Failed to normalize %s: %s", logText(path).c_str(), std::strerror(errno));
    const auto folder = path == "/" ? std::nullopt : realPath(url.deletingLastPathComponent());
    return {folder ? folder->appending(url.lastPathComponent()) : url, exists};
}

void trace(const char* text, const FileURL& path) {
    logIf(processFlags.debugFsEvents, Debug, "%s: %s", text, logText(path.path()).c_str());
}

}  // namespace

void TRVBrowserMode::directoryDidChange(const FileURL& old, const FileURL& now) {
    MainQueue::async([this, old, now] {
        if (eventStream_) {
            eventStream_.reset();
            logIf(processFlags.debugFsEvents, Debug, "Stopped event stream for browsed folder %s",
                  logText(old.path()).c_str());
        }
        if (now.empty() || now != currentDirectoryURL()) return;
        eventStream_ = parts_.fileEvents.streamCreate(
            {.paths = {now},
             .shouldWatch = [folder = now.path()](std::string_view path) { return path == folder; },
             .callback = [this](FileEventBatch batch) { fsEventCallback(std::move(batch)); }});
        eventStream_->start();
        if (isActive()) host().updateTextsOfCurrentMode();
    });
}

void TRVBrowserMode::fsEventCallback(FileEventBatch batch) {
    if (!isActive()) {
        contentIsOld_ = true;  // read when somebody looks again
        return;
    }
    serialFsEventQ_.addBlock([this, batch = std::move(batch)] { processEvents(batch); });
}

void TRVBrowserMode::processEvents(const FileEventBatch& batch) {
    EventOutcome outcome;
    for (const FileEvent& event : batch) processEvent(event, outcome);
    if (outcome.moveSource) {
        trace(
            "No move destination event received after move source, item moved out of currentPath: "
            "reloading",
            *outcome.moveSource);
        outcome.reloads++;
    }
    if (outcome.reloads == 0) return;
    setLastSearchWasSlow(true);
    contentIsOld_ = true;
    const bool single = outcome.reloads == 1 && batch.size() == 1;
    MainQueue::async([this, single] {
        if (single)
            reloadInBackgroundWithDelayAnimated(true);
        else
            reload(true);
    });
}

void TRVBrowserMode::reloadInBackgroundWithDelayAnimated(bool animated) {
    delayTimer_.start(1s, [this, animated] { reload(animated); });
}

void TRVBrowserMode::processEvent(const FileEvent& event, EventOutcome& outcome) {
    const FileURL current = currentDirectoryURL();
    const auto [path, exists] = normalized(event.path);
    logIf(processFlags.debugFsEvents, Debug, "%llu eventPath: %s %s",
          static_cast<unsigned long long>(event.id), logText(path.path()).c_str(),
          fsEventFlagNames(event.flags).c_str());
    constexpr uint32_t kLost =
        kFSEventStreamEventFlagMustScanSubDirs | kFSEventStreamEventFlagRootChanged;
    if (event.flags & kLost) {
        outcome.reloads++;
        return;
    }
    if (path == current) {
        trace("Is currentPath", path);
        if (!(event.flags & kFSEventStreamEventFlagItemCreated)) return;
        trace("Create event, reloading", path);
        outcome.reloads++;
        return;
    }
    if (!path.hasPrefix(current)) {
        trace("Path missmatch, ignoring", path);
        return;
    }
    if (path.deletingLastPathComponent() != current) {
        trace("Nested too deep, ignoring", path);
        return;
    }
    trace("Is child of currentPath", path);
    const bool isRename = (event.flags & kFSEventStreamEventFlagItemRenamed) != 0;
    if (!isRename && outcome.moveSource) {  // only the next event can be the other half
        outcome.moveSource.reset();
        outcome.reloads++;
    }
    if (isRename) {
        processRename(path, exists, outcome);
    } else if (event.flags & kFSEventStreamEventFlagItemRemoved) {
        trace("Remove event, reloading", path);
        processRemoval(path, event.flags);
        outcome.reloads++;
    } else {
        processChange(path, event.flags, outcome);
    }
}

void TRVBrowserMode::processRename(const FileURL& path, bool exists, EventOutcome& outcome) {
    if (!exists) {
        trace("Marking as move source", path);
        if (outcome.moveSource) outcome.reloads++;  // the one before has left the folder
        outcome.moveSource = path;
        return;
    }
    if (!outcome.moveSource) {
        trace("No matching source event, treating as new item", path);
        outcome.reloads++;
        return;
    }
    trace("Found move destination", path);
    MainQueue::async([this, rename = ItemRename{*outcome.moveSource, path, true}] {
        contentIsOld_ = true;
        itemRenamedFrom(rename);
    });
    outcome.moveSource.reset();
}

void TRVBrowserMode::processRemoval(const FileURL& path, uint32_t flags) {
    MainQueue::async([this, path, own = (flags & kFSEventStreamEventFlagOwnEvent) != 0] {
        auto& saved = selection();
        if (!saved) return;
        if (std::erase(saved->selectedItems, Selection::Item(path)) == 0) return;
        if (!saved->selectedItems.empty() || !own) return;
        saved->clearSelection = true;
        logIf(processFlags.debugSelection, Debug,
              "FsEventHandler received event for file %s; Set clearSelection to YES: %p",
              logText(path.path()).c_str(), static_cast<void*>(&*saved));
    });
}

void TRVBrowserMode::processChange(const FileURL& path, uint32_t flags, EventOutcome& outcome) {
    const auto row = rowIndexOfFilteredItemByURL(path);
    if (!row) {
        // What is new has no row yet.
        if (flags & kFSEventStreamEventFlagItemCreated) {
            trace("Create event, reloading", path);
            outcome.reloads++;
        } else {
            trace("Ignoring event because of flags", path);
        }
        return;
    }
    MainQueue::async([this, path] {
        updateRowRepresentingURL(path);
        trace("Updated Browser", path);
    });
}
