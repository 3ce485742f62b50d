#include "shell/preferences/PreferencesShortcuts.h"

#include "core/GlobalHotKey.h"
#include "shell/registry/ownKeys.h"
#include "shell/registry/shortcutText.h"

std::vector<PreferencesShortcut> PreferencesShortcuts::lines() const {
    std::vector<PreferencesShortcut> lines;
    for (const KeyboardShortcutEntry& entry : registry_.filteredKeyboardShortcuts()) {
        if (entry.definition)
            lines.push_back({.identifier = entry.definition->identifier(),
                             .name = entry.definition->actionName(),
                             .keys = entry.definition->stringRepresentation(),
                             .isChanged = !entry.definition->hasDefaultKeys(),
                             .isInMenu = entry.definition->showInContextMenu()});
        else
            lines.push_back({.name = entry.title});
    }
    return lines;
}

/// What would never reach a command, or take a letter from typing.
std::optional<ShortcutRefusal> PreferencesShortcuts::refusalOf(const KeyEvent& event) const {
    const uint64_t flags = event.modifierFlags & kHeldModifiers;
    const std::string keys = "Shortcut " + shortcutText(event.keyCode, flags);
    if (ownKeys::isOwn(event))
        return ShortcutRefusal{.title = "Invalid shortcut",
                               .text = keys +
                                       " is reserved for internal "
                                       "use."};
    if (auto refusal = shortcutIsValid(event.keyCode, flags)) return refusal;
    if (!ownKeys::hasModifier(flags))
        return ShortcutRefusal{.title = "Invalid shortcut",
                               .text = keys + " needs Ctrl, Alt or Super."};
    const HotKey& hotKey = hotKey_.currentShortcut();
    if (!hotKey.isNone() && hotKey.keyCode == event.keyCode && hotKey.modifierFlags == flags)
        return ShortcutRefusal{
            .title = "Conflicting shortcuts",
            .text = keys + " is already used for showing and hiding the search window."};
    return std::nullopt;
}

std::optional<ShortcutRefusal> PreferencesShortcuts::record(const std::string& identifier,
                                                            const KeyEvent& event) {
    const auto definition = registry_.keyboardShortcutDefinitionFor(identifier);
    if (!definition) return std::nullopt;
    if (auto refusal = refusalOf(event)) return refusal;
    return recordShortcut(registry_, *definition, event.keyCode,
                          event.modifierFlags & kHeldModifiers);
}

void PreferencesShortcuts::remove(const std::string& identifier) {
    const auto definition = registry_.keyboardShortcutDefinitionFor(identifier);
    if (!definition) return;
    definition->setKeys(0, 0);
    definition->saveToUserDefaults();
}

void PreferencesShortcuts::showInMenu(const std::string& identifier, bool isShown) {
    if (const auto definition = registry_.keyboardShortcutDefinitionFor(identifier))
        definition->setShowInContextMenu(isShown);
}

std::optional<ShortcutRefusal> PreferencesShortcuts::reset(const std::string& identifier) {
    const auto definition = registry_.keyboardShortcutDefinitionFor(identifier);
    if (!definition || definition->hasDefaultKeys()) return std::nullopt;
    const StoredShortcut first = definition->defaultKeys();
    if (first.keyCode == 0 && first.modifierFlags == 0) {
        remove(identifier);
        return std::nullopt;
    }
    return record(identifier,
                  KeyEvent{.keyCode = first.keyCode, .modifierFlags = first.modifierFlags});
}
