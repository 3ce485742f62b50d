#include "core/ModeSwitcher.h"
#include "core/SearchToggles.h"
#include "core/UserMessages.h"
#include "core/state/GlobalState.h"
#include "modes/TRVBrowserMode.h"
#include "modes/TRVMarkedItemsMode.h"
#include "modes/framework/ModeHost.h"
#include "modes/framework/TRVModeSupportingPath.h"
#include "shell/commands/commands.h"
#include "shell/refusals.h"

// What the modes with files do by themselves: marks, parts of paths, the path filter, browsing.

namespace {

using Narrowing = TRVModeSupportingPath::Narrowing;

/// The current mode, if it has paths.
TRVModeSupportingPath* pathMode(const CommandParts& parts) {
    return dynamic_cast<TRVModeSupportingPath*>(parts.host.currentMode());
}

template <class Mode>
Mode* modeOf(const CommandParts& parts, ModeIdentifier identifier) {
    return dynamic_cast<Mode*>(parts.modeSwitcher.modeWithIdentifier(identifier));
}

CommandBlocks pathSelectionCommands(const CommandParts& parts) {
    const auto select = [parts](bool (TRVModeSupportingPath::*what)()) {
        return [parts, what] {
            TRVModeSupportingPath* const mode = pathMode(parts);
            return mode && (mode->*what)();
        };
    };
    const auto narrow = [parts](Narrowing narrowing) {
        return [parts, narrowing] {
            TRVModeSupportingPath* const mode = pathMode(parts);
            return mode && mode->handleFocusOrIgnoreSelectedURL(narrowing);
        };
    };
    return {{"ShrinkPathSelection", select(&TRVModeSupportingPath::shrinkPathSelection)},
            {"ExtendPathSelection", select(&TRVModeSupportingPath::extendPathSelection)},
            {"ClearPathSelection", select(&TRVModeSupportingPath::clearPathSelection)},
            {"AddSelectionToLivePathFilter", narrow(Narrowing::focus)},
            {"RemoveSelectionToLivePathFilter", narrow(Narrowing::ignore)},
            {"ClearLivePathFilter", [parts] {
                 if (!pathMode(parts)) return false;
                 parts.toggles.resetPathFilter();
                 return true;
             }}};
}

CommandBlocks markCommands(const CommandParts& parts) {
    auto* const marks = modeOf<TRVMarkedItemsMode>(parts, kMarkedItemsMode);
    if (!marks) return {};
    const auto select = [parts, marks](TRVMarkedItemsMode::PasteboardAction action, bool adds) {
        return [parts, marks, action, adds] {
            const std::vector<FileURL> urls = selectionOf(parts);
            if (urls.empty()) return false;
            if (adds) return marks->addItemsToSource(urls, action);
            marks->selectItemsAsSource(urls, action);
            return true;
        };
    };
    return {{"ToggleMarkedItemFlag",
             [parts, marks] {
                 const std::vector<FileURL> urls = selectionOf(parts);
                 if (urls.empty()) return false;
                 marks->toggleMarkedItemFlag(urls);
                 return true;
             }},
            {"ToggleMarkedItemsMode",
             [marks] {
                 marks->toggleMarkedItemsMode();
                 return true;
             }},
            {"SelectItemAsCopySource", select(TRVMarkedItemsMode::kCopy, false)},
            {"AddItemToCopySource", select(TRVMarkedItemsMode::kCopy, true)},
            {"SelectItemAsMoveSource", select(TRVMarkedItemsMode::kMove, false)},
            {"AddItemToMoveSource", select(TRVMarkedItemsMode::kMove, true)},
            {"CopyOrMoveSource", [parts] {
                 if (GlobalState::sharedInstance().currentPasteboardAction() == 0) {
                     parts.messages.error(kNoSource);
                     return true;
                 }
                 return sayNotAvailable(parts.messages, "Paste (Perform Copy/Move)");
             }}};
}

CommandBlocks browserCommands(const CommandParts& parts) {
    auto* const browser = modeOf<TRVBrowserMode>(parts, kBrowserMode);
    if (!browser) return {};
    const auto sibling = [browser](bool preceding, bool wantMarked) {
        return [browser, preceding, wantMarked] {
            browser->browseSiblingDirectory(preceding, wantMarked);
            return true;
        };
    };
    return {{"BrowseSelection",
             [parts, browser] {
                 const std::vector<FileURL> urls = selectionOf(parts);
                 return !urls.empty() && browser->browseSelection(urls);
             }},
            {"CycleBaseDirectories",
             [browser] {
                 browser->toggleSearchRootDirectory();
                 return true;
             }},
            {"ToggleHiddenFiles",
             [browser] {
                 browser->toggleDirSearchHidesDotFiles();
                 return true;
             }},
            {"BrowsePrecedingSiblingDirectory", sibling(true, false)},
            {"BrowseFollowingSiblingDirectory", sibling(false, false)},
            {"BrowsePrecedingMarkedSiblingDirectory", sibling(true, true)},
            {"BrowseFollowingMarkedSiblingDirectory", sibling(false, true)}};
}

}  // namespace

CommandBlocks fileModesCommands(const CommandParts& parts) {
    CommandBlocks all = pathSelectionCommands(parts);
    for (CommandBlocks (*section)(const CommandParts&) : {markCommands, browserCommands})
        for (auto& command : section(parts)) all.push_back(std::move(command));
    return all;
}
