#include "modes/framework/ModeIdentifier.h"
#include "shell/commands/commands.h"

CommandBlocks switchingModesCommands(const CommandParts& parts) {
    const auto to = [&parts](ModeIdentifier mode, std::string_view name) {
        return [parts, mode, name] { return switchToMode(parts, mode, name); };
    };
    return {
        {"SwitchToSearchMode", to(kSearchMode, "Search")},
        {"SwitchToBrowserMode", to(kBrowserMode, "Browser")},
        {"SwitchToRecentItemsMode", to(kRecentMode, "Recent Items")},
        {"SwitchToMarkedItemsMode", to(kMarkedItemsMode, "Marked Items")},
        {"SwitchToProjectsMode", to(kProjectMode, "Projects")},
    };
}
