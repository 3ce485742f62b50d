#include "shell/ActionIcons.h"

#include <unistd.h>

#include <algorithm>

#include "screen/keyCodes.h"
#include "shell/registry/KeyboardShortcuts.h"
#include "support/ApplicationTest.h"
#include "util/settings/OVUserDefaults.h"

namespace {

using Rows = std::vector<size_t>;
using Texts = std::vector<std::string>;
using Symbol = RowAction::Symbol;

class ActionIconsTest : public ApplicationTest {
  protected:
    void startWith(std::initializer_list<const char*> files) {
        for (const char* name : files) home_.file(name);
        launch({{"projects", {project("A", home_.url())}}, {"currentProject", "A"}},
               [](SimulatedDesktop& desktop) {
                   desktop.applications.push_back(
                       {.id = "viewer", .name = "Viewer", .extensions = {"png"}});
               });
        session_->app().window().toggleMainWindow();
        settle();
        type(u"qq");
    }
    void hold(uint64_t flags) {
        screen().send(
            {.keyCode = kNoKeyCode, .modifierFlags = flags, .kind = KeyEvent::Kind::flagsChanged});
        settle();
    }
    std::string label(size_t row) {
        const auto action = screen().table.action(row);
        return action ? action->label : "";
    }
    /// After all is found out.
    Texts labels() {
        Texts all;
        for (size_t row = 0; row < screen().table.numberOfRows(); row++) label(row);
        settle();
        for (size_t row = 0; row < screen().table.numberOfRows(); row++) all.push_back(label(row));
        return all;
    }
    std::vector<Rows> redrawn() { return screen().table.takeRedrawnActions(); }
};

}  // namespace

TEST_F(ActionIconsTest, SayWhatReturnDoesToTheSelectedRows) {
    home_.folder("qq0");
    startWith({"qq1.txt", "qq2.png"});
    ASSERT_EQ(names(), (Texts{"qq0", "qq1.txt", "qq2.png"}));
    EXPECT_EQ(screen().table.action(0)->symbol, Symbol::openFolder);
    screen().table.click({0, 1, 2});
    EXPECT_EQ(screen().table.action(2)->symbol, Symbol::pending) << "found out behind the window";
    EXPECT_EQ(labels(), (Texts{"Open", "Open with com.example.Editor", "Open with Viewer"}));
    EXPECT_EQ(screen().table.action(2)->iconName, "viewer");
    screen().table.click({2});
    const struct {
        uint64_t flags;
        Symbol symbol;
        const char* label;
    } cases[] = {
        {kModifierShift, Symbol::openInFrontmost, "Open in Frontmost Application"},
        {kModifierOption, Symbol::copyPath, "Copy Path to Clipboard"},
        {kModifierOption | kModifierShift, Symbol::copyName, "Copy Filename to Clipboard"},
        {kModifierControl | kModifierOption, Symbol::copyContent, "Copy File Content to Clipboard"},
        {kModifierCommand, Symbol::typePath, "Type Path"},
        {kModifierControl, Symbol::rename, "Rename"},
        {0, Symbol::open, "Open with Viewer"},
    };
    for (const auto& each : cases) {
        hold(each.flags);
        EXPECT_EQ(labels(), (Texts{"", "", each.label}));
        EXPECT_EQ(screen().table.action(2)->symbol, each.symbol) << each.label;
    }
    constexpr uint64_t kFree = kModifierCommand | kModifierControl;
    hold(kFree);
    EXPECT_EQ(labels(), Texts(3)) << "no command, no icon";
    auto& registry = KeyboardShortcuts::sharedInstance();
    registry.addKeyboardShortcut(std::make_shared<KeyboardShortcutDefinition>(
        OVUserDefaults::sharedInstance(),
        KeyboardShortcutDefinition::Fields{.actionName = "Send Off",
                                           .identifier = "6f9619ff",
                                           .modeIdentifier = kFileModes,
                                           .keyCode = kKeyReturn,
                                           .modifierFlags = kFree}));
    EXPECT_EQ(label(2), "Send Off");
    EXPECT_EQ(screen().table.action(2)->symbol, Symbol::userAction);
    registry.keyboardShortcutDefinitionFor("RevealInFinder")->setKeys(kKeyReturn, kFree);
    EXPECT_EQ(screen().table.action(2)->symbol, Symbol::reveal) << "the program's own come first";
    hold(0);
    session_->app().window().toggleMainWindow();
    EXPECT_EQ(label(2), "Open with Viewer") << "until it is known better";
}

