#include "core/PreviewController.h"
#include "core/ResultTableController.h"
#include "modes/TRVSearchMode.h"
#include "modes/framework/ModeHost.h"
#include "screen/ResultTableView.h"
#include "shell/ItemActions.h"
#include "shell/commands/commands.h"

namespace {

bool searchSelection(const CommandParts& parts) {
    const auto url = singleSelectionOf(parts);
    if (!url) return false;
    TRVMode::switchModeQueue().async([parts, url = *url] {
        parts.host.activateMode(parts.searchMode);
        parts.searchMode.createVirtualProjectFromPath(url);
        parts.host.reloadInBackgroundAnimated(false);
        MainQueue::async([parts] { parts.host.updateTextsOfCurrentMode(); });
    });
    return true;
}

bool jumpToSelection(const CommandParts& parts) {
    ResultTableView& table = parts.host.resultTable();
    const std::vector<size_t> rows = table.selectedRows();
    if (!rows.empty()) table.scrollRowToVisible(rows.front());
    return true;
}

}  // namespace

CommandBlocks selectionCommands(const CommandParts& parts) {
    const auto action = [&parts](bool (ItemActions::*what)(const ItemActions::URLs&)) {
        return [parts, what] {
            const auto urls = selectionOf(parts);
            return !urls.empty() && (parts.actions.*what)(urls);
        };
    };
    return {
        {"SearchSelection", [parts] { return searchSelection(parts); }},
        {"ShowInfoInFinder", action(&ItemActions::actionShowInfo)},
        {"RevealInFinder", action(&ItemActions::actionRevealInFinder)},
        {"OpenInTextEditor", action(&ItemActions::actionOpenInTextEditor)},
        {"QuickLook", [parts] { return parts.preview.togglePreviewPanel(); }},
        {"JumpToSelection", [parts] { return jumpToSelection(parts); }},
    };
}
