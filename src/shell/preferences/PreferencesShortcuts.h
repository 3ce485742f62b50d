#pragma once
#include <optional>

#include "screen/PreferencesView.h"
#include "shell/registry/shortcutRecording.h"

class GlobalHotKey;

/// The pane Keyboard of the preferences: the table of commands, filtered, and new keys for them.
/// Owner:   Preferences. Threads: main.
/// Fails:   refused keys leave the command as it was; the refusal is for an alert.
class PreferencesShortcuts {
  public:
    PreferencesShortcuts(KeyboardShortcuts& registry, const GlobalHotKey& hotKey)
        : registry_(registry), hotKey_(hotKey) {}

    std::vector<PreferencesShortcut> lines() const;
    void setFilter(std::string filter) { registry_.setFilter(std::move(filter)); }
    std::optional<ShortcutRefusal> record(const std::string& identifier, const KeyEvent& event);
    void remove(const std::string& identifier);
    void showInMenu(const std::string& identifier, bool isShown);
    /// The keys that it had at first, unless another command has them by now.
    std::optional<ShortcutRefusal> reset(const std::string& identifier);
    void resetAll() { registry_.reset(); }

  private:
    std::optional<ShortcutRefusal> refusalOf(const KeyEvent& event) const;

    KeyboardShortcuts& registry_;
    const GlobalHotKey& hotKey_;
};
