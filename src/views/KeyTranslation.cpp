#include "views/KeyTranslation.h"

#include <QKeyEvent>
#include <algorithm>
#include <array>

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

constexpr std::array<Pair, 35> kEditingKeys = {{
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
    {Qt::Key_F10, kKeyF10},
    {Qt::Key_Menu, kKeyMenu},
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

uint64_t flagsOf(const QKeyEvent& event, uint64_t keyCode) {
    const Qt::KeyboardModifiers modifiers = event.modifiers();
    uint64_t flags = 0;
    if (modifiers & Qt::ShiftModifier) flags |= kModifierShift;
    if (modifiers & Qt::ControlModifier) flags |= kModifierCommand;
    if (modifiers & Qt::AltModifier) flags |= modifierOfAlt();
    if (modifiers & Qt::MetaModifier) flags |= modifierOfSuper();
    // Arrows and the keys around them carry these by themselves, others only on the keypad.
    if (keyCode >= kKeyLeft && keyCode <= kKeyUp)
        flags |= kModifierNumericPad | kModifierFunction;
    else if (keyCode >= 96 && keyCode <= kKeyUp)
        flags |= kModifierFunction;
    else if (modifiers & Qt::KeypadModifier)
        flags |= kModifierNumericPad;
    return flags;
}

bool isModifier(int key) {
    if (key == Qt::Key_Menu) return false;  // it stands among them
    return (key >= Qt::Key_Shift && key <= Qt::Key_ScrollLock) || key == Qt::Key_AltGr ||
           (key >= Qt::Key_Super_L && key <= Qt::Key_Hyper_R);
}

KeyEvent::Kind kindOf(const QKeyEvent& event) {
    if (isModifier(event.key())) return KeyEvent::Kind::flagsChanged;
    return event.type() == QEvent::KeyRelease ? KeyEvent::Kind::up : KeyEvent::Kind::down;
}

uint64_t codeOf(const QKeyEvent& event, const KeySymbols& keySymbols) {
    const auto key = uint32_t(event.key());
    if (isModifier(event.key())) return kNoKeyCode;
    uint64_t code = find(kEditingKeys, key);
    if (code == kNoKeyCode && (event.modifiers() & Qt::KeypadModifier))
        code = find(kKeypadKeys, key);
    if (code != kNoKeyCode) return code;
    // Events that are made by programs carry no scan code.
    if (event.nativeScanCode() == 0) return keyCodeOfCharacter(key);
    // The state of an X11 event holds the active group in bits 13 and 14.
    const unsigned group = (event.nativeModifiers() >> 13) & 3;
    const KeySymbols ofEvent = [&](uint32_t, unsigned) { return event.nativeVirtualKey(); };
    return keyCodeOfCharacterKey(event.nativeScanCode(), group, keySymbols ? keySymbols : ofEvent);
}

}  // namespace

KeyEvent keyEventFrom(const QKeyEvent& event, const KeySymbols& keySymbols) {
    const uint64_t code = codeOf(event, keySymbols);
    return {.keyCode = code,
            .modifierFlags = flagsOf(event, code),
            .characters = event.text().toStdU16String(),
            .isRepeat = event.isAutoRepeat(),
            .kind = kindOf(event)};
}

bool isCombinationWithText(const QKeyEvent& event) {
    if (!(event.modifiers() & (Qt::AltModifier | Qt::MetaModifier))) return false;
    const QString text = event.text();
    return !text.isEmpty() && text.at(0).isPrint();
}
