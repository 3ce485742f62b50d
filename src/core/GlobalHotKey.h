#pragma once
#include <functional>
#include <string>

#include "platform/HotKeys.h"

class UserMessages;

/// The hot key that brings the window up: kept in the setting hotKey as {"keyCode": …,
/// "modifierFlags": …}.
/// Owner:   AppDelegate. Threads: main.
/// Fails:   a key that cannot be had is told in the window and the log; the program goes on.
class GlobalHotKey {
  public:
    /// action is called at each press.
    GlobalHotKey(HotKeys& hotKeys, UserMessages& messages, std::function<void()> action)
        : hotKeys_(hotKeys), messages_(messages), action_(std::move(action)) {}

    /// What is stored; none where there is none, or it cannot be read.
    static HotKey storedShortcut();
    /// Registers what is stored, if anything is.
    void setupHotKeys();
    /// Tries the key, and stores it if it works. The text says why it does not.
    Result<void> change(const HotKey& hotKey);
    /// Its keys are being pressed for another purpose: they do nothing until it is resumed.
    void pause() { hotKeys_.unregisterShortcut(); }
    void resume() { setupHotKeys(); }
    /// Whether the key could be had. Nothing is stored; only while there is no hot key.
    Result<void> isFree(const HotKey& hotKey);
    const HotKey& currentShortcut() const { return currentShortcut_; }

  private:
    HotKeys& hotKeys_;
    UserMessages& messages_;
    const std::function<void()> action_;
    HotKey currentShortcut_;
};
