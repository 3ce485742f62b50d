#pragma once
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

/// Every command of the search window with what it has before the user changes anything: a plain
/// table, in the order of the key settings. The registry of shortcuts is built from it.
/// Threads: any. Units: key codes are positions on the keyboard, modifiers the masks of KeyEvent.

/// Where the keys for y and z are tells which layout it is: three commands follow it.
enum class KeyLayout { qwerty, other };

/// What the selected items must be.
enum class RequiredSourceType : uint64_t { anything, files, folders, filesAndFolders };

/// A key combination. All zero: none.
struct BuiltinKeys {
    constexpr BuiltinKeys() = default;
    constexpr BuiltinKeys(uint64_t flags, uint64_t code) : BuiltinKeys(flags, {code, code}) {}
    struct Codes {
        uint64_t qwerty, other;
    };
    constexpr BuiltinKeys(uint64_t flags, Codes codes) : modifierFlags(flags), keyCodes(codes) {}
    constexpr uint64_t keyCode(KeyLayout layout) const {
        return layout == KeyLayout::qwerty ? keyCodes.qwerty : keyCodes.other;
    }

    uint64_t modifierFlags = 0;
    Codes keyCodes = {0, 0};
};

struct BuiltinShortcut {
    std::string_view identifier;  // key in the registry and in the settings
    std::string_view actionName;
    uint64_t modeIdentifier;  // mask of the modes in which it works
    RequiredSourceType requiredSourceType;
    BuiltinKeys keys;
    bool showInContextMenu = false;
};

/// Commands under one title.
struct BuiltinSection {
    std::string_view title;
    std::span<const BuiltinShortcut> shortcuts;
};
std::span<const BuiltinSection> builtinShortcuts();

/// What the setting keyboardShortcuts keeps of a command: "+" or "-" for the context menu, key
/// code, slash, modifier flags. "-35/1048576". Entries without a sign leave the menu at its
/// default.
struct StoredShortcut {
    uint64_t keyCode = 0;
    uint64_t modifierFlags = 0;
    std::optional<bool> showInContextMenu = {};
};
std::string valueForUserDefaults(const StoredShortcut& shortcut);
/// Nothing unless there is exactly one slash. What is no number counts as 0.
std::optional<StoredShortcut> parseFromUserDefaultsComponents(const std::string& stored);
