#include "shell/registry/KeyboardShortcuts.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "shell/registry/SearchHistoryController.h"
#include "shell/registry/shortcutRecording.h"
#include "support/TemporaryFolder.h"
#include "util/World.h"
#include "util/settings/OVUserDefaults.h"

namespace {

constexpr uint64_t kFileModes = 15;

class KeyboardShortcutsTest : public testing::Test {
  protected:
    KeyboardShortcutDefinition& definition(const char* identifier) {
        return *registry_.keyboardShortcutDefinitionFor(identifier);
    }
    KeyboardShortcuts::Definition userAction(const char* identifier, uint64_t keyCode,
                                             uint64_t flags) {
        auto action = std::make_shared<KeyboardShortcutDefinition>(
            settings_,
            KeyboardShortcutDefinition::Fields{
                .actionName = "Mine", .identifier = identifier, .modeIdentifier = kFileModes});
        action->setKeys(keyCode, flags);
        registry_.addKeyboardShortcut(action);
        return action;
    }
    std::string stored(const char* identifier) {
        const auto all = settings_.dictionaryForKey("keyboardShortcuts");
        return all.is_object() ? all.value(identifier, "") : "";
    }
    std::vector<std::string> filtered(const char* filter) {
        registry_.setFilter(filter);
        std::vector<std::string> names;
        for (const auto& entry : registry_.filteredKeyboardShortcuts())
            names.push_back(entry.definition ? entry.definition->actionName()
                                             : "[" + entry.title + "]");
        return names;
    }

    World world_;
    OVUserDefaults& settings_ = OVUserDefaults::sharedInstance();
    KeyboardShortcuts registry_{settings_, KeyLayout::qwerty};
};

}  // namespace

TEST_F(KeyboardShortcutsTest, StoredKeysTakeThePlaceOfTheDefaults) {
    const struct {
        const char* stored;
        uint64_t keyCode, modifierFlags;
        bool menu;
    } cases[] = {
        {"-35/1048576", 35, kModifierCommand, false},
        {"+35/262144", 35, kModifierControl, true},
        {"35/1048576", 35, kModifierCommand, true},  // no sign: the menu keeps its default
        {"-0/0", 0, 0, false},
        {"35", 3, kModifierCommand, true},
        {"-1/2/3", 3, kModifierCommand, true},
    };
    for (const auto& c : cases) {
        settings_.setObject({{"RevealInFinder", c.stored}}, "keyboardShortcuts");
        world_.mainQueue().runPending();
        const auto& reveal = definition("RevealInFinder");
        EXPECT_EQ(reveal.keyCode(), c.keyCode) << c.stored;
        EXPECT_EQ(reveal.modifierFlags(), c.modifierFlags) << c.stored;
        EXPECT_EQ(reveal.showInContextMenu(), c.menu) << c.stored;
    }
    settings_.setObject({{"RevealInFinder", 7}}, "keyboardShortcuts");
    world_.mainQueue().runPending();
    EXPECT_EQ(definition("RevealInFinder").keyCode(), 3u);
}

TEST_F(KeyboardShortcutsTest, ChangesAreStoredBesideTheOthers) {
    definition("RevealInFinder").setShowInContextMenu(true);  // as it was
    EXPECT_EQ(stored("RevealInFinder"), "");
    definition("RevealInFinder").setShowInContextMenu(false);
    definition("QuickLook").setShowInContextMenu(true);
    EXPECT_EQ(stored("RevealInFinder"), "-3/1048576");
    EXPECT_EQ(stored("QuickLook"), "+16/1048576");
    const auto mine = userAction("U", 7, kModifierControl);
    mine->saveToUserDefaults();
    registry_.reset();
    EXPECT_EQ(stored("RevealInFinder"), "+3/1048576");
    EXPECT_EQ(stored("U"), "-0/0");
    EXPECT_EQ(settings_.dictionaryForKey("keyboardShortcuts").size(), 63u);
    registry_.removeKeyboardShortcutForUserActionId("U");
    EXPECT_EQ(stored("U"), "");
    EXPECT_FALSE(registry_.keyboardShortcutDefinitionFor("U"));
    EXPECT_TRUE(registry_.userActionKeyboardShortcuts().empty());
}

