#include "shell/registry/shortcutRecording.h"

#include <algorithm>
#include <array>

#include "shell/registry/shortcutText.h"

namespace {

constexpr uint64_t kOfTheKey = kModifierFunction | kModifierNumericPad;
constexpr std::array<uint64_t, 6> kFunctionKeys = {
    114, kKeyHome, kKeyPageUp, kKeyForwardDelete, kKeyEnd, kKeyPageDown};
constexpr std::array<uint64_t, 5> kReservedWithCommand = {kKeyDelete, kKeyPageUp, kKeyPageDown,
                                                          kKeyHome, kKeyEnd};

template <size_t N>
bool contains(const std::array<uint64_t, N>& keys, uint64_t keyCode) {
    return std::find(keys.begin(), keys.end(), keyCode) != keys.end();
}

bool isReserved(uint64_t keyCode, uint64_t modifierFlags) {
    const uint64_t flags = modifierFlags & ~kOfTheKey;
    if (keyCode == kKeyReturn) return true;
    if (keyCode == kKeyW) return flags == kModifierControl;
    if (flags == kModifierCommand && contains(kReservedWithCommand, keyCode)) return true;
    return (flags | kModifierShift) == (kModifierCommand | kModifierShift) &&
           contains(kDigitKeys, keyCode);
}

}  // namespace

uint64_t completedModifierFlags(uint64_t keyCode, uint64_t modifierFlags) {
    if (keyCode >= kKeyLeft && keyCode <= kKeyUp) return modifierFlags | kOfTheKey;
    return contains(kFunctionKeys, keyCode) ? modifierFlags | kModifierFunction : modifierFlags;
}

std::optional<ShortcutRefusal> shortcutIsValid(uint64_t keyCode, uint64_t modifierFlags) {
    if (!isReserved(keyCode, modifierFlags)) return std::nullopt;
    return ShortcutRefusal{.title = "Invalid shortcut",
                           .text = "Shortcut " + shortcutText(keyCode, modifierFlags) +
                                   " is reserved for internal use."};
}

std::optional<ShortcutRefusal> recordShortcut(KeyboardShortcuts& registry,
                                              KeyboardShortcutDefinition& definition,
                                              uint64_t keyCode, uint64_t modifierFlags) {
    const uint64_t flags = completedModifierFlags(keyCode, modifierFlags);
    if (auto refusal = shortcutIsValid(keyCode, flags)) return refusal;
    if (const auto taken = registry.shortcutIsTaken(keyCode, flags & ~kOfTheKey, definition))
        return ShortcutRefusal{.title = "Conflicting shortcuts",
                               .text = "Shortcut " + shortcutText(keyCode, flags) +
                                       " is already used for action “" + taken->actionName() +
                                       "”."};
    definition.setKeys(keyCode, flags);
    definition.saveToUserDefaults();
    registry.keyboardRecordingFinished().emit();
    return std::nullopt;
}
