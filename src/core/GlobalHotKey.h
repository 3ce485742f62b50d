#pragma once
#include <functional>
#include <optional>
#include <string>

#include "platform/HotKeys.h"
#include "screen/KeyEvent.h"

class KeyboardShortcuts;
class UserMessages;

/// The hot key that brings the window up: kept in the setting hotKey as {"keyCode": …,
/// "modifierFlags": …}.
/// Owner:   AppDelegate. Threads: main.
/// Fails:   a key that cannot be had is told in the window and the log; the program goes on.
class GlobalHotKey {
  public:
    /// action is called at each press.
    GlobalHotKey(HotKeys& hotKeys, const KeyboardShortcuts& shortcuts, UserMessages& messages,
                 std::function<void()> action)
        : hotKeys_(hotKeys),
          shortcuts_(shortcuts),
          messages_(messages),
          action_(std::move(action)) {}

    /// What is stored; none where there is none, or it cannot be read.
    static HotKey storedShortcut();
    /// Registers what is stored, if anything is.
    void setupHotKeys();
    /// Tries the keys that the user pressed for it, and stores them if they work. Those of
    /// commands, and such that belong to typing, are refused. The text says why.
    Result<void> record(const KeyEvent& event);
    /// Its keys are being pressed for another purpose: they do nothing until it is resumed.
    void pause() { hotKeys_.unregisterShortcut(); }
    void resume() { setupHotKeys(); }
    /// Whether the key could be had. Nothing is stored; only while there is no hot key.
    Result<void> isFree(const HotKey& hotKey);
    const HotKey& currentShortcut() const { return currentShortcut_; }

  private:
    std::optional<std::string> refusalOf(const KeyEvent& event) const;

    HotKeys& hotKeys_;
    const KeyboardShortcuts& shortcuts_;
    UserMessages& messages_;
    const std::function<void()> action_;
    HotKey currentShortcut_;
};
