#include "modes/LiveIndex.h"

#include "index/FSScanner.h"
#include "modes/TRVSearchMode.h"
#include "modes/framework/ModeHost.h"
#include "util/Unicode.h"
#include "util/log.h"
#include "util/settings/OVUserDefaults.h"

LiveIndex::LiveIndex(TRVSearchMode& searchMode, const FileTypes& types)
    : searchMode_(searchMode),
      handler_(*this, FSScanner::sharedInstance(), types),
      comparison_(handler_, *this) {
    takeDebugFsEventPath();
    debugFsEventPath_ = OVUserDefaults::sharedInstance().addObserver(
        "debugFsEventPath", [this](auto&, auto&) { takeDebugFsEventPath(); });
}

void LiveIndex::takeDebugFsEventPath() {
    auto path = OVUserDefaults::sharedInstance().stringForKey("debugFsEventPath");
    // On the queue that looks at it.
    fsEventQ_.addBlock(
        [this, path = std::move(path)] { handler_.setDebugFsEventPath(std::move(path)); });
}

void LiveIndex::process(FileEventBatch batch) {
    std::erase_if(batch, [](const FileEvent& event) { return event.flags == 0; });
    if (batch.empty()) return;
    fsEventQ_.addBlock(
        [this, events = std::move(batch)]() mutable { comparison_.process(std::move(events)); });
}

void LiveIndex::scheduleResultListUpdate() {
    MainQueue::async([this] {
        if (searchMode_.isActive()) {
            if (const auto cache = searchMode_.sharedCurrentCache())
                cache->setNextResultListUpdateDue();
            searchMode_.triggerAutoUpdateTimer();
            return;
        }
        TRVMode* mode = searchMode_.modeHost().currentMode();
        if (mode && (mode->identifier() & kListingModes))
            searchMode_.modeHost().reloadInBackgroundAnimated(true);
    });
}

std::shared_ptr<const Project> LiveIndex::currentProject() const {
    return searchMode_.currentProject();
}

std::shared_ptr<Cache> LiveIndex::cacheForEvents() {
    return searchMode_.sharedCurrentCache();
}

void LiveIndex::clearSelection(const FileURL& eventURL) {
    MainQueue::async([this, eventURL] {
        auto& selection = searchMode_.selection();
        if (!selection) selection = Selection{};
        selection->clearSelection = true;
        logIf(processFlags.debugSelection, Debug,
              "FsEventHandler received event for file %s; Set clearSelection to YES: %p",
              logText(eventURL.path()).c_str(), static_cast<void*>(&*selection));
    });
}

void LiveIndex::itemRenamedFrom(const FileURL& from, const FileURL& to, const ItemRenamed&) {
    MainQueue::async([this, from, to] {
        if (auto& selection = searchMode_.selection()) selection->renamePath(from, to);
        if (searchMode_.isActive()) searchMode_.modeHost().reloadInBackgroundAnimated(false);
    });
}

void LiveIndex::reloadResultSet() {
    MainQueue::async([this] {
        if (!searchMode_.isActive()) return;
        searchMode_.saveSelection();
        searchMode_.resultSetReloaded();
    });
}

void LiveIndex::updateRowRepresentingURL(const FileURL& url) {
    MainQueue::async([this, url] {
        TRVMode* mode = searchMode_.modeHost().currentMode();
        if (mode && (mode->identifier() & kListingModes)) mode->updateRowRepresentingURL(url);
    });
}
