#include <nlohmann/json.hpp>

#include "core/ProjectSwitcher.h"
#include "core/ResultTableController.h"
#include "core/SearchToggles.h"
#include "core/SearchWindowController.h"
#include "core/state/GlobalState.h"
#include "modes/TRVSearchMode.h"
#include "modes/framework/ModeHost.h"
#include "screen/ResultTableView.h"
#include "shell/Help.h"
#include "shell/commands/commands.h"
#include "shell/metadataNeededAlert.h"
#include "shell/updateSearchStringHistory.h"
#include "util/settings/OVUserDefaults.h"

namespace {

enum ShowMetadata : int64_t { kNever, kAlways, kForQuery };

bool selectEveryItem(const CommandParts& parts) {
    const TRVMode* mode = parts.host.currentMode();
    const size_t rows = parts.table.numberOfRows();
    if (!mode || mode->renameState() != 0 || rows == 0) return true;
    if (mode->identifier() & kFileModes) parts.host.resultTable().selectRows(0, rows - 1);
    return true;
}

/// The project that was current before.
std::shared_ptr<const Project> previousProject(const TRVSearchMode& searchMode) {
    const nlohmann::json stored = OVUserDefaults::sharedInstance().objectForKey("previousProject");
    if (stored.is_object()) return std::make_shared<Project>(stored);
    return stored.is_string() ? searchMode.projectByUuid(stored.get<std::string>()) : nullptr;
}

bool cycleRecentProject(const CommandParts& parts) {
    updateSearchStringHistory(parts.host);
    TRVMode::switchModeQueue().async([parts] {
        // After the keys before, which may have changed it.
        std::shared_ptr<const Project> project;
        MainQueue::sync([&] { project = previousProject(parts.searchMode); });
        if (!project) return;
        parts.projectSwitcher.makeCurrentProject(project);
        TRVMode* const mode = parts.host.currentMode();
        if (mode && mode->identifier() == kProjectMode) parts.host.activateMode(parts.searchMode);
        parts.host.reloadInBackgroundAnimated(false);
        MainQueue::async([parts] { parts.host.updateTextsOfCurrentMode(); });
    });
    return true;
}

/// Asks whether metadata shall be read; false: nothing is to be shown then.
bool enablesMetadata(const CommandParts& parts) {
    return parts.host.askPreventingHiding(metadataNeededAlert()) == 0;
}

bool cycleThroughMetadataDisplayOptions(const CommandParts& parts) {
    auto& settings = OVUserDefaults::sharedInstance();
    int64_t next = settings.integerForKey("showMetadata") + 1;
    if (next > kForQuery)
        next =
            settings.boolForKey("includeNeverWhenCyclingShowMetadataInResult") ? kNever : kAlways;
    if (next != kNever && !settings.boolForKey("processMetadata")) {
        if (enablesMetadata(parts))
            settings.setBool(true, "processMetadata");
        else
            next = kNever;
    }
    settings.setInteger(next, "showMetadata");
    parts.host.searchInBackgroundForceBlockExecution(ForceBlock::yes, [parts](ChangedRows) {
        MainQueue::async([parts] {
            TRVMode* const mode = parts.host.currentMode();
            if (!mode) return;
            if (mode->selection()) mode->selection()->clipOrigin = {};
            mode->updateNumberOfAdditionalRows();
            parts.host.applyDiffableDataSourceSnapshotAnimated(false, std::nullopt);
            parts.host.adjustWindowHeight();
            mode->resultSetReloaded();
        });
    });
    return true;
}

bool maximize() {
    auto& maximized = GlobalState::sharedInstance().maximized();
    maximized.set(!maximized.value());
    return true;
}

}  // namespace

CommandBlocks generalCommands(const CommandParts& parts) {
    const auto toggle = [&parts](void (SearchToggles::*what)()) {
        return [&toggles = parts.toggles, what] {
            (toggles.*what)();
            return true;
        };
    };
    return {
        {"ShowHelp",
         [parts] {
             parts.help.toggle();
             return true;
         }},
        {"SelectEveryItem", [parts] { return selectEveryItem(parts); }},
        {"CloseSearchWindow",
         [parts] {
             parts.window.toggleMainWindow();
             return true;
         }},
        {"CycleRecentProject", [parts] { return cycleRecentProject(parts); }},
        {"CycleThroughMetadataDisplayOptions",
         [parts] { return cycleThroughMetadataDisplayOptions(parts); }},
        {"ToggleShowFiles", toggle(&SearchToggles::prefShowFiles)},
        {"ToggleShowDirectories", toggle(&SearchToggles::prefShowDirectories)},
        {"ToggleIgnoreDiacritics", toggle(&SearchToggles::prefHandleDiacritics)},
        {"Maximize", maximize},
    };
}
