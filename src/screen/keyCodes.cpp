#include "screen/keyCodes.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "screen/KeyEvent.h"
#include "util/ProcessFlags.h"

namespace {

struct Pair {
    uint32_t from;
    uint64_t keyCode;
};

template <size_t N>
uint64_t find(const std::array<Pair, N>& table, uint32_t from) {
    const auto* const found =
        std::find_if(table.begin(), table.end(), [&](const Pair& p) { return p.from == from; });
    return found == table.end() ? kNoKeyCode : found->keyCode;
}

// Key codes of the characters on a US keyboard, where each stands at its key's place.
constexpr std::array<Pair, 47> kByCharacter = {{
    {'a', 0},   {'s', 1},  {'d', 2},  {'f', 3},  {'h', 4},  {'g', 5},   {'z', 6},  {'x', 7},
    {'c', 8},   {'v', 9},  {'b', 11}, {'q', 12}, {'w', 13}, {'e', 14},  {'r', 15}, {'y', 16},
    {'t', 17},  {'1', 18}, {'2', 19}, {'3', 20}, {'4', 21}, {'6', 22},  {'5', 23}, {'=', 24},
    {'9', 25},  {'7', 26}, {'-', 27}, {'8', 28}, {'0', 29}, {']', 30},  {'o', 31}, {'u', 32},
    {'[', 33},  {'i', 34}, {'p', 35}, {'l', 37}, {'j', 38}, {'\'', 39}, {'k', 40}, {';', 41},
    {'\\', 42}, {',', 43}, {'/', 44}, {'n', 45}, {'m', 46}, {'.', 47},  {'`', 50},
}};

// The rows of a keyboard from evdev code 2 on, by what a US keyboard writes there; a blank is a key
// that writes nothing.
constexpr std::string_view kRows = "1234567890-=  qwertyuiop[]  asdfghjkl;'` \\zxcvbnm,./";
constexpr uint32_t kFirstScanCode = 2 + 8, kExtraKeyOfIso = 86 + 8;

struct EditingKey {
    uint32_t symbol;
    uint64_t keyCode;
    const char* name;  // null: as the row above
};

// Keysyms of X11, as a key has them without Num Lock.
constexpr std::array<EditingKey, 52> kEditingKeys = {{
    {0xff0d, kKeyReturn, "Return"},
    {0xff09, kKeyTab, "Tab"},
    {0xfe20, kKeyTab, nullptr},  // with Shift
    {0x0020, kKeySpace, "Space"},
    {0xff08, kKeyDelete, "Backspace"},
    {0xff1b, kKeyEscape, "Escape"},
    {0xff63, 114, "Insert"},
    {0xff6a, 114, nullptr},
    {0xff50, kKeyHome, "Home"},
    {0xff55, kKeyPageUp, "Page Up"},
    {0xffff, kKeyForwardDelete, "Delete"},
    {0xff57, kKeyEnd, "End"},
    {0xff56, kKeyPageDown, "Page Down"},
    {0xff51, kKeyLeft, "Left"},
    {0xff53, kKeyRight, "Right"},
    {0xff54, kKeyDown, "Down"},
    {0xff52, kKeyUp, "Up"},
    {0xffbe, 122, "F1"},
    {0xffbf, 120, "F2"},
    {0xffc0, 99, "F3"},
    {0xffc1, 118, "F4"},
    {0xffc2, 96, "F5"},
    {0xffc3, 97, "F6"},
    {0xffc4, 98, "F7"},
    {0xffc5, 100, "F8"},
    {0xffc6, 101, "F9"},
    {0xffc7, kKeyF10, "F10"},
    {0xff67, kKeyMenu, "Menu"},
    {0xffc8, 103, "F11"},
    {0xffc9, 111, "F12"},
    {0xffca, 105, "F13"},
    {0xffcb, 107, "F14"},
    {0xffcc, 113, "F15"},
    {0xffcd, 106, "F16"},
    {0xff9e, 82, "Keypad 0"},
    {0xff9c, 83, "Keypad 1"},
    {0xff99, 84, "Keypad 2"},
    {0xff9b, 85, "Keypad 3"},
    {0xff96, 86, "Keypad 4"},
    {0xff9d, 87, "Keypad 5"},
    {0xff98, 88, "Keypad 6"},
    {0xff95, 89, "Keypad 7"},
    {0xff97, 91, "Keypad 8"},
    {0xff9a, 92, "Keypad 9"},
    {0xff9f, 65, "Keypad ."},
    {0xffaa, 67, "Keypad *"},
    {0xffab, 69, "Keypad +"},
    {0xffaf, 75, "Keypad /"},
    {0xffad, 78, "Keypad -"},
    {0xff8d, kKeyEnter, "Enter"},
    {0xffae, 65, nullptr},
    {0xffac, 65, nullptr},
}};

uint64_t byPosition(uint32_t scanCode) {
    if (scanCode == kExtraKeyOfIso) return 10;
    const uint32_t at = scanCode - kFirstScanCode;
    if (scanCode < kFirstScanCode || at >= kRows.size()) return kNoKeyCode;
    return find(kByCharacter, uint32_t(kRows[at]));
}

uint32_t lowerCase(uint32_t symbol) {
    return symbol >= 'A' && symbol <= 'Z' ? symbol + ('a' - 'A') : symbol;
}

bool isDigitKey(uint32_t scanCode) {
    return scanCode >= kFirstScanCode && scanCode < kFirstScanCode + 10;
}

std::string nameOf(uint64_t keyCode) {
    for (const Pair& pair : kByCharacter)
        if (pair.keyCode == keyCode) {
            const bool isLetter = pair.from >= 'a' && pair.from <= 'z';
            return {char(isLetter ? pair.from - ('a' - 'A') : pair.from)};
        }
    for (const EditingKey& key : kEditingKeys)
        if (key.keyCode == keyCode && key.name) return key.name;
    return "key " + std::to_string(keyCode);
}

}  // namespace

