#include <sys/stat.h>

#include <nlohmann/json.hpp>

#include "modes/TRVSearchMode.h"
#include "modes/framework/ModeHost.h"
#include "util/Unicode.h"
#include "util/log.h"
#include "util/settings/OVUserDefaults.h"

// The projects of Search mode, and which of them is current.

namespace {
constexpr uint8_t kFilesAndFolders = 3;
}

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

bool TRVSearchMode::hasEnabledProjects() const {
    for (const auto& project : projects_)
        if (project->enabled) return true;
    return false;
}

void TRVSearchMode::setCurrentProject(std::shared_ptr<const Project> project) {
    currentProject_.set(std::move(project));
}

bool TRVSearchMode::isCurrent(const Project& project) const {
    const auto current = currentProject();
    return current && current->uuid == project.uuid;
}

void TRVSearchMode::moveProject(size_t from, size_t to) {
    if (from >= projects_.size() || to >= projects_.size()) return;
    const auto project = projects_[from];
    projects_.erase(projects_.begin() + static_cast<std::ptrdiff_t>(from));
    projects_.insert(projects_.begin() + static_cast<std::ptrdiff_t>(to), project);
    storeProjects();
}

void TRVSearchMode::replaceProject(const std::shared_ptr<const Project>& project) {
    for (auto& stored : projects_)
        if (stored->uuid == project->uuid) stored = project;
    if (!isCurrent(*project)) return;
    replacesProject_ = true;
    currentProject_.set(project);
    replacesProject_ = false;
}

void TRVSearchMode::storeProjects() const {
    auto& settings = OVUserDefaults::sharedInstance();
    nlohmann::json stored = nlohmann::json::array();
    for (const auto& project : projects_) stored.push_back(project->dictionaryRepresentation());
    settings.setObject(std::move(stored), "projects");
    const auto current = currentProject();
    if (current && current->isVirtualProject())
        settings.setObject(current->dictionaryRepresentation(), "currentProject");
}

void TRVSearchMode::currentProjectDidChange(const std::shared_ptr<const Project>& project) {
    if (replacesProject_) return;
    host().updateSearchFieldWithEmptySearchString();
    if (isActive()) {  // the rows of the project that was left go at once
        host().applyDiffableDataSourceSnapshotAnimated(false, std::nullopt);
        host().adjustWindowHeight();
    }
    host().updateTextsOfCurrentMode();
    switchModeQueue().async([this, project] { triggerScanProject(project); });
}

bool TRVSearchMode::createVirtualProjectFromPath(const FileURL& path) {
    struct stat info;
    if (lstat(path.c_str(), &info) != 0) return false;
    if (S_ISLNK(info.st_mode) && stat(path.c_str(), &info) != 0) return false;
    const FileURL url = S_ISDIR(info.st_mode) ? path : path.deletingLastPathComponent();

    if (caches_.removeVirtualProjectsBut(pathToText(url.path()))) leaveCache();
    auto project = std::make_shared<Project>();
    project->enabled = true;
    project->name = project->uuid = pathToText(url.path());
    if (const auto cache = caches_.cacheForProject(*project))
        project->lastEventStreamEventId = cache->nextFsEventId() - 1;
    auto folder = std::make_shared<ProjectFolder>();
    folder->url = url;
    folder->includeContentsInRecentItems = true;
    project->addFolder(std::move(folder));
    project->matchFilenameOnly = true;
    project->visibleItemType = kFilesAndFolders;
    host().makeCurrentProject(std::move(project));
    return true;
}

bool TRVSearchMode::browseToParentOfVirtualProject() {
    const auto project = currentProject();
    if (!project || !project->isVirtualProject()) return false;
    const FileURL url(textToPath(project->uuid));
    if (url.pathComponents().empty()) return false;  // the root has no parent
    switchModeQueue().async([this, parent = url.deletingLastPathComponent()] {
        createVirtualProjectFromPath(parent);
        host().reloadInBackgroundAnimated(false);
        MainQueue::async([this] { host().updateTextsOfCurrentMode(); });
    });
    return true;
}
