#include "shell/registry/KeyboardShortcuts.h"
#include "support/ApplicationTest.h"
#include "util/settings/OVUserDefaults.h"

namespace {

using Names = std::vector<std::string>;
using nlohmann::json;

class CommandsTest : public ApplicationTest {
  protected:
    void startWithProject() {
        launch({{"projects", {project("A", home_.url())}}, {"currentProject", "A"}});
        session_->app().window().toggleMainWindow();
        settle();
        desktop().takeRequests();
    }
    bool perform(const char* identifier) {
        const bool consumed = KeyboardShortcuts::sharedInstance()
                                  .keyboardShortcutDefinitionFor(identifier)
                                  ->performBlock();
        settle();
        return consumed;
    }
    json storedProject() { return OVUserDefaults::sharedInstance().arrayForKey("projects")[0]; }
    std::string shown() { return screen().infoBar.text; }
};

}  // namespace

TEST_F(CommandsTest, OneKindOfItemAlwaysStaysVisible) {
    home_.file("qqfile");
    home_.folder("qqfolder");
    startWithProject();
    type(u"qq");
    EXPECT_EQ(names().size(), 2u);
    const struct {
        const char* command;
        Names left;
        int mask;
    } steps[] = {
        {"ToggleShowFiles", {"qqfolder"}, 2},
        {"ToggleShowDirectories", {"qqfile"}, 1},
        {"ToggleShowFiles", {"qqfolder"}, 2},
        {"ToggleShowFiles", {"qqfile", "qqfolder"}, 3},
    };
    for (const auto& step : steps) {
        EXPECT_TRUE(perform(step.command));
        EXPECT_EQ(names(), step.left) << step.command;
        EXPECT_EQ(storedProject()["visibleItemType"], step.mask);
    }
}

TEST_F(CommandsTest, TheNameSwitchIsKeptAndTheDiacriticsSwitchIsNot) {
    home_.file("inner/caf\xc3\xa9");
    startWithProject();
    type(u"cafe");
    EXPECT_TRUE(names().empty());
    EXPECT_TRUE(perform("ToggleIgnoreDiacritics"));
    EXPECT_EQ(names().size(), 1u);
    EXPECT_FALSE(storedProject().value("ignoreDiacritics", false));
    empty();
    type(u"inner caf");
    EXPECT_TRUE(names().empty());
    EXPECT_TRUE(perform("ToggleSearchLastPathComponentOrCompletePath"));
    EXPECT_EQ(names().size(), 1u);
    EXPECT_FALSE(storedProject()["matchFilenameOnly"]);
}

TEST_F(CommandsTest, PastSearchesComeBackOneByOne) {
    home_.file("alpha");
    home_.file("beta");
    startWithProject();
    for (const char16_t* text : {u"alpha", u"beta"}) {
        empty();
        type(text);
        EXPECT_TRUE(perform("RevealInFinder"));
        press(38, kModifierCommand | kModifierShift);  // a command notes what was searched
        settle();
    }
    EXPECT_TRUE(perform("SearchHistoryPrevious"));
    EXPECT_EQ(field().content, u"alpha");
    EXPECT_EQ(names(), Names{"alpha"});
    EXPECT_TRUE(perform("SearchHistoryNext"));
    EXPECT_EQ(field().content, u"beta");
    EXPECT_TRUE(perform("SearchHistoryRemoveTerm"));
    EXPECT_EQ(field().content, u"alpha");
    desktop().takeRequests();
    perform("SearchHistoryRemoveTerm");
    perform("SearchHistoryRemoveTerm");
    EXPECT_EQ(requests("beep").size(), 1u);
}

TEST_F(CommandsTest, ASelectionIsNeededAndSometimesJustOne) {
    home_.file("qq1");
    home_.file("qq2");
    startWithProject();
    for (const char* identifier :
         {"RevealInFinder", "ToggleMarkedItemFlag", "SelectItemAsCopySource", "AddItemToMoveSource",
          "BrowseSelection", "OpenWith", "CreateProjectFromSelection"}) {
        EXPECT_FALSE(perform(identifier)) << identifier;
        EXPECT_EQ(shown(), "No item selected") << identifier;
        session_->advance(5);
    }
    EXPECT_TRUE(perform("CopyOrMoveSource"));
    EXPECT_EQ(shown(), "Mark an item as copy/move source first!");
    type(u"qq");
    perform("SelectEveryItem");
    EXPECT_FALSE(perform("SearchSelection"));
    EXPECT_EQ(shown(), "Multiple items selected");
    EXPECT_TRUE(perform("ShowInfoInFinder"));
    EXPECT_EQ(requests("info")[0]["paths"].size(), 2u);
    EXPECT_TRUE(perform("OpenInTextEditor"));
    EXPECT_EQ(requests("open")[0]["application"], "com.apple.TextEdit");
    EXPECT_FALSE(screen().window.visible);
}

TEST_F(CommandsTest, MetadataThatIsNotReadIsAskedFor) {
    startWithProject();
    auto& settings = OVUserDefaults::sharedInstance();
    const auto cycle = [&](const char* answer) {
        screen().alerts.answers = {answer};
        EXPECT_TRUE(perform("CycleThroughMetadataDisplayOptions"));
        return settings.integerForKey("showMetadata");
    };
    EXPECT_EQ(cycle("Don't Show Metadata"), 0);
    EXPECT_EQ(cycle("Enable Metadata Scanning"), 1);
    EXPECT_TRUE(settings.boolForKey("processMetadata"));
    EXPECT_EQ(cycle(""), 2);
    EXPECT_EQ(cycle(""), 0);
    EXPECT_EQ(screen().alerts.shown.size(), 2u);
    settings.setBool(false, "includeNeverWhenCyclingShowMetadataInResult");
    cycle("");
    EXPECT_EQ(cycle(""), 2);
    EXPECT_EQ(cycle(""), 1);
}

TEST_F(CommandsTest, WhatIsNotThereYetSaysSo) {
    startWithProject();
    for (const char* identifier : {"NewFolder", "SwitchToHistoryMode"}) {
        EXPECT_FALSE(perform(identifier));
        const auto name = KeyboardShortcuts::sharedInstance()
                              .keyboardShortcutDefinitionFor(identifier)
                              ->actionName();
        EXPECT_EQ(shown(), "“" + name + "” is not available yet");
    }
    for (const auto& entry : KeyboardShortcuts::sharedInstance().builtinActionKeyboardShortcuts()) {
        if (!entry.definition) continue;
        EXPECT_TRUE(entry.definition->hasBlock()) << entry.definition->identifier();
    }
}