TEST_F(KeyboardShortcutsTest, AnEventFiresTheFirstCommandOfItsKeysInTheMode) {
    int searched = 0, toggled = 0;
    definition("SwitchToSearchMode").setBlock([&] { return ++searched > 0; });
    definition("ToggleIgnoreMaximumResultSetSize").setBlock([&] { return ++toggled < 0; });
    const auto& all = registry_.builtinActionKeyboardShortcuts();
    const auto press = [&](KeyEvent event, uint64_t mode) {
        return KeyboardShortcuts::process(all, event, mode);
    };
    constexpr uint64_t kCapsLock = 65536;
    KeyEvent commandS{.keyCode = kKeyS, .modifierFlags = kModifierCommand | kCapsLock};
    EXPECT_TRUE(press(commandS, 2)->result);
    EXPECT_FALSE(press(commandS, 1)->result);
    EXPECT_EQ(searched, 1);
    EXPECT_EQ(toggled, 1);
    commandS.isRepeat = true;
    EXPECT_FALSE(press(commandS, 1));
    commandS.isRepeat = false;
    commandS.kind = KeyEvent::Kind::up;
    EXPECT_FALSE(press(commandS, 1));
    EXPECT_FALSE(press({.keyCode = 0}, 1));  // that of commands without keys
    EXPECT_FALSE(
        press({.keyCode = kKeyS, .modifierFlags = kModifierCommand | kModifierControl}, 1));
}

TEST_F(KeyboardShortcutsTest, AUsersActionWithoutModifiersNeverFires) {
    const auto silent = userAction("U", 100, 0);
    const auto mine = userAction("V", 101, kModifierControl);
    KeyEvent event{.keyCode = 100};
    EXPECT_FALSE(registry_.shortcutMatchingEvent(event));
    EXPECT_EQ(registry_.userActionKeyboardShortcuts().size(), 2u);
    event = {.keyCode = 101, .modifierFlags = kModifierControl, .isRepeat = true};
    EXPECT_EQ(registry_.userDefinedActionShortcutMatchingEvent(event), mine);
    EXPECT_EQ(registry_.shortcutMatchingEvent(event), mine);
    EXPECT_FALSE(registry_.builtinActionShortcutMatchingEvent(event));
}

TEST_F(KeyboardShortcutsTest, TheFilterLooksAtNamesAndKeysAndLeavesNoTitleAlone) {
    using Names = std::vector<std::string>;
    EXPECT_EQ(filtered("").size(), 73u);
    EXPECT_EQ(filtered("quick L"), (Names{"[General]", "Quick Look"}));
    EXPECT_EQ(filtered("Command"), Names{});
    const Names byKey = filtered("`");
    EXPECT_EQ(byKey, (Names{"[General]", "Cycle Current/Previous Project"}));
    userAction("U", kKeyW, kModifierOption);
    const Names w = filtered("mine");
    EXPECT_EQ(w, (Names{"[User Defined]", "Mine"}));
}

