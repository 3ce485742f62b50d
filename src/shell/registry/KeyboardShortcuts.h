#pragma once
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "shell/registry/KeyboardShortcutDefinition.h"
#include "util/Observable.h"

/// The registry of all commands of the search window and of the user's own actions, with the keys
/// that the user gave them. The keys, the preferences and the context menu ask it.
/// Owner:   World (sharedInstance); Launch provides it with the keyboard's layout.
/// Threads: main. Follows the setting keyboardShortcuts.
class KeyboardShortcuts {
  public:
    using Definition = std::shared_ptr<KeyboardShortcutDefinition>;

    KeyboardShortcuts();
    KeyboardShortcuts(OVUserDefaults& settings, KeyLayout layout);
    static KeyboardShortcuts& sharedInstance();
    /// The stored form of every command as it is before the user changes anything.
    static nlohmann::json userDefaults(KeyLayout layout);

    // The lists; a title stands before the definitions of its section.
    const KeyboardShortcutEntries& builtinActionKeyboardShortcuts() const { return builtin_; }
    const KeyboardShortcutEntries& userActionKeyboardShortcuts() const { return user_; }
    KeyboardShortcutEntries allActionKeyboardShortcuts() const;
    /// Those whose name or key has the filter's text.
    KeyboardShortcutEntries filteredKeyboardShortcuts() const;
    KeyboardShortcutEntries filteredArray(const KeyboardShortcutEntries& entries) const;
    void setFilter(std::string filter) { filterString_ = std::move(filter); }
    /// Sections by their titles, in this order.
    KeyboardShortcutEntries sections(const std::vector<std::string_view>& titles) const;

    /// Null: there is no such command.
    Definition keyboardShortcutDefinitionFor(std::string_view identifier) const;
    std::string keyEquivalentFor(std::string_view identifier) const;
    std::string stringRepresentationFor(std::string_view identifier) const;
    uint64_t modifierFlagsFor(std::string_view identifier) const;

    // Whose keys these are; the mode and whether the key is held down have no say. Null: nobody's.
    Definition shortcutMatchingEvent(const KeyEvent& event) const;
    Definition builtinActionShortcutMatchingEvent(const KeyEvent& event) const;
    Definition userDefinedActionShortcutMatchingEvent(const KeyEvent& event) const;

    struct Processed {
        Definition triggered;
        bool result;  // of its block
    };
    /// Performs the first command that these keys call in this mode. Nothing: there is none.
    static std::optional<Processed> process(const KeyboardShortcutEntries& shortcuts,
                                            const KeyEvent& event, uint64_t forMode);

    /// The command that has these keys in a mode of the inquiring one; null: they are free. Those
    /// of a command that switches to a mode are free in that mode, where it does not work.
    Definition shortcutIsTaken(uint64_t keyCode, uint64_t modifierFlags,
                               const KeyboardShortcutDefinition& inquiringShortcut) const;

    void addKeyboardShortcut(Definition definition);
    /// Out of the settings too.
    void removeKeyboardShortcutForUserActionId(const std::string& identifier);

    /// The built-in ones.
    void updateFromUserDefaults();
    /// All of them get their defaults, which are stored.
    void reset();

    /// New keys were accepted.
    Signal<>& keyboardRecordingFinished() { return keyboardRecordingFinished_; }

  private:
    static Definition shortcutMatchingEvent(const KeyEvent& event,
                                            const KeyboardShortcutEntries& inShortcuts);

    OVUserDefaults& settings_;
    std::string filterString_;
    KeyboardShortcutEntries builtin_, user_;
    std::unordered_map<std::string, Definition> keyboardShortcutsByIdentifier_;
    Signal<> keyboardRecordingFinished_;
    Subscription setting_;
};
