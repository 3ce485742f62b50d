#include <nlohmann/json.hpp>

#include "core/state/GlobalState.h"
#include "index/scanProject.h"
#include "modes/TRVSearchMode.h"
#include "modes/framework/ModeHost.h"
#include "util/log.h"
#include "util/settings/OVUserDefaults.h"

// The projects of Search mode, which of them is current, and the scan that it needs.

void TRVSearchMode::loadProjects() {
    projects_.clear();
    for (const auto& dictionary : OVUserDefaults::sharedInstance().arrayForKey("projects"))
        if (dictionary.is_object()) projects_.push_back(std::make_shared<Project>(dictionary));
}

void TRVSearchMode::initSelectedProject() {
    const nlohmann::json stored = OVUserDefaults::sharedInstance().objectForKey("currentProject");
    std::shared_ptr<const Project> project;
    if (stored.is_string()) project = projectByUuid(stored.get<std::string>());
    if (stored.is_object()) project = std::make_shared<Project>(stored);
    if (!project || !project->enabled) {
        logWarning("The stored project is not there or not enabled");
        return;
    }
    setCurrentProject(std::move(project));
}

std::shared_ptr<const Project> TRVSearchMode::projectByUuid(const std::string& uuid) const {
    for (const auto& project : projects_)
        if (project->uuid == uuid) return project;
    return nullptr;
}

std::shared_ptr<const Project> TRVSearchMode::currentProject() const {
    std::lock_guard lock(projectMutex_);
    return currentProject_;
}

bool TRVSearchMode::hasEnabledProjects() const {
    for (const auto& project : projects_)
        if (project->enabled) return true;
    return false;
}

void TRVSearchMode::setCurrentProject(std::shared_ptr<const Project> project) {
    {
        std::lock_guard lock(projectMutex_);
        currentProject_ = project;
    }
    host().updateTextsOfCurrentMode();
    triggerScanProject(std::move(project));
}

void TRVSearchMode::abortScan() {
    abortScan_ = true;
    setAbortSearch(true);
    FSScanner::sharedInstance().abortScan();
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
    if (caches_.setCurrentCacheByProject(*project)) {
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
    scanned_ = 0;
    ignored_ = 0;
    setScanInProgress(true);
    const ScanEnd end = scanProject(FSScanner::sharedInstance(), *project,
                                    {.cache = cache,
                                     .refresh = [this] { triggerRefresh(); },
                                     .scanned = &scanned_,
                                     .ignored = &ignored_,
                                     .abortScan = &abortScan_});
    setScanInProgress(false);
    // A scan that was ended in the middle leaves an index with holes, which nobody may see again.
    if (end != ScanEnd::complete || abortScan_) {
        caches_.removeCacheForProject(*project);
        deleteFilteredItems();
        return;
    }
    logInfo("Done. Scanned %ld files, found %llu files.", static_cast<long>(scanned_),
            static_cast<unsigned long long>(cache->count()));
}

void TRVSearchMode::setScanInProgress(bool inProgress) {
    scanInProgress_ = inProgress;
    MainQueue::async([this, inProgress] {
        if (inProgress)
            host().startScanAnimation();
        else
            host().stopScanAnimation();
    });
}

void TRVSearchMode::triggerRefresh() {
    MainQueue::async([this] {
        if (isActive() && host().isMainWindowVisible() && !searchString().empty())
            host().reloadInBackgroundAnimated(false);
    });
}
