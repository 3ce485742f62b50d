#pragma once
#include <array>
#include <functional>
#include <string>
#include <vector>

#include "shell/preferences/PreferencesForms.h"
#include "shell/preferences/PreferencesRules.h"
#include "shell/preferences/PreferencesShortcuts.h"
#include "util/Observable.h"

class FrontmostApplication;
class HidingGuard;
class OwnApplication;
class SearchWindowController;

/// The preferences: one window, that stands in the place of the search window while it is shown and
/// gives way to it again. Every change counts at once; there is nothing to confirm. It shows what
/// others change, too, and comes up with the pane that was seen last.
/// Owner:   AppDelegate. Threads: main.
class Preferences : private PreferencesViewDelegate {
  public:
    struct Parts {
        PreferencesView& view;
        Alerts& alerts;
        GlobalHotKey& hotKey;
        KeyboardShortcuts& shortcuts;
        SearchWindowController& window;
        OwnApplication& application;
        FrontmostApplication& frontmost;
        HidingGuard& guard;
        std::function<void()> searchAgain;
    };
    explicit Preferences(const Parts& parts);
    ~Preferences() override;

    void openPreferences();
    /// Their key, wherever the keyboard is; true: it was that.
    bool sendEvent(const KeyEvent& event);
    bool isVisible() const { return parts_.view.isVisible(); }
    /// Takes the window off the screen, with what is entered in it.
    void close();

  private:
    void paneChosen(PreferencesPane pane) override;
    void preferencesClosed() override;
    void toggled(const std::string& id, bool isOn) override;
    void numberEntered(const std::string& id, const std::string& text) override;
    void choiceMade(const std::string& id, size_t choice) override;
    void buttonPressed(const std::string& id) override;
    void recordingChanged(bool isRecording) override;
    void hotKeyRecorded(const KeyEvent& event) override;
    void hotKeyRemoved() override;
    void filterChanged(const std::string& text) override;
    void shortcutRecorded(const std::string& identifier, const KeyEvent& event) override;
    void shortcutRemoved(const std::string& identifier) override;
    void shortcutReset(const std::string& identifier) override;
    void shortcutShownInMenu(const std::string& identifier, bool isShown) override;
    void allShortcutsReset() override;
    void ruleAdded(size_t list) override;
    void ruleRemoved(size_t list, size_t rule) override;
    void patternEntered(size_t list, size_t rule, const std::string& text) override;
    void patternTypeChosen(size_t list, size_t rule, size_t type) override;
    void fileTypeClicked(size_t list, size_t rule, uint8_t bit) override;
    void rulesReset(size_t list) override;

    std::array<PreferencesForm, 2> forms() const;
    void showForms();
    /// After a change of settings, which may be shown already.
    void showChangedForms();
    void showShortcuts();
    void showRules();
    size_t ask(const Alert& alert);
    void tell(const std::optional<ShortcutRefusal>& refusal);

    const Parts parts_;
    PreferencesForms forms_;
    PreferencesShortcuts shortcuts_;
    PreferencesRules rules_;
    std::array<PreferencesForm, 2> shownForms_;
    PreferencesPane pane_ = PreferencesPane::general;
    bool holdsGuard_ = false, isAsking_ = false, comesFromSearchWindow_ = false;
    std::vector<Subscription> subscriptions_;
};
