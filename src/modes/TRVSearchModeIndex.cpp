#include "core/state/GlobalState.h"
#include "index/scanProject.h"
#include "modes/TRVSearchMode.h"
#include "modes/framework/ModeHost.h"
#include "util/Unicode.h"
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
    if (caches_.removeCacheForProject(project)) leaveCache();
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

void TRVSearchMode::abortScanAndWait() {
    abortScan();
    scanQ_.waitUntilAllOperationsAreFinished();
    if (const auto cache = caches_.currentCache()) cache->waitUntilAllOperationsAreFinished();
}

void TRVSearchMode::triggerScanProject(std::shared_ptr<const Project> project) {
    abortScan();
    scanLaunchQ_.async([this, project = std::move(project)] {
        scanQ_.waitUntilAllOperationsAreFinished();
        GlobalState::sharedInstance().waitForSearches();
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
    MainQueue::async([this, project, eventIdAtStart] { scanEnded(project, eventIdAtStart); });
}

void TRVSearchMode::scanEnded(const std::shared_ptr<const Project>& project,
                              uint64_t eventIdAtStart) {
    const auto cache = caches_.cacheForProject(*project);
    logInfo("Done. Scanned %ld files, found %llu files.", static_cast<long>(scanned_),
            static_cast<unsigned long long>(cache ? cache->count() : 0));
    // What happened since the scan began is told again, so nothing is lost.
    if (isCurrent(*project)) addFSObserversForProject(project, eventIdAtStart);
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
    streams_.end();
    // Where to resume if no event ever tells.
    if (project)
        if (const auto cache = caches_.cacheForProject(*project))
            caches_.noteLeftAt(*project, fileEvents_.currentEventId());
}

void TRVSearchMode::resumeFSObservers(const std::shared_ptr<const Project>& project) {
    MainQueue::async([this, project] {
        if (!isCurrent(*project)) return;
        addFSObserversForProject(
            project, caches_.leftAt(*project).value_or(project->lastEventStreamEventId));
    });
}

void TRVSearchMode::scanParameterModified(const std::shared_ptr<const Project>& project) {
    const auto current = currentProject();
    if (project && project != current) return;
    if (project) {
        removeCacheForProject(*project);
    } else {
        for (const auto& each : projects_) removeCacheForProject(*each);
    }
    host().updateTextsOfCurrentMode();
    removeFSObserversForProject(current.get());
    triggerScanProject(current);
}

// ---- The visible list

bool TRVSearchMode::somebodySeesTheList() const {
    TRVMode* mode = host().currentMode();
    if (!mode || !(mode->identifier() & kListingModes) || !host().isMainWindowVisible())
        return false;
    return mode != this || !isBlank(searchString());
}

void TRVSearchMode::autoUpdateResult() {
    if (!somebodySeesTheList() || isScanning()) return;
    const auto cache = caches_.currentCache();
    if (!cache || !cache->resultListUpdateDue()) return;
    host().reloadInBackgroundAnimated(true);
}

void TRVSearchMode::triggerAutoUpdateTimer() {
    if (fsEventUpdateTimer_) fsEventUpdateTimer_->fire();
}

void TRVSearchMode::setWindowVisible(bool visible) {
    if (!visible) {
        fsEventUpdateTimer_.reset();
        return;
    }
    if (fsEventUpdateTimer_) return;
    fsEventUpdateTimer_ = std::make_unique<RepeatingTimer>(1s, [this] { autoUpdateResult(); });
    autoUpdateResult();
}

void TRVSearchMode::triggerRefresh() {
    MainQueue::async([this] {
        if (isActive() && somebodySeesTheList()) host().reloadInBackgroundAnimated(false);
    });
}
