#include "core/ProjectSwitcher.h"

#include <nlohmann/json.hpp>

#include "modes/TRVSearchMode.h"
#include "modes/framework/ModeHost.h"
#include "util/log.h"
#include "util/settings/OVUserDefaults.h"

namespace {

/// A virtual project is nowhere but in the setting itself.
void store(const Project* project, std::string_view setting) {
    auto& settings = OVUserDefaults::sharedInstance();
    if (!project)
        settings.removeObjectForKey(setting);
    else if (project->isVirtualProject())
        settings.setObject(project->dictionaryRepresentation(), setting);
    else
        settings.setObject(project->uuid, setting);
}

}  // namespace

void ProjectSwitcher::makeCurrentProject(std::shared_ptr<const Project> project) {
    if (MainQueue::isMainThread()) logError("Must not be called on main thread!");
    std::lock_guard lock(mutex_);
    const auto old = searchMode_.currentProject();
    if (project == old) return;
    store(old.get(), "previousProject");
    MainQueue::sync([&] {
        searchMode_.removeFSObserversForProject(old.get());
        host_.updateTextsOfCurrentMode();
        host_.updateSearchFieldWithEmptySearchString();
    });
    searchMode_.abortScanAndWait();
    MainQueue::sync([&] {
        host_.stopScanAnimation();
        searchMode_.setCurrentProject(project);
    });
    store(project.get(), "currentProject");
    if (project && !project->isVirtualProject()) store(project.get(), "previousRealProject");
}
