#pragma once
#include <functional>
#include <map>
#include <string>

#include "screen/Alerts.h"
#include "screen/PreferencesView.h"

class GlobalHotKey;
class OVUserDefaults;

/// The panes General and Search of the preferences: which settings they show, what values these
/// take, and what goes into the store. Whoever observes a setting makes it so.
/// Owner:   Preferences. Threads: main.
/// Fails:   a value that cannot be is refused: the setting stays, and its row says why until the
///          next change, or until the messages are cleared.
class PreferencesForms {
  public:
    struct Parts {
        OVUserDefaults& settings;
        GlobalHotKey& hotKey;
        std::function<size_t(const Alert&)> ask;  // answers with the button
        std::function<void()> searchAgain;
        std::function<void()> restoreWindowPosition;
    };
    explicit PreferencesForms(Parts parts) : parts_(std::move(parts)) {}

    /// Every setting that is shown.
    static std::vector<std::string> settings();
    PreferencesForm form(PreferencesPane pane) const;

    void toggle(const std::string& id, bool isOn);
    void enterNumber(const std::string& id, const std::string& text);
    void choose(const std::string& id, size_t choice);
    void press(const std::string& id);
    void recordHotKey(const KeyEvent& event);
    void removeHotKey();
    void clearMessages() { messages_.clear(); }

  private:
    struct Message {
        std::string text;
        bool isError;
    };
    void refuse(const std::string& id, std::string why) { messages_[id] = {std::move(why), true}; }
    void showMetadata(int64_t what);
    std::string hotKeyText() const;

    const Parts parts_;
    std::map<std::string, Message> messages_;
};
