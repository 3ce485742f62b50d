#pragma once
#include "screen/KeyEvent.h"

/// What holds for all keys that the user may record, and the keys that the program has for itself
/// beside its table of commands. Threads: any.
namespace ownKeys {

constexpr uint64_t kKeyComma = 43;

/// Shift alone belongs to typing.
constexpr bool hasModifier(uint64_t modifierFlags) {
    return (modifierFlags & kHeldModifiers & ~uint64_t{kModifierShift}) != 0;
}
/// Opens and closes the preferences.
constexpr bool isOfPreferences(uint64_t keyCode, uint64_t modifierFlags) {
    return keyCode == kKeyComma && (modifierFlags & kHeldModifiers) == kModifierCommand;
}
inline bool isOwn(const KeyEvent& event) {
    const bool quits =
        event.keyCode == kKeyQ && (event.modifierFlags & kHeldModifiers) == kModifierCommand;
    return quits || isOfPreferences(event.keyCode, event.modifierFlags);
}

}  // namespace ownKeys