TEST_F(ActionIconsTest, OnlyTheRowsConcernedAreDrawnAgain) {
    for (int i = 100; i < 160; i++) home_.file("qq" + std::to_string(i) + ".txt");
    startWith({});
    redrawn();
    press(kKeyDown, kModifierNumericPad | kModifierFunction);
    settle();
    EXPECT_EQ(redrawn(), (std::vector<Rows>{{0, 1}}));
    hold(kModifierOption);
    EXPECT_EQ(redrawn(), std::vector<Rows>{{1}});
    hold(kModifierOption);
    EXPECT_TRUE(redrawn().empty()) << "nothing is another";
    press(kKeyDown, kModifierNumericPad | kModifierFunction | kModifierOption);
    hold(0);
    Rows all;
    for (size_t row = 0; row < 60; row++) all.push_back(row);
    screen().table.click(all);
    screen().table.scrollTo(40 * 49);
    redrawn();
    hold(kModifierShift);
    const auto shown = redrawn();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].front(), 40u);
    EXPECT_LE(shown[0].size(), 11u);
    hold(0);
    session_->app().window().hideMainWindow();
    EXPECT_EQ(session_->app().modeSwitcher().modifierFlags(), 0u);
}

TEST_F(ActionIconsTest, AnApplicationIsLookedForOnceATypeAndOpening) {
    startWith({"qq1.txt", "qq2.txt", "qq3.png"});
    desktop().openersAsked = 0;
    screen().table.click({0, 1, 2});
    labels();
    labels();
    EXPECT_EQ(desktop().openersAsked, 2);
    session_->app().window().toggleMainWindow();
    settle();
    desktop().applications.back().name = "Better";
    session_->app().window().toggleMainWindow();
    settle();
    screen().table.click({2});
    EXPECT_EQ(label(2), "Open with Viewer") << "what was known stays on show meanwhile";
    redrawn();
    settle();
    EXPECT_EQ(label(2), "Open with Better");
    EXPECT_EQ(redrawn(), std::vector<Rows>{{2}});
    desktop().applications.clear();
    session_->app().window().toggleMainWindow();
    session_->app().window().toggleMainWindow();
    settle();
    screen().table.click({2});
    EXPECT_EQ(labels()[2], "") << "nothing opens it";
}

TEST_F(ActionIconsTest, LinksAreFollowedAndANameThatIsEditedHasNone) {
    const FileURL folder = home_.folder("elsewhere");
    for (const auto& [name, target] :
         {std::pair("qq2", folder.path()), std::pair("qq3", std::string("/nowhere"))})
        ASSERT_EQ(symlink(target.c_str(), home_.url().appending(name).c_str()), 0);
    startWith({"qq1.txt"});
    const Texts shown = names();
    const auto rowOf = [&](const char* name) {
        return static_cast<size_t>(std::find(shown.begin(), shown.end(), name) - shown.begin());
    };
    for (const auto& [name, expected] : {std::pair("qq2", "Open"), std::pair("qq3", ""),
                                         std::pair("qq1.txt", "Open with com.example.Editor")}) {
        ASSERT_LT(rowOf(name), shown.size()) << name;
        screen().table.click({rowOf(name)});
        EXPECT_EQ(labels()[rowOf(name)], expected) << name;
    }
    hold(kModifierControl);
    press(kKeyReturn, kModifierControl);
    settle();
    EXPECT_TRUE(screen().table.edit());
    EXPECT_FALSE(screen().table.action(rowOf("qq1.txt")));
    hold(0);
    redrawn();
    screen().table.sendToEdit(RowEditCommand::cancelOperation);
    settle();
    EXPECT_EQ(redrawn(), std::vector<Rows>{{rowOf("qq1.txt")}});
    EXPECT_EQ(label(rowOf("qq1.txt")), "Open with com.example.Editor");
}
