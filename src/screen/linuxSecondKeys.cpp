#include "screen/linuxSecondKeys.h"

#include "screen/keyCodes.h"

namespace {

constexpr char16_t kControlW = 23;

struct SecondKey {
    uint64_t keyCode, modifierFlags;  // as pressed; Control is Alt here, whatever the setting says
    uint64_t asKeyCode, asModifierFlags;
};
constexpr SecondKey kSecondKeys[] = {
    {kKeyForwardDelete, kModifierCommand, kKeyDelete, kModifierCommand},
    {kKeyF2, 0, kKeyReturn, kModifierControl},
    {kKeyF11, 0, kKeySpace, kModifierControl | kModifierShift},
    {kKeyEscape, kModifierShift, kKeyEscape, kModifierOption},
    {kKeyC, kModifierCommand | kModifierControl, kKeyReturn, kModifierOption},
    {kKeyC, kModifierCommand | kModifierControl | kModifierShift, kKeyReturn,
     kModifierOption | kModifierShift},
};

uint64_t asPressed(uint64_t flags) {
    uint64_t pressed = flags & ~uint64_t{kModifierControl | kModifierOption};
    if (flags & modifierOfAlt()) pressed |= kModifierControl;
    if (flags & modifierOfSuper()) pressed |= kModifierOption;
    return pressed;
}

uint64_t asMeant(uint64_t pressed) {
    uint64_t flags = pressed & ~uint64_t{kModifierControl | kModifierOption};
    if (pressed & kModifierControl) flags |= modifierOfAlt();
    if (pressed & kModifierOption) flags |= modifierOfSuper();
    return flags;
}

bool deletesWord(uint64_t keyCode, uint64_t flags) {
    return (keyCode == kKeyDelete && flags == kModifierCommand) ||
           (keyCode == kKeyW && flags == kModifierControl);
}

}  // namespace

KeyEvent withSecondKeysTranslated(KeyEvent event) {
    const uint64_t flags = event.modifierFlags & kHeldModifiers;
    if (deletesWord(event.keyCode, flags)) {
        event.keyCode = kKeyW;
        event.modifierFlags = kModifierControl;
        event.characters = kControlW;
        return event;
    }
    const uint64_t pressed = asPressed(flags);
    for (const SecondKey& key : kSecondKeys) {
        if (event.keyCode != key.keyCode || pressed != key.modifierFlags) continue;
        event.keyCode = key.asKeyCode;
        event.modifierFlags = key.asModifierFlags;
        return event;
    }
    // The desktop's Ctrl makes control characters, which here only Control does.
    const bool isControlCharacter = event.characters.size() == 1 && event.characters[0] < 0x20;
    if (isControlCharacter && (flags & kModifierCommand)) event.characters[0] += 0x60;
    if (event.keyCode == kKeyEnter) {
        event.keyCode = kKeyReturn;
        event.modifierFlags &= ~kModifierNumericPad;
    }
    return event;
}

std::optional<std::pair<uint64_t, uint64_t>> secondKeysOf(uint64_t keyCode,
                                                          uint64_t modifierFlags) {
    if (deletesWord(keyCode, modifierFlags)) return std::nullopt;
    for (const SecondKey& key : kSecondKeys)
        if (key.asKeyCode == keyCode && key.asModifierFlags == modifierFlags)
            return std::pair(key.keyCode, asMeant(key.modifierFlags));
    return std::nullopt;
}
