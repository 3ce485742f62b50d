#include "views/KeyTranslation.h"

#include <QKeyEvent>
#include <algorithm>
#include <array>
#include <string_view>

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
constexpr std::array<Pair, 47> kBySymbol = {{
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

constexpr std::array<Pair, 34> kEditingKeys = {{
    {Qt::Key_Return, kKeyReturn},
    {Qt::Key_Enter, kKeyEnter},
    {Qt::Key_Tab, kKeyTab},
    {Qt::Key_Backtab, kKeyTab},
    {Qt::Key_Space, kKeySpace},
    {Qt::Key_Backspace, kKeyDelete},
    {Qt::Key_Escape, kKeyEscape},
    {Qt::Key_Insert, 114},
    {Qt::Key_Home, kKeyHome},
    {Qt::Key_PageUp, kKeyPageUp},
    {Qt::Key_Delete, kKeyForwardDelete},
    {Qt::Key_End, kKeyEnd},
    {Qt::Key_PageDown, kKeyPageDown},
    {Qt::Key_Left, kKeyLeft},
    {Qt::Key_Right, kKeyRight},
    {Qt::Key_Down, kKeyDown},
    {Qt::Key_Up, kKeyUp},
    {Qt::Key_Help, 114},
    {Qt::Key_F1, 122},
    {Qt::Key_F2, 120},
    {Qt::Key_F3, 99},
    {Qt::Key_F4, 118},
    {Qt::Key_F5, 96},
    {Qt::Key_F6, 97},
    {Qt::Key_F7, 98},
    {Qt::Key_F8, 100},
    {Qt::Key_F9, 101},
    {Qt::Key_F10, 109},
    {Qt::Key_F11, 103},
    {Qt::Key_F12, 111},
    {Qt::Key_F13, 105},
    {Qt::Key_F14, 107},
    {Qt::Key_F15, 113},
    {Qt::Key_F16, 106},
}};

constexpr std::array<Pair, 15> kKeypadKeys = {{
    {Qt::Key_0, 82},
    {Qt::Key_1, 83},
    {Qt::Key_2, 84},
    {Qt::Key_3, 85},
    {Qt::Key_4, 86},
    {Qt::Key_5, 87},
    {Qt::Key_6, 88},
    {Qt::Key_7, 89},
    {Qt::Key_8, 91},
    {Qt::Key_9, 92},
    {Qt::Key_Period, 65},
    {Qt::Key_Asterisk, 67},
    {Qt::Key_Plus, 69},
    {Qt::Key_Slash, 75},
    {Qt::Key_Minus, 78},
}};

uint64_t byPosition(uint32_t scanCode) {
    if (scanCode == kExtraKeyOfIso) return 10;
    const uint32_t at = scanCode - kFirstScanCode;
    if (scanCode < kFirstScanCode || at >= kRows.size()) return kNoKeyCode;
    return find(kBySymbol, uint32_t(kRows[at]));
}

uint32_t lowerCase(uint32_t symbol) {
    return symbol >= 'A' && symbol <= 'Z' ? symbol + ('a' - 'A') : symbol;
}

bool isDigitKey(uint32_t scanCode) {
    return scanCode >= kFirstScanCode && scanCode < kFirstScanCode + 10;
}

uint64_t flagsOf(const QKeyEvent& event, uint64_t keyCode) {
    const Qt::KeyboardModifiers modifiers = event.modifiers();
    uint64_t flags = 0;
    if (modifiers & Qt::ShiftModifier) flags |= kModifierShift;
    if (modifiers & Qt::ControlModifier) flags |= kModifierCommand;
    if (modifiers & Qt::AltModifier) flags |= kModifierControl;
    if (modifiers & Qt::MetaModifier) flags |= kModifierOption;
    // Arrows and the keys around them carry these by themselves, others only on the keypad.
    if (keyCode >= kKeyLeft && keyCode <= kKeyUp)
        flags |= kModifierNumericPad | kModifierFunction;
    else if (keyCode >= 96 && keyCode <= kKeyUp)
        flags |= kModifierFunction;
    else if (modifiers & Qt::KeypadModifier)
        flags |= kModifierNumericPad;
    return flags;
}

}  // namespace

uint64_t keyCodeOfCharacterKey(uint32_t scanCode, unsigned group, const KeySymbols& keySymbols) {
    const uint64_t position = byPosition(scanCode);
    // A digit key stays one where it writes its digit only with Shift.
    if (isDigitKey(scanCode) || !keySymbols) return position;
    const uint32_t symbol = lowerCase(keySymbols(scanCode, group));
    if (const uint64_t code = find(kBySymbol, symbol); code != kNoKeyCode) return code;
    // A Latin-1 character outside the table, such as é.
    if (symbol != 0 && symbol < 0x100) return position;
    for (unsigned other = 0; other < 4; ++other) {
        const uint64_t code = find(kBySymbol, lowerCase(keySymbols(scanCode, other)));
        if (other != group && code != kNoKeyCode) return code;
    }
    return position;
}

KeyEvent keyEventFrom(const QKeyEvent& event, const KeySymbols& keySymbols) {
    const auto key = uint32_t(event.key());
    uint64_t code = find(kEditingKeys, key);
    if (code == kNoKeyCode && (event.modifiers() & Qt::KeypadModifier))
        code = find(kKeypadKeys, key);
    if (code == kNoKeyCode && event.nativeScanCode() != 0) {
        // The state of an X11 event holds the active group in bits 13 and 14.
        const unsigned group = (event.nativeModifiers() >> 13) & 3;
        const KeySymbols ofEvent = [&](uint32_t, unsigned) { return event.nativeVirtualKey(); };
        code =
            keyCodeOfCharacterKey(event.nativeScanCode(), group, keySymbols ? keySymbols : ofEvent);
    }
    // Events that are made by programs carry no scan code.
    if (code == kNoKeyCode && event.nativeScanCode() == 0) code = find(kBySymbol, lowerCase(key));
    return {.keyCode = code,
            .modifierFlags = flagsOf(event, code),
            .characters = event.text().toStdU16String(),
            .isRepeat = event.isAutoRepeat()};
}
