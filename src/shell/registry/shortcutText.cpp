#include "shell/registry/shortcutText.h"

#include <algorithm>
#include <array>

#include "screen/KeyEvent.h"
#include "shell/registry/KeyboardShortcuts.h"

namespace {

// By key code, what a US keyboard has on the key; empty where there is no such key.
constexpr std::array<std::string_view, 51> kCharacterKeys = {
    "A", "S", "D", "F",  "H", "G", "Z", "X", "C", "V",   "",       "B", "Q",
    "W", "E", "R", "Y",  "T", "1", "2", "3", "4", "6",   "5",      "=", "9",
    "7", "-", "8", "0",  "]", "O", "U", "[", "I", "P",   "Return", "L", "J",
    "'", "K", ";", "\\", ",", "/", "N", "M", ".", "Tab", "Space",  "`"};

struct NamedKey {
    uint64_t keyCode;
    std::string_view name;
};
constexpr std::array<NamedKey, 27> kNamedKeys = {{
    {kKeyDelete, "Backspace"},
    {kKeyEscape, "Escape"},
    {kKeyEnter, "Enter"},
    {kKeyHome, "Home"},
    {kKeyEnd, "End"},
    {kKeyPageUp, "Page Up"},
    {kKeyPageDown, "Page Down"},
    {kKeyForwardDelete, "Delete"},
    {114, "Insert"},
    {kKeyLeft, "Left"},
    {kKeyRight, "Right"},
    {kKeyDown, "Down"},
    {kKeyUp, "Up"},
    {122, "F1"},
    {kKeyF2, "F2"},
    {99, "F3"},
    {118, "F4"},
    {96, "F5"},
    {97, "F6"},
    {98, "F7"},
    {100, "F8"},
    {101, "F9"},
    {109, "F10"},
    {kKeyF11, "F11"},
    {111, "F12"},
    {105, "F13"},
    {107, "F14"},
}};

std::string nameOfKey(uint64_t keyCode) {
    if (keyCode < kCharacterKeys.size() && !kCharacterKeys[keyCode].empty())
        return std::string(kCharacterKeys[keyCode]);
    const auto* const named =
        std::find_if(kNamedKeys.begin(), kNamedKeys.end(),
                     [keyCode](const NamedKey& key) { return key.keyCode == keyCode; });
    if (named != kNamedKeys.end()) return std::string(named->name);
    return "key " + std::to_string(keyCode);
}

}  // namespace

std::string keyText(uint64_t keyCode, uint64_t modifierFlags) {
    // Key code 0 is the A key: only without modifiers does it say that there is none.
    return keyCode == 0 && modifierFlags == 0 ? std::string() : nameOfKey(keyCode);
}

std::string shortcutText(uint64_t keyCode, uint64_t modifierFlags) {
    std::string text;
    if (modifierFlags & kModifierCommand) text += "Ctrl+";
    if (modifierFlags & kModifierControl) text += "Alt+";
    if (modifierFlags & kModifierOption) text += "Super+";
    if (modifierFlags & kModifierShift) text += "Shift+";
    return text + keyText(keyCode, modifierFlags);
}

std::string stringRepresentationFor(std::string_view identifier) {
    return KeyboardShortcuts::sharedInstance().stringRepresentationFor(identifier);
}
