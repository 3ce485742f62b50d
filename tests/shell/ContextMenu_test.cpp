#include "shell/ContextMenu.h"

#include "support/ApplicationTest.h"
#include "util/settings/OVUserDefaults.h"

namespace {

using Texts = std::vector<std::string>;

class ContextMenuTest : public ApplicationTest {
  protected:
    void SetUp() override {
        home_.file("qq1.txt");
        home_.file("qq2.mkd");
        home_.folder("qq3");
        launch({{"projects", {project("A", home_.url())}}, {"currentProject", "A"}},
               [](SimulatedDesktop& desktop) {
                   desktop.applications.push_back({.id = "notes", .extensions = {"mkd"}});
               });
        session_->app().window().toggleMainWindow();
        settle();
        type(u"qq");
        ASSERT_EQ(names(), (Texts{"qq3", "qq1.txt", "qq2.mkd"}));
        desktop().takeRequests();
    }
    SimulatedMenu& menu() { return screen().menu; }
    void rightClick(size_t row) {
        screen().table.rightClick(row);
        settle();
    }
    /// Its state: "enabled", "disabled: why", or empty where it is not there.
    std::string stateOf(const std::string& identifier) {
        for (const MenuItem& item : menu().items)
            if (item.identifier == identifier)
                return item.isEnabled ? "enabled" : "disabled: " + item.toolTip;
        return {};
    }
    Texts openers() {
        Texts all;
        for (const MenuItem& item : menu().items.front().items)
            all.push_back(item.title.empty() ? "-" : item.identifier);
        return all;
    }
    /// The names of what was shown in the file manager.
    Texts revealed() {
        Texts names;
        for (const auto& request : requests("reveal"))
            for (const auto& path : request["paths"])
                names.emplace_back(FileURL(path.get<std::string>()).lastPathComponent());
        return names;
    }
};

}  // namespace

TEST_F(ContextMenuTest, ShowsWhatTheUserWantsThereInGroups) {
    rightClick(1);
    Texts shown;
    for (const MenuItem& item : menu().items) shown.push_back(item.identifier);
    EXPECT_EQ(shown, (Texts{"OpenWith", "", "FilterForFrontmostApplication", "", "ShowInfoInFinder",
                            "RevealInFinder", "OpenInTextEditor", "ToggleMarkedItemFlag", "",
                            "ShareSelectedItem", "SelectItemAsCopySource", "SelectItemAsMoveSource",
                            "CopyOrMoveSource", "DuplicateSelection", "NewFolder"}));
    EXPECT_EQ(menu().items[5].keys, "Ctrl+F");
    menu().close();

    const auto flag = [](const char* identifier, bool shows) {
        KeyboardShortcuts::sharedInstance()
            .keyboardShortcutDefinitionFor(identifier)
            ->setShowInContextMenu(shows);
    };
    flag("RevealInFinder", false);
    flag("QuickLook", true);
    flag("ToggleHiddenFiles", true);  // of another mode
    rightClick(1);
    EXPECT_EQ(stateOf("RevealInFinder"), "");
    EXPECT_EQ(stateOf("QuickLook"), "enabled");
    EXPECT_EQ(stateOf("ToggleHiddenFiles"), "");
}

TEST_F(ContextMenuTest, WhatDoesNotApplyIsDisabledAndSaysWhy) {
    screen().table.rightClick(0);  // a folder, of which the disk has not told yet
    EXPECT_EQ(stateOf("OpenInTextEditor"), "enabled");
    EXPECT_EQ(stateOf("OpenWith"), "enabled");
    settle();
    EXPECT_EQ(stateOf("OpenInTextEditor"), "disabled: Action only works on files");
    EXPECT_EQ(stateOf("RevealInFinder"), "enabled");
    EXPECT_EQ(stateOf("CopyOrMoveSource"), "disabled: Mark an item as copy/move source first!");
    EXPECT_FALSE(menu().choose("", "OpenInTextEditor"));
}

TEST_F(ContextMenuTest, ActsOnTheRowUnderThePointerUnlessItIsSelected) {
    const struct {
        std::vector<size_t> selected;
        size_t clicked;
        Texts acted;
    } cases[] = {
        {{0, 1}, 2, {"qq2.mkd"}},
        {{0, 1}, 1, {"qq3", "qq1.txt"}},
        {{2}, 2, {"qq2.mkd"}},
    };
    for (const auto& each : cases) {
        screen().table.click(each.selected);
        rightClick(each.clicked);
        EXPECT_TRUE(menu().choose("", "RevealInFinder"));
        settle();
        EXPECT_EQ(revealed(), each.acted);
        EXPECT_EQ(screen().table.selectedRows(), each.selected);
        EXPECT_FALSE(screen().table.clickedRow());
    }
}

TEST_F(ContextMenuTest, OpensWithApplicationsThatOpenAllOfIt) {
    rightClick(2);
    EXPECT_EQ(openers(), (Texts{"com.example.Editor", "-", "notes"}));
    EXPECT_TRUE(menu().choose("OpenWith", "notes"));
    settle();
    const auto opened = requests("open");
    ASSERT_EQ(opened.size(), 1u);
    EXPECT_EQ(opened[0]["application"], "notes");
    EXPECT_FALSE(screen().window.isVisible());

    session_->app().window().toggleMainWindow();
    settle();
    screen().table.click({1, 2});
    rightClick(2);
    EXPECT_EQ(openers(), Texts{"com.example.Editor"});
}

TEST_F(ContextMenuTest, OpensByKeysAndHoldsTheWindowMeanwhile) {
    screen().table.click({1});
    const std::pair<uint64_t, uint64_t> keys[] = {{kKeyMenu, kModifierFunction},
                                                  {kKeyF10, kModifierFunction | kModifierShift}};
    for (const auto& [keyCode, flags] : keys) {
        EXPECT_TRUE(press(keyCode, flags));
        ASSERT_TRUE(menu().isOpen());
        EXPECT_TRUE(menu().place.isByKey);
        session_->app().window().hideMainWindow();
        settle();
        EXPECT_TRUE(screen().window.isVisible());
        field().hasFocus = false;
        EXPECT_TRUE(press(kKeyEscape));
        EXPECT_FALSE(menu().isOpen());
        EXPECT_TRUE(field().hasFocus);
        EXPECT_TRUE(screen().window.isVisible());
        EXPECT_EQ(field().content, u"qq");
    }
    EXPECT_FALSE(press(kKeyF10, kModifierFunction));
    EXPECT_FALSE(menu().isOpen());
}

TEST_F(ContextMenuTest, ARowThatHasMovedIsFoundAndOneThatHasGoneIsLeftAlone) {
    rightClick(2);
    screen().table.setClickedRow(1);  // as if the list had moved under the menu
    EXPECT_TRUE(menu().choose("", "RevealInFinder"));
    EXPECT_EQ(revealed(), Texts{"qq2.mkd"});

    rightClick(1);
    type(u"3");
    EXPECT_EQ(names(), Texts{"qq3"});
    EXPECT_TRUE(menu().choose("", "RevealInFinder"));
    settle();
    EXPECT_EQ(revealed(), Texts{});
    EXPECT_EQ(screen().infoBar.text, "The list has changed meanwhile");
}
