#include "core/ProjectSwitcher.h"
#include "modes/TRVSearchMode.h"
#include "modes/framework/ModeHost.h"
#include "shell/commands/commands.h"
#include "util/settings/OVUserDefaults.h"

namespace {

bool switchToRecentProject(const CommandParts& parts) {
    TRVMode::switchModeQueue().async([parts] {
        std::shared_ptr<const Project> project;
        MainQueue::sync([&] {
            const auto uuid = OVUserDefaults::sharedInstance().stringForKey("previousRealProject");
            if (uuid) project = parts.searchMode.projectByUuid(*uuid);
        });
        if (!project) return;
        parts.projectSwitcher.makeCurrentProject(project);
        parts.host.activateMode(parts.searchMode);
        parts.host.reloadInBackgroundAnimated(false);
        MainQueue::async([parts] { parts.host.updateTextsOfCurrentMode(); });
    });
    return true;
}

}  // namespace

CommandBlocks projectModeCommands(const CommandParts& parts) {
    return {{"SwitchToRecentProject", [parts] { return switchToRecentProject(parts); }}};
}
