#pragma once
#include <optional>

#include "shell/registry/KeyboardShortcuts.h"

/// What happens when the user presses new keys for a command in the preferences. Threads: main.

/// Why keys are refused, for an alert of critical style.
struct ShortcutRefusal {
    std::string title, text;
};

/// With what an event of this key carries by itself, so that the keys match it.
uint64_t completedModifierFlags(uint64_t keyCode, uint64_t modifierFlags);
/// Refuses keys that the program has for itself.
std::optional<ShortcutRefusal> shortcutIsValid(uint64_t keyCode, uint64_t modifierFlags);
/// Gives the command these keys and stores them; refused, it stays as it was.
std::optional<ShortcutRefusal> recordShortcut(KeyboardShortcuts& registry,
                                              KeyboardShortcutDefinition& definition,
                                              uint64_t keyCode, uint64_t modifierFlags);
