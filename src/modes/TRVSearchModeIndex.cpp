#include "core/state/GlobalState.h"
#include "index/scanProject.h"
#include "modes/TRVSearchMode.h"
#include "modes/framework/ModeHost.h"
#include "util/Unicode.h"
#include "util/World.h"
#include "util/log.h"

using namespace std::chrono_literals;

// The index of the current project: its Cache, its scan, its events, and the list that follows it.

bool TRVSearchMode::setCurrentCacheByProject(const Project& project) {
    if (const auto old = caches_.currentCache()) old->waitUntilAllOperationsAreFinished();
    const bool existed = caches_.setCurrentCacheByProject(project);
    observeCurrentCache();
    return existed;
}

void TRVSearchMode::removeCacheForProject(const Project& project) {
    auto cache = caches_.cacheForProject(project);
    const bool wasCurrent = caches_.removeCacheForProject(project);
    const bool isShown = filteredItemsAccessQueue_.read(
        [&](const ReadSection&) { return cache && filteredCache_ == cache; });
    if (wasCurrent || isShown) leaveCache();
    caches_.dropLater(std::move(cache));  // the last reference must not end here
}

void TRVSearchMode::observeCurrentCache() {
    const auto cache = caches_.currentCache();
    std::lock_guard lock(scanInProgressMutex_);
    scanInProgress_.cancel();
    if (!cache) return;
    scanInProgress_ = cache->scanInProgress().observe([this](bool, bool inProgress) {
        MainQueue::async([this, inProgress] {
            if (inProgress)
                host().startScanAnimation();
            else
                host().stopScanAnimation();
        });
    });
}

void TRVSearchMode::leaveCache() {
    {
        std::lock_guard lock(scanInProgressMutex_);
        scanInProgress_.cancel();
    }
    deleteFilteredItems();
}

bool TRVSearchMode::isScanning() const {
    const auto cache = caches_.currentCache();
    return cache && cache->scanInProgress().value();
}

// ---- Scans

void TRVSearchMode::abortScan() {
    abortScan_ = true;
    setAbortSearch(true);
    FSScanner::sharedInstance().abortScan();
}

void TRVSearchMode::endWork() {
    isEnding_ = true;
    liveIndex_.endWork();
    abortScan();
}

void TRVSearchMode::abortScanAndWait() {
    abortScan();
    scanQ_.waitUntilAllOperationsAreFinished();
    liveIndex_.waitUntilAllOperationsAreFinished();  // what was told of the project it is of
    if (const auto cache = caches_.currentCache()) cache->waitUntilAllOperationsAreFinished();
}

void TRVSearchMode::triggerScanProject(std::shared_ptr<const Project> project) {
    abortScan();
    scanLaunchQ_.async([this, project = std::move(project)] {
        scanQ_.waitUntilAllOperationsAreFinished();
        GlobalState::sharedInstance().waitForSearches();
        if (isEnding_) return;
        abortScan_ = false;
        if (project && !project->uuid.empty()) startScan(project);
    });
}

void TRVSearchMode::startScan(const std::shared_ptr<const Project>& project) {
    if (setCurrentCacheByProject(*project)) {
        resumeFSObservers(project);
        host().reloadInBackgroundAnimated(false);
        return;
    }
    if (project->folders().empty()) {
        logInfo("No folders defined for project.");
        return;
    }
    scanQ_.async([this, project] { scan(project); });
}

void TRVSearchMode::scan(const std::shared_ptr<const Project>& project) {
    const auto cache = caches_.cacheForProject(*project);
    if (!cache) return;
    MainQueue::async([this] { host().updateTextsOfCurrentMode(); });
    scanned_ = 0;
    ignored_ = 0;
    uint64_t eventIdAtStart = 0;
    MainQueue::sync([&] { eventIdAtStart = streams_.startRecording(project); });
    const ScanEnd end = scanProject(FSScanner::sharedInstance(), *project,
                                    {.cache = cache,
                                     .refresh = [this] { triggerRefresh(); },
                                     .scanned = &scanned_,
                                     .ignored = &ignored_,
                                     .abortScan = &abortScan_});
    // A scan that was ended in the middle leaves an index with holes, which nobody may see again.
    if (end != ScanEnd::complete || abortScan_) {
        removeCacheForProject(*project);
        MainQueue::async([this] { host().stopScanAnimation(); });
        return;
    }
    caches_.noteLeftAt(*project, eventIdAtStart);  // until its stream runs
    cache->setNextResultListUpdateDue();           // for a window that opens later
    MainQueue::async([this, project, eventIdAtStart] { scanEnded(project, eventIdAtStart); });
}