uint64_t keyCodeOfCharacter(uint32_t character) {
    return find(kByCharacter, lowerCase(character));
}

uint64_t keyCodeOfEditingSymbol(uint32_t symbol) {
    const auto* const found =
        std::find_if(kEditingKeys.begin(), kEditingKeys.end(),
                     [&](const EditingKey& key) { return key.symbol == symbol; });
    return found == kEditingKeys.end() ? kNoKeyCode : found->keyCode;
}

uint64_t keyCodeOfCharacterKey(uint32_t scanCode, unsigned group, const KeySymbols& keySymbols) {
    const uint64_t position = byPosition(scanCode);
    // A digit key stays one where it writes its digit only with Shift.
    if (isDigitKey(scanCode) || !keySymbols) return position;
    const uint32_t symbol = keySymbols(scanCode, group);
    if (const uint64_t code = keyCodeOfCharacter(symbol); code != kNoKeyCode) return code;
    // A Latin-1 character outside the table, such as é.
    if (symbol != 0 && symbol < 0x100) return position;
    for (unsigned other = 0; other < 4; ++other) {
        const uint64_t code = keyCodeOfCharacter(keySymbols(scanCode, other));
        if (other != group && code != kNoKeyCode) return code;
    }
    return position;
}

uint64_t keyCodeOfKey(uint32_t scanCode, unsigned group, const KeySymbols& keySymbols) {
    const uint32_t symbol = keySymbols ? keySymbols(scanCode, group) : 0;
    const uint64_t code = keyCodeOfEditingSymbol(symbol);
    return code != kNoKeyCode ? code : keyCodeOfCharacterKey(scanCode, group, keySymbols);
}

uint64_t modifierOfAlt() {
    return processFlags.swapControlAndOption ? kModifierOption : kModifierControl;
}

uint64_t modifierOfSuper() {
    return processFlags.swapControlAndOption ? kModifierControl : kModifierOption;
}

std::string modifiersText(uint64_t modifierFlags) {
    const std::pair<uint64_t, const char*> modifiers[] = {{kModifierCommand, "Ctrl+"},
                                                          {modifierOfAlt(), "Alt+"},
                                                          {modifierOfSuper(), "Super+"},
                                                          {kModifierShift, "Shift+"}};
    std::string text;
    for (const auto& [flag, name] : modifiers)
        if (modifierFlags & flag) text += name;
    return text;
}

std::string hotKeyText(uint64_t keyCode, uint64_t modifierFlags) {
    return keyCode == kNoKeyCode ? std::string() : modifiersText(modifierFlags) + nameOf(keyCode);
}
