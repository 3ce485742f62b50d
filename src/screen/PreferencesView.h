#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "screen/KeyEvent.h"

/// What stands at the side of the preferences window, in this order. Panes for projects and for
/// actions belong between search and keyboard.
enum class PreferencesPane { general, search, keyboard, globalRules };
constexpr size_t kPreferencesPanes = 4;

/// A setting that can be changed, or something that can be done. Plain text, as everywhere here.
struct PreferencesRow {
    enum class Kind { toggle, number, choice, hotKey, button };
    Kind kind = Kind::toggle;
    std::string id;  // of the setting
    std::string label = {};
    std::string explanation = {};
    bool isOn = false;
    std::string value = {};  // the number, or the keys; empty: no keys
    std::vector<std::string> choices = {};
    size_t chosen = 0;
    std::string message = {};  // on what was last entered
    bool isMessageAnError = false;
    friend bool operator==(const PreferencesRow&, const PreferencesRow&) = default;
};
struct PreferencesSection {
    std::string title;
    std::string explanation;
    std::vector<PreferencesRow> rows;
    friend bool operator==(const PreferencesSection&, const PreferencesSection&) = default;
};
using PreferencesForm = std::vector<PreferencesSection>;

/// A line of the table of commands: the title of a section, or a command with its keys.
struct PreferencesShortcut {
    std::string identifier = {};  // empty: a title
    std::string name;
    std::string keys = {};
    bool isChanged = false;  // the keys are not those it had at first
    bool isInMenu = false;   // of a row
};

struct PreferencesRule {
    std::string pattern;
    size_t patternType = 0;  // of patternTypes()
    uint8_t fileTypes = 0;   // bit 1 files, 2 folders, 4 bundles
    std::string fileTypesText = {};
    std::string warning = {};
};
struct PreferencesRuleList {
    std::string title, explanation;
    bool hasFileTypes = false;  // that the user chooses
    std::vector<PreferencesRule> rules = {};
};
/// What a pattern may be, in the order of the stored numbers.
inline std::vector<std::string> patternTypes() {
    return {"Name or path", "Wildcards", "Expression"};
}

/// Who is told what the user does there. Main thread.
class PreferencesViewDelegate {
  public:
    virtual ~PreferencesViewDelegate() = default;
    virtual void paneChosen(PreferencesPane pane) = 0;
    virtual void preferencesClosed() = 0;
    /// Keys are taken down from now on, or no longer.
    virtual void recordingChanged(bool isRecording) = 0;

    virtual void toggled(const std::string& id, bool isOn) = 0;
    virtual void numberEntered(const std::string& id, const std::string& text) = 0;
    virtual void choiceMade(const std::string& id, size_t choice) = 0;
    virtual void buttonPressed(const std::string& id) = 0;
    virtual void hotKeyRecorded(const KeyEvent& event) = 0;
    virtual void hotKeyRemoved() = 0;

    virtual void filterChanged(const std::string& text) = 0;
    virtual void shortcutRecorded(const std::string& identifier, const KeyEvent& event) = 0;
    virtual void shortcutRemoved(const std::string& identifier) = 0;
    virtual void shortcutReset(const std::string& identifier) = 0;
    virtual void shortcutShownInMenu(const std::string& identifier, bool isShown) = 0;
    virtual void allShortcutsReset() = 0;

    // A rule: the number of its list, and its own in there.
    virtual void ruleAdded(size_t list) = 0;
    virtual void ruleRemoved(size_t list, size_t rule) = 0;
    virtual void patternEntered(size_t list, size_t rule, const std::string& text) = 0;
    virtual void patternTypeChosen(size_t list, size_t rule, size_t type) = 0;
    /// The bit of one type was clicked.
    virtual void fileTypeClicked(size_t list, size_t rule, uint8_t bit) = 0;
    virtual void rulesReset(size_t list) = 0;
};

/// The window of the preferences. What it is told while it is hidden it shows later. Main thread.
class PreferencesView {
  public:
    virtual ~PreferencesView() = default;
    virtual void setDelegate(PreferencesViewDelegate* delegate) = 0;
    /// Of the panes general and search.
    virtual void setForm(PreferencesPane pane, const PreferencesForm& form) = 0;
    virtual void setShortcuts(const std::vector<PreferencesShortcut>& shortcuts) = 0;
    virtual void setRules(const std::vector<PreferencesRuleList>& lists) = 0;
    virtual void showPane(PreferencesPane pane) = 0;
    /// With the keyboard.
    virtual void show() = 0;
    /// What is typed but not yet entered is entered first.
    virtual void hide() = 0;
    virtual bool isVisible() const = 0;
    /// Keys are being taken down: they mean nothing else.
    virtual bool isRecording() const = 0;
};