TEST_F(KeyboardShortcutsTest, RecordingRefusesReservedAndTakenKeys) {
    constexpr uint64_t kArrow = kModifierFunction | kModifierNumericPad;
    const struct {
        const char* identifier;
        uint64_t keyCode, modifierFlags;
        const char* refusal;  // null: accepted
    } cases[] = {
        {"QuickLook", kKeyReturn, kModifierOption,
         "Shortcut Super+Return is reserved for internal use."},
        {"QuickLook", kKeyPageUp, kModifierCommand,
         "Shortcut Ctrl+Page Up is reserved for internal use."},
        {"QuickLook", kKeyPageUp, kModifierControl, nullptr},
        {"QuickLook", 29, kModifierCommand | kModifierShift,
         "Shortcut Ctrl+Shift+0 is reserved for internal use."},
        {"QuickLook", 29, kModifierControl, nullptr},
        {"QuickLook", kKeyW, kModifierControl, "Shortcut Alt+W is reserved for internal use."},
        {"QuickLook", kKeyDelete, kModifierCommand | kModifierShift, nullptr},
        {"QuickLook", 35, kModifierCommand,
         "Shortcut Ctrl+P is already used for action “Projects”."},
        {"SwitchToRecentProject", 11, kModifierCommand,
         "Shortcut Ctrl+B is already used for action “Browser”."},
        {"CycleBaseDirectories", 11, kModifierCommand, nullptr},  // Browser mode's own
        {"QuickLook", kKeyLeft, kModifierControl, nullptr},
        {"OpenWith", kKeyLeft, kModifierControl,
         "Shortcut Alt+Left is already used for action “Quick Look”."},
    };
    for (const auto& c : cases) {
        auto& command = definition(c.identifier);
        const std::string before = command.valueForUserDefaults();
        const auto refusal = recordShortcut(registry_, command, c.keyCode, c.modifierFlags);
        EXPECT_EQ(refusal ? refusal->text : "", c.refusal ? c.refusal : "");
        if (c.refusal) {
            EXPECT_EQ(command.valueForUserDefaults(), before);
        } else {
            EXPECT_EQ(stored(c.identifier), command.valueForUserDefaults());
        }
    }
    EXPECT_EQ(definition("QuickLook").modifierFlags(), kModifierControl | kArrow);
}

TEST_F(KeyboardShortcutsTest, KeepsALinkToAFileRefusedAsANamedPipe) {
    TemporaryFolder folder;
    const FileURL file = folder.file("file"), directory = folder.folder("directory");
    const FileURL toFile = folder.link("toFile", "file"), toFolder = folder.link("to", "directory");
    const FileURL broken = folder.link("broken", "nowhere"), pipe = folder.at("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const std::string files = "Action only works on files",
                      folders = "Action only works on folders",
                      pipes = "Action does not work on named pipes";
    const struct {
        FileURL url;
        std::string asFile, asFolder, asEither;
    } cases[] = {{file, "", folders, ""},
                 {directory, files, "", ""},
                 {toFile, "", folders, pipes},
                 {toFolder, files, "", ""},
                 {broken, "", folders, pipes},
                 {pipe, pipes, pipes, pipes},
                 {folder.at("missing"), "Item does not exist", "Item does not exist",
                  "Item does not exist"}};
    const auto answer = [](const KeyboardShortcutDefinition& command, const FileURL& url) {
        return command.usableOnPaths({url}).error().description;
    };
    for (const auto& c : cases) {
        EXPECT_EQ(answer(definition("OpenInTextEditor"), c.url), c.asFile) << c.url.path();
        EXPECT_EQ(answer(definition("AddSelectionToLivePathFilter"), c.url), c.asFolder);
        EXPECT_EQ(answer(definition("DuplicateSelection"), c.url), c.asEither) << c.url.path();
        EXPECT_EQ(answer(definition("RevealInFinder"), c.url), "");
    }
}

TEST_F(KeyboardShortcutsTest, KeepsTheOldestSearchWhenTheHistoryIsFull) {
    settings_.setInteger(3, "historyMaxSize");
    SearchHistoryController history(settings_);
    for (const char* text : {"a", "b", "c", "b", "d"}) history.addItem(text);
    EXPECT_EQ(history.history(), (std::vector<std::string>{"d", "b", "a"}));
    EXPECT_EQ(SearchHistoryController(settings_).history(), history.history());
    EXPECT_EQ(history.nextItem(), "");
    EXPECT_FALSE(history.removeSearchTerm());
    for (const char* text : {"d", "b", "a"}) EXPECT_EQ(history.previousItem(), text);
    EXPECT_FALSE(history.previousItem());
    EXPECT_EQ(history.removeSearchTerm(), "b");  // the last one now
    EXPECT_EQ(history.nextItem(), "d");
    history.removeSearchTerm("b");
    EXPECT_EQ(history.removeSearchTerm(), "");
    EXPECT_TRUE(history.history().empty());
}
