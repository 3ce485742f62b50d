#include "modes/TRVSearchMode.h"
#include "shell/commands/commands.h"

CommandBlocks searchModeCommands(const CommandParts& parts) {
    return {{"ToggleIgnoreMaximumResultSetSize", [&searchMode = parts.searchMode] {
                 searchMode.toggleIgnoreMaximumResultSetSize();
                 return true;
             }}};
}
