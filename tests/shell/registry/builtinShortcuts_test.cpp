#include "shell/registry/builtinShortcuts.h"

#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <vector>

#include "screen/KeyEvent.h"
#include "shell/registry/PreferencesController.h"

namespace {

std::vector<BuiltinShortcut> all() {
    std::vector<BuiltinShortcut> out;
    for (const BuiltinSection& section : builtinShortcuts())
        out.insert(out.end(), section.shortcuts.begin(), section.shortcuts.end());
    return out;
}

}  // namespace

TEST(BuiltinShortcuts, IdentifiersAreUniqueInElevenSections) {
    std::set<std::string_view> identifiers;
    for (const BuiltinShortcut& shortcut : all()) {
        EXPECT_TRUE(identifiers.insert(shortcut.identifier).second) << shortcut.identifier;
        EXPECT_FALSE(shortcut.actionName.empty());
        EXPECT_TRUE(shortcut.modeIdentifier > 0 && shortcut.modeIdentifier < 256);
    }
    EXPECT_EQ(identifiers.size(), 62u);
    EXPECT_EQ(builtinShortcuts().size(), 11u);
    EXPECT_EQ(builtinShortcuts()[0].title, "Switching modes");
    EXPECT_EQ(builtinShortcuts()[10].title, "Marked Items Mode");
}

TEST(BuiltinShortcuts, NoKeyMeansTwoThingsInOneMode) {
    for (const KeyLayout layout : {KeyLayout::qwerty, KeyLayout::other})
        for (uint64_t mode = 1; mode < 256; mode *= 2) {
            std::map<std::pair<uint64_t, uint64_t>, std::string_view> taken;
            for (const BuiltinShortcut& shortcut : all()) {
                if (!(shortcut.modeIdentifier & mode) || !shortcut.keys.modifierFlags) continue;
                const auto [other, isFree] =
                    taken.try_emplace({shortcut.keys.modifierFlags, shortcut.keys.keyCode(layout)},
                                      shortcut.identifier);
                EXPECT_TRUE(isFree) << shortcut.identifier << " and " << other->second;
            }
        }
}

TEST(BuiltinShortcuts, TheseKeepTheKeysOfTheModeThatTheyAreIn) {
    std::map<std::string_view, BuiltinShortcut> byName;
    for (const BuiltinShortcut& shortcut : all()) byName.emplace(shortcut.identifier, shortcut);
    const char* const pairs[][2] = {
        {"SwitchToSearchMode", "ToggleIgnoreMaximumResultSetSize"},
        {"SwitchToProjectsMode", "SwitchToRecentProject"},
        {"SwitchToMarkedItemsMode", "ToggleMarkedItemsMode"},
    };
    for (const auto& [switching, own] : pairs) {
        const BuiltinShortcut &a = byName.at(switching), &b = byName.at(own);
        EXPECT_EQ(a.keys.modifierFlags, b.keys.modifierFlags);
        EXPECT_EQ(a.keys.keyCode(KeyLayout::qwerty), b.keys.keyCode(KeyLayout::qwerty));
        EXPECT_EQ(a.modeIdentifier + b.modeIdentifier, 255u) << own;
    }
    for (const char* none :
         {"SendSelectionToAlfred", "SendSelectionToLaunchBar", "ShareSelectedItem"})
        EXPECT_EQ(byName.at(none).keys.modifierFlags, 0u) << none;
    EXPECT_EQ(byName.at("ShowInfoInFinder").requiredSourceType,
              RequiredSourceType::filesAndFolders);
}

TEST(BuiltinShortcuts, ThreeFollowTheLayout) {
    const auto stored = [](KeyLayout layout) {
        return PreferencesController::userDefaults(
            {.home = FileURL("/h"), .layout = layout})["keyboardShortcuts"];
    };
    const auto qwerty = stored(KeyLayout::qwerty), other = stored(KeyLayout::other);
    EXPECT_EQ(qwerty.size(), 62u);
    EXPECT_EQ(qwerty["Maximize"], "-49/393216");
    EXPECT_EQ(qwerty["SelectEveryItem"], "-0/1048576");
    EXPECT_EQ(qwerty["ShareSelectedItem"], "+0/0");
    EXPECT_EQ(qwerty["ShowHelp"], "-44/1179648");
    EXPECT_EQ(other["ShowHelp"], "-27/1179648");
    EXPECT_EQ(other["ClearPathSelection"], "-27/262144");
    EXPECT_EQ(other["QuickLook"], "-6/1048576");
    int different = 0;
    for (const auto& [identifier, value] : qwerty.items()) different += other[identifier] != value;
    EXPECT_EQ(different, 3);
}

TEST(StoredShortcut, IsReadAsItIsWritten) {
    const StoredShortcut shortcut{35, kModifierCommand, false};
    EXPECT_EQ(valueForUserDefaults(shortcut), "-35/1048576");
    const struct {
        const char* text;
        uint64_t keyCode, modifierFlags;
        std::optional<bool> menu;
    } rows[] = {
        {"-35/1048576", 35, 1048576, false},
        {"+35/1048576", 35, 1048576, true},
        {"35/1048576", 35, 1048576, {}},
        {"+0/0", 0, 0, true},
        {"/", 0, 0, {}},
        {"x/y", 0, 0, {}},
        {"-12abc/ 7", 12, 7, false},
    };
    for (const auto& row : rows) {
        const auto parsed = parseFromUserDefaultsComponents(row.text);
        ASSERT_TRUE(parsed) << row.text;
        EXPECT_EQ(parsed->keyCode, row.keyCode) << row.text;
        EXPECT_EQ(parsed->modifierFlags, row.modifierFlags) << row.text;
        EXPECT_EQ(parsed->showInContextMenu, row.menu) << row.text;
    }
    for (const char* text : {"", "35", "1/2/3", "+"})
        EXPECT_FALSE(parseFromUserDefaultsComponents(text)) << text;
}