void TRVSearchMode::scanEnded(const std::shared_ptr<const Project>& project,
                              uint64_t eventIdAtStart) {
    const auto cache = caches_.cacheForProject(*project);
    logInfo("Done. Scanned %ld files, found %llu files.", static_cast<long>(scanned_),
            static_cast<unsigned long long>(cache ? cache->count() : 0));
    // What happened since the scan began is told again, so nothing is lost.
    if (isCurrent(project) && !abortScan_) addFSObserversForProject(project, eventIdAtStart);
    scanCompleted_.emit();
}

// ---- File-system events

bool TRVSearchMode::addFSObserversForProject(const std::shared_ptr<const Project>& project,
                                             uint64_t maybeUsingFsEventStreamEventId) {
    std::string list;
    for (const auto& folder : project->sorderFoldersDesc())
        list += (list.empty() ? "" : ", ") + folder->url.path();
    if (list.empty()) return false;
    const auto cache = caches_.cacheForProject(*project);
    const uint64_t next = cache ? cache->nextFsEventId() : 0;
    const bool needsRescan = next == 0;
    const uint64_t from = needsRescan ? maybeUsingFsEventStreamEventId : next;
    streams_.start(project, from);
    logInfo(
        "Started event stream for project %s w/ event id %llu; need rescan: %d; observed "
        "paths: %s",
        project->name.c_str(), static_cast<unsigned long long>(from), needsRescan,
        logText(list).c_str());
    return needsRescan;
}

void TRVSearchMode::removeFSObserversForProject(const Project* project) {
    // Where to resume if no event ever tells; a stream that never ran has told nothing.
    const bool ran = streams_.isRunning();
    const uint64_t eventId = fileEvents_.currentEventId();
    streams_.end();
    if (project && ran) caches_.noteLeftAt(*project, eventId);
}

void TRVSearchMode::resumeFSObservers(const std::shared_ptr<const Project>& project) {
    MainQueue::async([this, project] {
        if (!isCurrent(project)) return;
        addFSObserversForProject(
            project, caches_.leftAt(*project).value_or(project->lastEventStreamEventId));
    });
}

void TRVSearchMode::scanParameterModified(const std::shared_ptr<const Project>& project) {
    const auto current = currentProject();
    if (project && !isCurrent(project)) return;
    if (project) {
        removeCacheForProject(*project);
    } else {
        for (const auto& each : projects_) removeCacheForProject(*each);
    }
    host().updateTextsOfCurrentMode();
    removeFSObserversForProject(current.get());
    switchModeQueue().async([this, current] { triggerScanProject(current); });
}

// ---- The visible list

bool TRVSearchMode::somebodySeesTheList() const {
    TRVMode* mode = host().currentMode();
    if (!mode || !(mode->identifier() & kListingModes) || !host().isMainWindowVisible())
        return false;
    return mode != this || !isBlank(searchString());
}

void TRVSearchMode::autoUpdateResult() {
    // The search for a key stroke is not begun anew; the update stays due.
    if (!somebodySeesTheList() || isScanning() || host().isSearching()) return;
    const auto cache = caches_.currentCache();
    if (!cache || !cache->resultListUpdateDue()) return;
    // Only a search in the index notes that itself.
    if (host().currentMode() != this) cache->resultListUpdated();
    host().reloadInBackgroundAnimated(true);
}

void TRVSearchMode::triggerAutoUpdateTimer() {
    if (fsEventUpdateTimer_) fsEventUpdateTimer_->fire();
}

void TRVSearchMode::setWindowVisible(bool visible) {
    if (!visible) {
        fsEventUpdateTimer_.reset();
        uncheckedTimer_.reset();
        return;
    }
    if (fsEventUpdateTimer_) return;
    fsEventUpdateTimer_ = std::make_unique<RepeatingTimer>(1s, [this] { autoUpdateResult(); });
    uncheckedTimer_ = std::make_unique<RepeatingTimer>(60s, [this] { recheckUnwatched(); });
    autoUpdateResult();
    recheckUnwatched();
}

void TRVSearchMode::recheckUnwatched() {
    streams_.recheckUnwatched();
    lastChecked_ = World::current().clock().time();
}

Freshness TRVSearchMode::freshness() const {
    const bool scanning = isScanning();
    return {.hasProject = currentProject() != nullptr,
            .isScanning = scanning,
            .entriesRead = scanned_,
            .checkedOnly = scanning ? nullptr : streams_.unwatchedFolders(),
            .lastChecked = lastChecked_};
}

void TRVSearchMode::triggerRefresh() {
    MainQueue::async([this] {
        if (isActive() && somebodySeesTheList()) host().reloadInBackgroundAnimated(false);
    });
}
