#include "shell/registry/KeyboardShortcuts.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "util/Unicode.h"
#include "util/World.h"
#include "util/settings/OVUserDefaults.h"

namespace {

constexpr auto kSetting = "keyboardShortcuts";

std::u16string folded(const std::string& text) {
    return lowerCasedUnits(toUtf16Lenient(text));
}

void append(KeyboardShortcutEntries& to, const KeyboardShortcutEntries& entries) {
    to.insert(to.end(), entries.begin(), entries.end());
}

}  // namespace

KeyboardShortcuts::KeyboardShortcuts()
    : KeyboardShortcuts(OVUserDefaults::sharedInstance(), KeyLayout::qwerty) {}

KeyboardShortcuts::KeyboardShortcuts(OVUserDefaults& settings, KeyLayout layout)
    : settings_(settings) {
    for (const BuiltinSection& section : builtinShortcuts()) {
        builtin_.push_back({.title = std::string(section.title)});
        for (const BuiltinShortcut& shortcut : section.shortcuts) {
            auto definition = std::make_shared<KeyboardShortcutDefinition>(
                settings, KeyboardShortcutDefinition::Fields{
                              .actionName = std::string(shortcut.actionName),
                              .identifier = std::string(shortcut.identifier),
                              .modeIdentifier = shortcut.modeIdentifier,
                              .requiredSourceType = shortcut.requiredSourceType,
                              .keyCode = shortcut.keys.keyCode(layout),
                              .modifierFlags = shortcut.keys.modifierFlags,
                              .showInContextMenu = shortcut.showInContextMenu,
                          });
            keyboardShortcutsByIdentifier_[definition->identifier()] = definition;
            builtin_.push_back({.definition = std::move(definition)});
        }
    }
    setting_ = settings_.addObserver(kSetting, [this](auto&, auto&) { updateFromUserDefaults(); });
}

KeyboardShortcuts& KeyboardShortcuts::sharedInstance() {
    return World::current().shared<KeyboardShortcuts>();
}

nlohmann::json KeyboardShortcuts::userDefaults(KeyLayout layout) {
    nlohmann::json stored = nlohmann::json::object();
    for (const BuiltinSection& section : builtinShortcuts())
        for (const BuiltinShortcut& shortcut : section.shortcuts)
            stored[std::string(shortcut.identifier)] = valueForUserDefaults({
                .keyCode = shortcut.keys.keyCode(layout),
                .modifierFlags = shortcut.keys.modifierFlags,
                .showInContextMenu = shortcut.showInContextMenu,
            });
    return stored;
}

// ---- Lists

KeyboardShortcutEntries KeyboardShortcuts::allActionKeyboardShortcuts() const {
    KeyboardShortcutEntries all = builtin_;
    if (!user_.empty()) all.push_back({.title = "User Defined"});
    append(all, user_);
    return all;
}

KeyboardShortcutEntries KeyboardShortcuts::filteredKeyboardShortcuts() const {
    return filteredArray(allActionKeyboardShortcuts());
}

KeyboardShortcutEntries KeyboardShortcuts::filteredArray(
    const KeyboardShortcutEntries& entries) const {
    if (filterString_.empty()) return entries;
    const std::u16string filter = folded(filterString_);
    KeyboardShortcutEntries left;
    const KeyboardShortcutEntry* title = nullptr;
    for (const KeyboardShortcutEntry& entry : entries) {
        if (!entry.definition) {
            title = &entry;
            continue;
        }
        const bool stays =
            folded(entry.definition->actionName()).find(filter) != std::u16string::npos ||
            entry.definition->keyEquivalent().find(filterString_) != std::string::npos;
        if (!stays) continue;
        if (title) left.push_back(*title);
        title = nullptr;
        left.push_back(entry);
    }
    return left;
}

KeyboardShortcutEntries KeyboardShortcuts::sections(
    const std::vector<std::string_view>& titles) const {
    KeyboardShortcutEntries found;
    for (const std::string_view title : titles) {
        auto entry = std::find_if(builtin_.begin(), builtin_.end(), [&](const auto& candidate) {
            return !candidate.definition && candidate.title == title;
        });
        if (entry == builtin_.end()) continue;
        do found.push_back(*entry++);
        while (entry != builtin_.end() && entry->definition);
    }
    return found;
}

// ---- By identifier

KeyboardShortcuts::Definition KeyboardShortcuts::keyboardShortcutDefinitionFor(
    std::string_view identifier) const {
    const auto found = keyboardShortcutsByIdentifier_.find(std::string(identifier));
    return found == keyboardShortcutsByIdentifier_.end() ? nullptr : found->second;
}

