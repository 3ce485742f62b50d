#include "shell/commands/commands.h"

#include <algorithm>
#include <array>

#include "core/ModeSwitcher.h"
#include "core/UserMessages.h"
#include "modes/framework/ModeHost.h"
#include "modes/framework/TRVModeRepresentingFiles.h"

namespace {

// Those that work on the selection, and have no closure yet.
constexpr std::array<std::string_view, 8> kOfSelection = {"SendSelectionToQuicksilver",
                                                          "SendSelectionToAlfred",
                                                          "SendSelectionToLaunchBar",
                                                          "CreateProjectFromSelection",
                                                          "OpenWith",
                                                          "OpenInTerminal",
                                                          "UserDefinedActions",
                                                          "ShareSelectedItem"};

/// Refuses as it will when it is there, or says that it is not.
KeyboardShortcutDefinition::Block unavailable(const KeyboardShortcutDefinition& definition,
                                              const CommandParts& parts) {
    const bool needsSelection = std::find(kOfSelection.begin(), kOfSelection.end(),
                                          definition.identifier()) != kOfSelection.end();
    return [parts, needsSelection, name = definition.actionName()] {
        return (!needsSelection || !selectionOf(parts).empty()) &&
               sayNotAvailable(parts.messages, name);
    };
}

}  // namespace

void bindCommands(KeyboardShortcuts& registry, const CommandParts& parts) {
    for (CommandBlocks (*section)(const CommandParts&) :
         {switchingModesCommands, generalCommands, selectionCommands, searchHistoryCommands,
          pathsCommands, searchModeCommands, projectModeCommands, fileModesCommands})
        for (auto& [identifier, block] : section(parts))
            if (const auto definition = registry.keyboardShortcutDefinitionFor(identifier))
                definition->setBlock(std::move(block));
    for (const KeyboardShortcutEntry& entry : registry.builtinActionKeyboardShortcuts()) {
        if (!entry.definition || entry.definition->hasBlock()) continue;
        entry.definition->setBlock(unavailable(*entry.definition, parts));
    }
}

bool sayNotAvailable(UserMessages& messages, std::string_view command) {
    messages.error("“" + std::string(command) + "” is not available yet");
    return false;
}

bool switchToMode(const CommandParts& parts, ModeIdentifier identifier, std::string_view command) {
    TRVMode* const mode = parts.modeSwitcher.modeWithIdentifier(identifier);
    if (!mode) return sayNotAvailable(parts.messages, command);
    parts.modeSwitcher.switchToMode(*mode);
    return true;
}

std::vector<FileURL> selectionOf(const CommandParts& parts) {
    std::vector<FileURL> urls = selectedURLs(parts.host.currentMode());
    if (urls.empty()) parts.messages.error("No item selected");
    return urls;
}

std::optional<FileURL> singleSelectionOf(const CommandParts& parts) {
    std::vector<FileURL> urls = selectionOf(parts);
    if (urls.size() == 1) return std::move(urls.front());
    if (urls.size() > 1) parts.messages.error("Multiple items selected");
    return std::nullopt;
}
