#pragma once
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "screen/KeyEvent.h"
#include "shell/registry/builtinShortcuts.h"
#include "util/FileURL.h"
#include "util/Result.h"

class OVUserDefaults;

/// Modifier bits that count; below them are Caps Lock and what depends on the keyboard.
constexpr uint64_t maskedModifierFlags(uint64_t modifierFlags) {
    return modifierFlags & ~uint64_t{131071};
}

/// A command with its keys: as they were given, and as the user has them now.
/// Owner:   KeyboardShortcuts; shared with the list that it stands in. Threads: main. The settings
///          outlive it.
/// Units:   as builtinShortcuts.h. A key code and flags of 0: no key; without flags no key ever
///          fires.
class KeyboardShortcutDefinition {
  public:
    /// The command itself, on the main thread; true: the key is used up.
    using Block = std::function<bool()>;
    struct Fields {
        std::string actionName;
        std::string identifier;  // of a user-defined action: its UUID
        uint64_t modeIdentifier;
        RequiredSourceType requiredSourceType = RequiredSourceType::anything;
        uint64_t keyCode = 0;
        uint64_t modifierFlags = 0;
        bool showInContextMenu = false;
        Block block = {};
    };
    /// With the keys that the settings have for it, or else these.
    KeyboardShortcutDefinition(OVUserDefaults& settings, Fields fields);

    const std::string& actionName() const { return defaults_.actionName; }
    const std::string& identifier() const { return defaults_.identifier; }
    uint64_t modeIdentifier() const { return defaults_.modeIdentifier; }
    RequiredSourceType requiredSourceType() const { return defaults_.requiredSourceType; }
    uint64_t keyCode() const { return keyCode_; }
    uint64_t modifierFlags() const { return modifierFlags_; }
    void setKeys(uint64_t keyCode, uint64_t modifierFlags);
    /// As it was given.
    StoredShortcut defaultKeys() const {
        return {.keyCode = defaults_.keyCode, .modifierFlags = defaults_.modifierFlags};
    }
    bool hasDefaultKeys() const {
        return keyCode_ == defaults_.keyCode && modifierFlags_ == defaults_.modifierFlags;
    }
    bool showInContextMenu() const { return showInContextMenu_; }
    /// A real change goes into the settings.
    void setShowInContextMenu(bool show);
    bool enabled() const { return enabled_; }
    void setEnabled(bool enabled) { enabled_ = enabled; }
    void setBlock(Block block) { defaults_.block = std::move(block); }
    bool hasBlock() const { return defaults_.block != nullptr; }
    bool performBlock() const { return defaults_.block && defaults_.block(); }

    bool matchesMode(uint64_t identifier) const { return (modeIdentifier() & identifier) != 0; }
    /// Not for a key that is held down, nor for one without modifiers.
    bool matchesEvent(const KeyEvent& event) const;
    /// Key code and flags alone.
    bool matchesKeysOf(const KeyEvent& event) const;
    /// Of keys that were recorded: what arrows and editing keys carry by themselves has no say.
    bool matchesShortcut(uint64_t keyCode, uint64_t modifierFlags) const;

    /// Back to the defaults, without storing it.
    void reset();
    std::string valueForUserDefaults() const;
    void saveToUserDefaults() const;
    void updateFromUserDefaults();

    /// The key alone, as a menu has it: "p", "Return"; empty for none.
    std::string keyEquivalent() const;
    /// "Ctrl+Shift+P"; empty for none.
    std::string stringRepresentation() const;
    /// Whether the items are of the kind that the command needs; the error can be shown.
    Result<void> usableOnPaths(const std::vector<FileURL>& paths) const;

  private:
    OVUserDefaults& settings_;
    Fields defaults_;
    uint64_t keyCode_ = 0, modifierFlags_ = 0;
    bool showInContextMenu_ = false, enabled_ = true;
};

/// One line of the table of shortcuts: the title of a section, or a definition.
struct KeyboardShortcutEntry {
    std::string title = {};
    std::shared_ptr<KeyboardShortcutDefinition> definition = {};  // null: a title
};
using KeyboardShortcutEntries = std::vector<KeyboardShortcutEntry>;
