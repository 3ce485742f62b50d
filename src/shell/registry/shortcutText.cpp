#include "shell/registry/shortcutText.h"

#include "screen/keyCodes.h"
#include "shell/registry/KeyboardShortcuts.h"

std::string keyText(uint64_t keyCode, uint64_t modifierFlags) {
    // Key code 0 is the A key: only without modifiers does it say that there is none.
    return keyCode == 0 && modifierFlags == 0 ? std::string() : hotKeyText(keyCode, 0);
}

std::string shortcutText(uint64_t keyCode, uint64_t modifierFlags) {
    if (keyCode == 0 && modifierFlags == 0) return {};
    return hotKeyText(keyCode, modifierFlags);
}

std::string stringRepresentationFor(std::string_view identifier) {
    return KeyboardShortcuts::sharedInstance().stringRepresentationFor(identifier);
}
