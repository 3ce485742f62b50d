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

bool haveSameForm(const Project& a, const Project& b) {
    return a.dictionaryRepresentation() == b.dictionaryRepresentation();
}

bool haveSameFolders(const Project& a, const Project& b) {
    return a.dictionaryRepresentation()["folders"] == b.dictionaryRepresentation()["folders"];
}

}  // namespace

void TRVSearchMode::loadProjects() {
    std::vector<std::shared_ptr<const Project>> projects;
    for (const auto& dictionary : OVUserDefaults::sharedInstance().arrayForKey("projects")) {
        if (!dictionary.is_object()) continue;
        auto project = std::make_shared<const Project>(dictionary);
        // What has not changed stays the same object, the current one above all.
        const auto old = projectByUuid(project->uuid);
        projects.push_back(old && haveSameForm(*old, *project) ? old : std::move(project));
    }
    projects_ = std::move(projects);
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

void TRVSearchMode::moveProject(size_t from, size_t to) {
    if (from >= projects_.size() || to >= projects_.size()) return;
    const auto project = projects_[from];
    projects_.erase(projects_.begin() + static_cast<std::ptrdiff_t>(from));
    projects_.insert(projects_.begin() + static_cast<std::ptrdiff_t>(to), project);
    storeProjects();
}

void TRVSearchMode::currentProjectDidChange(const std::shared_ptr<const Project>& old,
                                            const std::shared_ptr<const Project>& project) {
    if (old && project && old->uuid == project->uuid) {  // the same one, edited
        if (haveSameFolders(*old, *project))
            host().reloadInBackgroundAnimated(false);
        else
            scanParameterModified(project);
        host().updateTextsOfCurrentMode();
        return;
    }
    host().updateSearchFieldWithEmptySearchString();
    if (isActive()) {  // the rows of the project that was left go at once
        host().applyDiffableDataSourceSnapshotAnimated(false, std::nullopt);
        host().adjustWindowHeight();
    }
    host().updateTextsOfCurrentMode();
    switchModeQueue().async([this, project] {
        // Folders of the other project; and no other mode is to keep what Search mode forgets.
        forgetPathFilter();
        if (auto* const mode = dynamic_cast<TRVModeSupportingPath*>(host().currentMode()))
            mode->forgetPathFilter();
        MainQueue::async([this] { host().updateSearchCriterionIndicators(); });
        triggerScanProject(project);
    });
}

void TRVSearchMode::changeCurrentProject(FunctionRef<void(Project&)> change) {
    const auto old = currentProject();
    if (!old) return;
    auto changed = std::make_shared<Project>(*old);
    change(*changed);
    for (auto& each : projects_)
        if (each->uuid == changed->uuid) each = changed;
    currentProject_.replace(std::move(changed));
}

void TRVSearchMode::storeProjects() {
    auto& settings = OVUserDefaults::sharedInstance();
    nlohmann::json list = nlohmann::json::array();
    for (const auto& project : projects_) list.push_back(project->dictionaryRepresentation());
    settings.setObject(std::move(list), "projects");
    const auto project = currentProject();
    if (project && project->isVirtualProject())  // it is in no list
        settings.setObject(project->dictionaryRepresentation(), "currentProject");
}

bool TRVSearchMode::isCurrent(const std::shared_ptr<const Project>& project) const {
    const auto current = currentProject();
    return project == current || (project && current && project->uuid == current->uuid);
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
