#include "platform/linux/KeyboardMap.h"

#include "platform/linux/X11.h"
#include "screen/KeyEvent.h"
#include "screen/keyCodes.h"

namespace {
constexpr uint32_t kNumLock = 0xff7f, kAlt = 0xffe9, kSuper = 0xffeb;  // keysyms
constexpr unsigned kModifiers = 8;
}  // namespace

KeyboardMap::KeyboardMap(xcb_connection_t* x) {
    const xcb_setup_t* setup = xcb_get_setup(x);
    const auto keys = uint8_t(setup->max_keycode - setup->min_keycode + 1);
    const auto mapCookie = xcb_get_keyboard_mapping(x, setup->min_keycode, keys);
    const auto modifierCookie = xcb_get_modifier_mapping(x);
    const x11::Reply<xcb_get_keyboard_mapping_reply_t> map(
        xcb_get_keyboard_mapping_reply(x, mapCookie, nullptr), &std::free);
    const x11::Reply<xcb_get_modifier_mapping_reply_t> modifiers(
        xcb_get_modifier_mapping_reply(x, modifierCookie, nullptr), &std::free);
    if (!map || !modifiers) return;
    first_ = setup->min_keycode;
    last_ = setup->max_keycode;
    symbolsPerKey_ = map->keysyms_per_keycode;
    const xcb_keysym_t* symbols = xcb_get_keyboard_mapping_keysyms(map.get());
    symbols_.assign(symbols, symbols + xcb_get_keyboard_mapping_keysyms_length(map.get()));
    keysPerModifier_ = modifiers->keycodes_per_modifier;
    const xcb_keycode_t* ofModifiers = xcb_get_modifier_mapping_keycodes(modifiers.get());
    modifierKeys_.assign(ofModifiers, ofModifiers + kModifiers * keysPerModifier_);
}

uint32_t KeyboardMap::symbol(uint32_t scanCode, unsigned group) const {
    const unsigned column = group * 2;  // two symbols a group, the first one without Shift
    if (scanCode < first_ || scanCode > last_ || column >= symbolsPerKey_) return 0;
    return symbols_[(scanCode - first_) * symbolsPerKey_ + column];
}

std::vector<xcb_keycode_t> KeyboardMap::keysOf(uint64_t keyCode) const {
    const KeySymbols symbols = [this](uint32_t key, unsigned group) { return symbol(key, group); };
    std::vector<xcb_keycode_t> keys;
    for (unsigned key = first_; key <= last_; ++key)
        if (keyCodeOfKey(key, 0, symbols) == keyCode) keys.push_back(xcb_keycode_t(key));
    return keys;
}

uint16_t KeyboardMap::modifierOf(uint32_t keysym, uint16_t usual) const {
    for (unsigned i = 0; i < modifierKeys_.size(); ++i)
        for (unsigned group = 0; modifierKeys_[i] != 0 && group < 2; ++group)
            if (symbol(modifierKeys_[i], group) == keysym)
                return uint16_t(1U << (i / keysPerModifier_));
    return usual;
}

uint16_t KeyboardMap::stateOf(uint64_t modifierFlags) const {
    unsigned state = 0;
    if (modifierFlags & kModifierShift) state |= XCB_MOD_MASK_SHIFT;
    if (modifierFlags & kModifierCommand) state |= XCB_MOD_MASK_CONTROL;
    if (modifierFlags & modifierOfAlt()) state |= modifierOf(kAlt, XCB_MOD_MASK_1);
    if (modifierFlags & modifierOfSuper()) state |= modifierOf(kSuper, XCB_MOD_MASK_4);
    return uint16_t(state);
}

std::vector<uint16_t> KeyboardMap::lockStates() const {
    const uint16_t numLock = modifierOf(kNumLock, 0);
    std::vector<uint16_t> states{0, XCB_MOD_MASK_LOCK};
    if (numLock != 0) {
        states.push_back(numLock);
        states.push_back(uint16_t(numLock | XCB_MOD_MASK_LOCK));
    }
    return states;
}
