#pragma once
#include <cstdint>
#include <functional>

#include "util/Result.h"

/// A key with modifiers, by the codes and masks of screen/KeyEvent.h. All zero: no key. The code
/// alone does not say so, since 0 is the A key.
struct HotKey {
    uint64_t keyCode = 0;
    uint64_t modifierFlags = 0;
    bool isNone() const { return keyCode == 0 && modifierFlags == 0; }
    friend bool operator==(const HotKey&, const HotKey&) = default;
};

/// Keys that reach the program whichever window has the keyboard.
/// Owner:   main. Threads: main.
/// Fails:   with a text that can be shown: another program has the key, or this desktop gives none.
class HotKeys {
  public:
    virtual ~HotKeys() = default;
    /// The one hot key; the one before is given up, also on failure. The action is called once a
    /// press, however long it is held.
    virtual Result<void> registerShortcut(const HotKey& hotKey, std::function<void()> action) = 0;
    virtual void unregisterShortcut() = 0;
};
