#include "core/ProjectSwitcher.h"
#include "modes/TRVSearchMode.h"
#include "modes/framework/ModeHost.h"
#include "shell/commands/commands.h"
#include "util/settings/OVUserDefaults.h"

namespace {

bool switchToRecentProject(const CommandParts& parts) {
    const auto uuid = OVUserDefaults::sharedInstance().stringForKey("previousRealProject");
    auto project = uuid ? parts.searchMode.projectByUuid(*uuid) : nullptr;
    if (!project) return true;
    TRVMode::switchModeQueue().async([parts, project = std::move(project)] {
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
