#include "modes/LiveIndex.h"

#include <algorithm>

#include "index/FSScanner.h"
#include "modes/TRVMarkedItemsMode.h"
#include "modes/TRVSearchMode.h"
#include "modes/framework/ModeHost.h"
#include "util/Unicode.h"
#include "util/log.h"
#include "util/settings/OVUserDefaults.h"

using namespace std::chrono_literals;

namespace {
constexpr auto kShortestRest = 2ms, kRestWithSomethingLeft = 20ms, kLongestRest = 500ms,
               kLongestPatience = 2000ms;
}

LiveIndex::LiveIndex(TRVSearchMode& searchMode, TRVMarkedItemsMode& marks, const FileTypes& types)
    : searchMode_(searchMode),
      marks_(marks),
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
    waitingBatches_.add(1);
    fsEventQ_.addBlock([this, events = std::move(batch)]() mutable {
        waitingBatches_.add(-1);
        comparison_.takeEvents(std::move(events));
        compareWhenDue();
    });
}

// A comparison lists whole folders. While events pour in, it waits for those that are there
// already, and it rests so long after each time that it takes a quarter of the time at most.
void LiveIndex::compareWhenDue() {
    const auto now = std::chrono::steady_clock::now;
    if (!comparison_.isDue()) {
        firstTouchedAt_.reset();
        return;
    }
    if (!firstTouchedAt_) firstTouchedAt_ = now();
    const bool moreWait = waitingBatches_ > 0 && now() - *firstTouchedAt_ < kLongestPatience;
    if (moreWait || rests_) return;
    const auto begin = now();
    comparison_.compare([this] { return waitingBatches_ > 0; });
    firstTouchedAt_.reset();
    rest(std::min<Clock::Duration>(3 * (now() - begin), kLongestRest));
}

void LiveIndex::endWork() {
    const std::lock_guard lock(restMutex_);
    isEnding_ = true;
    restEnds_.notify_all();
}

void LiveIndex::rest(Clock::Duration time) {
    // What is left over waits for more events, or for the end of a scan.
    if (comparison_.isDue())
        time = std::max<Clock::Duration>(
            time, searchMode_.isScanning() ? kLongestRest : kRestWithSomethingLeft);
    if (time < kShortestRest) return;
    rests_ = true;
    restQ_.async([this, end = std::chrono::steady_clock::now() + time] {
        {
            std::unique_lock lock(restMutex_);
            restEnds_.wait_until(lock, end, [this] { return bool(isEnding_); });
        }
        fsEventQ_.addBlock([this] {
            rests_ = false;
            if (!isEnding_) compareWhenDue();
        });
    });
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

void LiveIndex::itemRenamedFrom(const FileURL& from, const FileURL& to,
                                const ItemRenamed& renamed) {
    MainQueue::async([this, rename = ItemRename{from, to, renamed.external}] {
        marks_.itemRenamedFrom(rename);
        searchMode_.itemRenamedFrom(rename);
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