std::string KeyboardShortcuts::keyEquivalentFor(std::string_view identifier) const {
    const Definition definition = keyboardShortcutDefinitionFor(identifier);
    return definition ? definition->keyEquivalent() : std::string();
}

std::string KeyboardShortcuts::stringRepresentationFor(std::string_view identifier) const {
    const Definition definition = keyboardShortcutDefinitionFor(identifier);
    return definition ? definition->stringRepresentation() : std::string();
}

uint64_t KeyboardShortcuts::modifierFlagsFor(std::string_view identifier) const {
    const Definition definition = keyboardShortcutDefinitionFor(identifier);
    return definition ? definition->modifierFlags() : 0;
}

// ---- By keys

KeyboardShortcuts::Definition KeyboardShortcuts::shortcutMatchingEvent(
    const KeyEvent& event, const KeyboardShortcutEntries& inShortcuts) {
    for (const KeyboardShortcutEntry& entry : inShortcuts)
        if (entry.definition && entry.definition->matchesKeysOf(event)) return entry.definition;
    return nullptr;
}

KeyboardShortcuts::Definition KeyboardShortcuts::shortcutMatchingEvent(
    const KeyEvent& event) const {
    const Definition builtin = builtinActionShortcutMatchingEvent(event);
    return builtin ? builtin : userDefinedActionShortcutMatchingEvent(event);
}

KeyboardShortcuts::Definition KeyboardShortcuts::builtinActionShortcutMatchingEvent(
    const KeyEvent& event) const {
    return shortcutMatchingEvent(event, builtin_);
}

KeyboardShortcuts::Definition KeyboardShortcuts::userDefinedActionShortcutMatchingEvent(
    const KeyEvent& event) const {
    return shortcutMatchingEvent(event, user_);
}

std::optional<KeyboardShortcuts::Processed> KeyboardShortcuts::process(
    const KeyboardShortcutEntries& shortcuts, const KeyEvent& event, uint64_t forMode) {
    for (const KeyboardShortcutEntry& entry : shortcuts) {
        const Definition definition = entry.definition;
        if (!definition || !definition->matchesMode(forMode) || !definition->matchesEvent(event))
            continue;
        return Processed{.triggered = definition, .result = definition->performBlock()};
    }
    return std::nullopt;
}

KeyboardShortcuts::Definition KeyboardShortcuts::shortcutIsTaken(
    uint64_t keyCode, uint64_t modifierFlags,
    const KeyboardShortcutDefinition& inquiringShortcut) const {
    for (const KeyboardShortcutEntry& entry : allActionKeyboardShortcuts()) {
        const Definition& other = entry.definition;
        if (other && other->identifier() != inquiringShortcut.identifier() &&
            other->matchesMode(inquiringShortcut.modeIdentifier()) &&
            other->matchesShortcut(keyCode, modifierFlags))
            return other;
    }
    return nullptr;
}

// ---- The user's

void KeyboardShortcuts::addKeyboardShortcut(Definition definition) {
    const std::string identifier = definition->identifier();
    std::erase_if(user_, [&](const KeyboardShortcutEntry& entry) {
        return entry.definition->identifier() == identifier;
    });
    keyboardShortcutsByIdentifier_[identifier] = definition;
    user_.push_back({.definition = std::move(definition)});
}

void KeyboardShortcuts::removeKeyboardShortcutForUserActionId(const std::string& identifier) {
    const auto removed = std::erase_if(user_, [&](const KeyboardShortcutEntry& entry) {
        return entry.definition->identifier() == identifier;
    });
    if (removed == 0) return;
    keyboardShortcutsByIdentifier_.erase(identifier);
    nlohmann::json stored = settings_.dictionaryForKey(kSetting);
    if (stored.is_object() && stored.erase(identifier) > 0)
        settings_.setObject(std::move(stored), kSetting);
}

void KeyboardShortcuts::updateFromUserDefaults() {
    for (const KeyboardShortcutEntry& entry : builtin_)
        if (entry.definition) entry.definition->updateFromUserDefaults();
}

void KeyboardShortcuts::reset() {
    nlohmann::json stored = nlohmann::json::object();
    for (const KeyboardShortcutEntry& entry : allActionKeyboardShortcuts()) {
        if (!entry.definition) continue;
        entry.definition->reset();
        stored[entry.definition->identifier()] = entry.definition->valueForUserDefaults();
    }
    settings_.setObject(std::move(stored), kSetting);
}
