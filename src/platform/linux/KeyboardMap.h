#pragma once
#include <xcb/xcb.h>

#include <cstdint>
#include <vector>

/// The keyboard of the X server as it is laid out now: which key writes what, and which modifier
/// bit is which key.
/// Owner:   LinuxHotKeys; made anew when the layout changes. Threads: main. Making it waits for the
///          X server.
/// Fails:   to an empty map where the server does not answer.
class KeyboardMap {
  public:
    explicit KeyboardMap(xcb_connection_t* x);

    /// The keysym without modifiers, in a group from 0. 0: none.
    uint32_t symbol(uint32_t scanCode, unsigned group) const;
    /// The keys that the program knows by this code, in the first group; there may be several.
    std::vector<xcb_keycode_t> keysOf(uint64_t keyCode) const;
    /// The modifier bits for flags of screen/KeyEvent.h.
    uint16_t stateOf(uint64_t modifierFlags) const;
    /// What may be on without meaning anything, each combination of Caps Lock and Num Lock.
    std::vector<uint16_t> lockStates() const;

  private:
    uint16_t modifierOf(uint32_t keysym, uint16_t usual) const;

    xcb_keycode_t first_ = 8, last_ = 0;
    unsigned symbolsPerKey_ = 0;
    std::vector<uint32_t> symbols_;
    std::vector<xcb_keycode_t> modifierKeys_;  // the keys of Shift, of Lock, of Control ...
    unsigned keysPerModifier_ = 0;
};
