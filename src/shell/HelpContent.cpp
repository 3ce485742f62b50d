#include "shell/HelpContent.h"

#include <algorithm>
#include <array>

#include "screen/keyCodes.h"
#include "screen/linuxSecondKeys.h"
#include "shell/fixedKeys.h"
#include "util/Unicode.h"

namespace {

using helpContent::keyCaps;
using helpContent::Subject;
using Groups = std::vector<HelpGroup>;

// Commands that work on what is selected: all of these sections, and some of others.
constexpr std::array<std::string_view, 2> kSelectionSections = {"Selection", "File Management"};
constexpr std::array<std::string_view, 6> kSelectionCommands = {
    "QuickLook",          "ShrinkPathSelection",          "ExtendPathSelection",
    "ClearPathSelection", "AddSelectionToLivePathFilter", "RemoveSelectionToLivePathFilter"};
constexpr std::string_view kUserSection = "User Defined";

template <size_t N>
bool contains(const std::array<std::string_view, N>& list, std::string_view word) {
    return std::find(list.begin(), list.end(), word) != list.end();
}

bool isOfSelection(std::string_view section, const KeyboardShortcutDefinition& definition) {
    return contains(kSelectionSections, section) || section == kUserSection ||
           contains(kSelectionCommands, definition.identifier());
}

void addWithSecondKeys(HelpLine& line, uint64_t keyCode, uint64_t modifierFlags) {
    line.keys.push_back(keyCaps(keyCode, modifierFlags));
    if (const auto second = secondKeysOf(keyCode, modifierFlags))
        line.keys.push_back(keyCaps(second->first, second->second));
}

void addCombination(HelpLine& line, const FixedKeys::Combination& keys) {
    if (keys.cap.empty() && keys.keyCode != kNoKeyCode) {
        addWithSecondKeys(line, keys.keyCode, keys.modifierFlags);
        return;
    }
    KeyCaps caps = keyCaps(kNoKeyCode, keys.modifierFlags);
    if (!keys.cap.empty()) caps.emplace_back(keys.cap);
    if (!caps.empty()) line.keys.push_back(std::move(caps));
}

void addFixedKeysOf(const KeyboardShortcutDefinition& definition, uint64_t mode, HelpLine& line) {
    for (const FixedKeys& fixed : fixedKeys()) {
        if (fixed.name != definition.identifier() || !(fixed.modes & mode)) continue;
        addCombination(line, fixed.first);
        addCombination(line, fixed.second);
    }
}

HelpLine lineOf(const KeyboardShortcutDefinition& definition, uint64_t mode) {
    HelpLine line{.name = definition.actionName(), .keys = {}};
    // Without modifiers no key of a command ever fires.
    if (definition.modifierFlags() != 0)
        addWithSecondKeys(line, definition.keyCode(), definition.modifierFlags());
    addFixedKeysOf(definition, mode, line);
    return line;
}

/// The fixed keys of a section, but for those of commands.
void addFixedLines(const Subject& subject, bool onlyOfSelection, HelpGroup& group) {
    for (const FixedKeys& fixed : fixedKeys()) {
        const bool counts = fixed.section == group.title && (fixed.modes & subject.mode) &&
                            (fixed.ofSelection || !onlyOfSelection);
        if (!counts || subject.shortcuts.keyboardShortcutDefinitionFor(fixed.name)) continue;
        HelpLine line{.name = std::string(fixed.name), .keys = {}};
        addCombination(line, fixed.first);
        addCombination(line, fixed.second);
        group.lines.push_back(std::move(line));
    }
}

enum class Which { all, ofSelection };

template <class Counts>
Groups groupsOf(const Subject& subject, Which which, Counts counts) {
    Groups groups;
    const auto begin = [&](std::string title) {
        groups.push_back({.title = std::move(title), .lines = {}});
        addFixedLines(subject, which == Which::ofSelection, groups.back());
    };
    begin(std::string(kListSection));
    for (const KeyboardShortcutEntry& entry : subject.shortcuts.allActionKeyboardShortcuts()) {
        if (!entry.definition)
            begin(entry.title);
        else if (entry.definition->matchesMode(subject.mode) &&
                 counts(groups.back().title, *entry.definition))
            groups.back().lines.push_back(lineOf(*entry.definition, subject.mode));
    }
    std::erase_if(groups, [](const HelpGroup& group) { return group.lines.empty(); });
    return groups;
}

std::u16string folded(const std::string& text) {
    return lowerCasedUnits(toUtf16Lenient(text));
}

std::vector<std::u16string> wordsOf(const std::string& text) {
    std::vector<std::u16string> words(1);
    for (const char16_t unit : folded(text)) {
        if (!isBlank({&unit, 1}))
            words.back() += unit;
        else if (!words.back().empty())
            words.emplace_back();
    }
    if (words.back().empty()) words.pop_back();
    return words;
}

}  // namespace

KeyCaps helpContent::keyCaps(uint64_t keyCode, uint64_t modifierFlags) {
    const std::string key = hotKeyText(keyCode, 0);
    const std::string modifiers = modifiersText(modifierFlags);
    KeyCaps caps;
    for (size_t begin = 0, end; begin < modifiers.size(); begin = end + 1) {
        end = modifiers.find('+', begin);
        caps.push_back(modifiers.substr(begin, end - begin));
    }
    if (!key.empty()) caps.push_back(key);
    return caps;
}

std::string helpContent::joined(const KeyCaps& caps) {
    std::string text;
    for (const std::string& cap : caps) text += (text.empty() ? "" : "+") + cap;
    return text;
}

std::vector<HelpGroup> helpContent::allKeys(const Subject& subject) {
    return groupsOf(subject, Which::all, [](auto&, auto&) { return true; });
}

KeyboardShortcutEntries helpContent::commandsForSelection(const Subject& subject) {
    KeyboardShortcutEntries commands;
    std::string_view section;
    for (const KeyboardShortcutEntry& entry : subject.shortcuts.allActionKeyboardShortcuts()) {
        if (!entry.definition)
            section = entry.title;
        else if (entry.definition->matchesMode(subject.mode) &&
                 isOfSelection(section, *entry.definition))
            commands.push_back(entry);
    }
    return commands;
}

std::vector<HelpGroup> helpContent::keysForSelection(const Subject& subject,
                                                     const Refusals& refusals) {
    const auto counts = [&](const std::string& section,
                            const KeyboardShortcutDefinition& definition) {
        return isOfSelection(section, definition) && !refusals.contains(definition.identifier());
    };
    Groups groups = groupsOf(subject, Which::ofSelection, counts);
    for (HelpGroup& group : groups)
        std::erase_if(group.lines, [](const HelpLine& line) { return line.keys.empty(); });
    std::erase_if(groups, [](const HelpGroup& group) { return group.lines.empty(); });
    return groups;
}

std::vector<HelpGroup> helpContent::filtered(const std::vector<HelpGroup>& groups,
                                             const std::string& filter) {
    const std::vector<std::u16string> words = wordsOf(filter);
    Groups left;
    for (const HelpGroup& group : groups) {
        HelpGroup some{.title = group.title, .lines = {}};
        for (const HelpLine& line : group.lines) {
            std::string text = group.title + "\n" + line.name;
            for (const KeyCaps& caps : line.keys) text += "\n" + joined(caps);
            const std::u16string where = folded(text);
            const bool stays = std::all_of(words.begin(), words.end(), [&](const auto& word) {
                return where.find(word) != std::u16string::npos;
            });
            if (stays) some.lines.push_back(line);
        }
        if (!some.lines.empty()) left.push_back(std::move(some));
    }
    return left;
}
