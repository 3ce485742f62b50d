#include "shell/registry/KeyboardShortcutDefinition.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <nlohmann/json.hpp>

#include "shell/registry/shortcutText.h"
#include "util/settings/OVUserDefaults.h"

namespace {

constexpr auto kSetting = "keyboardShortcuts";

Error refusal(std::string text, int code = 0) {
    return Error{.domain = "shortcut", .code = code, .description = std::move(text)};
}

const char* kindOf(mode_t mode) {
    switch (mode & S_IFMT) {
        case S_IFCHR:
            return "character special files";
        case S_IFBLK:
            return "block special files";
        case S_IFSOCK:
            return "sockets";
        default:
            return "named pipes";
    }
}

Result<void> check(const FileURL& path, RequiredSourceType required) {
    using Type = RequiredSourceType;
    struct stat target, item;
    const bool isFolder = stat(path.c_str(), &target) == 0 && S_ISDIR(target.st_mode);
    if (lstat(path.c_str(), &item) != 0)
        return refusal(errno == ENOENT ? "Item does not exist" : std::strerror(errno), errno);
    const bool isFile = S_ISREG(item.st_mode), isLink = S_ISLNK(item.st_mode);
    if (isFolder) {
        if (required == Type::files) return refusal("Action only works on files");
        return {};
    }
    if (isFile && required != Type::folders) return {};
    if (isLink && required == Type::files) return {};
    if ((isFile || isLink) && required == Type::folders)
        return refusal("Action only works on folders");
    // Kept: where folders and files are allowed, a link to a file is refused as a named pipe.
    return refusal(std::string("Action does not work on ") + kindOf(item.st_mode));
}

}  // namespace

KeyboardShortcutDefinition::KeyboardShortcutDefinition(OVUserDefaults& settings, Fields fields)
    : settings_(settings), defaults_(std::move(fields)) {
    updateFromUserDefaults();
}

void KeyboardShortcutDefinition::setKeys(uint64_t keyCode, uint64_t modifierFlags) {
    keyCode_ = keyCode;
    modifierFlags_ = modifierFlags;
}

void KeyboardShortcutDefinition::setShowInContextMenu(bool show) {
    if (show == showInContextMenu_) return;
    showInContextMenu_ = show;
    saveToUserDefaults();
}

bool KeyboardShortcutDefinition::matchesKeysOf(const KeyEvent& event) const {
    return modifierFlags_ != 0 && event.keyCode == keyCode_ &&
           maskedModifierFlags(event.modifierFlags) == modifierFlags_;
}

bool KeyboardShortcutDefinition::matchesEvent(const KeyEvent& event) const {
    return !event.isRepeat && event.kind == KeyEvent::Kind::down && matchesKeysOf(event);
}

bool KeyboardShortcutDefinition::matchesShortcut(uint64_t keyCode, uint64_t modifierFlags) const {
    constexpr uint64_t kOfTheKey = kModifierFunction | kModifierNumericPad;
    return keyCode == keyCode_ && (modifierFlags_ & ~kOfTheKey) == modifierFlags;
}

void KeyboardShortcutDefinition::reset() {
    keyCode_ = defaults_.keyCode;
    modifierFlags_ = defaults_.modifierFlags;
    showInContextMenu_ = defaults_.showInContextMenu;
}

std::string KeyboardShortcutDefinition::valueForUserDefaults() const {
    return ::valueForUserDefaults({.keyCode = keyCode_,
                                   .modifierFlags = modifierFlags_,
                                   .showInContextMenu = showInContextMenu_});
}

void KeyboardShortcutDefinition::saveToUserDefaults() const {
    nlohmann::json stored = settings_.dictionaryForKey(kSetting);
    if (!stored.is_object()) stored = nlohmann::json::object();
    stored[identifier()] = valueForUserDefaults();
    settings_.setObject(std::move(stored), kSetting);
}

void KeyboardShortcutDefinition::updateFromUserDefaults() {
    reset();
    const SettingsValue stored = settings_.valueForKey(kSetting);
    if (!stored || !stored->is_object()) return;
    const auto entry = stored->find(identifier());
    if (entry == stored->end() || !entry->is_string()) return;
    const auto shortcut = parseFromUserDefaultsComponents(entry->get<std::string>());
    if (!shortcut) return;
    setKeys(shortcut->keyCode, shortcut->modifierFlags);
    showInContextMenu_ = shortcut->showInContextMenu.value_or(showInContextMenu_);
}

std::string KeyboardShortcutDefinition::keyEquivalent() const {
    std::string key = keyText(keyCode_, modifierFlags_);
    if (key.size() == 1 && key[0] >= 'A' && key[0] <= 'Z') key[0] += 'a' - 'A';
    return key;
}

std::string KeyboardShortcutDefinition::stringRepresentation() const {
    return shortcutText(keyCode_, modifierFlags_);
}

Result<void> KeyboardShortcutDefinition::usableOnPaths(const std::vector<FileURL>& paths) const {
    if (requiredSourceType() == RequiredSourceType::anything) return {};
    for (const FileURL& path : paths)
        if (auto usable = check(path, requiredSourceType()); !usable) return usable;
    return {};
}
