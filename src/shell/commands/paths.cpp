#include "core/SearchToggles.h"
#include "shell/commands/commands.h"

CommandBlocks pathsCommands(const CommandParts& parts) {
    return {{"ToggleSearchLastPathComponentOrCompletePath", [&toggles = parts.toggles] {
                 toggles.prefSearchFilenameOnly();
                 return true;
             }}};
}
