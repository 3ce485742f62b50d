#include <sys/stat.h>
#include <unistd.h>

#include "core/state/GlobalState.h"
#include "support/ApplicationTest.h"
#include "util/settings/OVUserDefaults.h"

namespace {

using Names = std::vector<std::string>;
using Rows = std::vector<size_t>;
using nlohmann::json;

constexpr uint64_t kArrow = kModifierNumericPad | kModifierFunction;

class SearchFieldKeysTest : public ApplicationTest {
  protected:
    void startWithFiles(std::initializer_list<const char*> names) {
        for (const char* name : names) home_.file(name);
        start();
        settle();
        desktop().takeRequests();
    }
    /// The key, and all that comes of it.
    bool pressAndSettle(uint64_t keyCode, uint64_t flags = 0) {
        const bool consumed = press(keyCode, flags);
        settle();
        return consumed;
    }
    void showAgain() {
        if (!screen().window.visible) session_->app().window().toggleMainWindow();
        settle();
        desktop().takeRequests();
    }
    const Rows selected() { return screen().table.selectedRows(); }
    std::string message() { return screen().infoBar.errorLook ? screen().infoBar.text : ""; }
    json opened() {
        settle();
        const auto all = requests("open");
        return all.size() == 1 ? all[0] : json(all);
    }
};

}  // namespace

TEST_F(SearchFieldKeysTest, ArrowsMoveAndShiftMovesOneEndOfTheSelection) {
    startWithFiles({"qq1", "qq2", "qq3", "qq4", "qq5"});
    type(u"qq");
    const struct {
        uint64_t keyCode, flags;
        Rows selected;
    } steps[] = {
        {kKeyDown, kArrow, {1}},
        {kKeyDown, kArrow | kModifierShift, {1, 2}},
        {kKeyDown, kArrow | kModifierShift, {1, 2, 3}},
        {kKeyUp, kArrow | kModifierShift, {1, 2}},
        {kKeyUp, kArrow | kModifierShift, {1}},
        {kKeyUp, kArrow | kModifierShift, {0, 1}},
        {kKeyUp, kArrow, {0}},
        {kKeyUp, kArrow, {0}},
        {kKeyEnd, kModifierFunction, {4}},
        {kKeyHome, kModifierFunction | kModifierShift, {0, 1, 2, 3, 4}},
        {kKeyHome, kModifierFunction, {0}},
        {kKeyPageDown, kModifierFunction, {4}},
        {kKeyPageUp, kModifierFunction, {0}},
        {0, kModifierCommand, {0, 1, 2, 3, 4}},  // Select All
    };
    for (const auto& step : steps) {
        EXPECT_TRUE(pressAndSettle(step.keyCode, step.flags)) << step.keyCode;
        EXPECT_EQ(selected(), step.selected) << step.keyCode;
    }
    EXPECT_FALSE(press(kKeyPageUp, kModifierFunction | kModifierShift));
    EXPECT_FALSE(press(kKeyDown, kModifierNumericPad | kModifierFunction | kModifierOption));
}

TEST_F(SearchFieldKeysTest, WithCommandTheyScrollAndTheSelectionStays) {
    for (int i = 10; i < 60; i++) home_.file("qq" + std::to_string(i));
    start();
    type(u"qq");
    const auto scroll = [&](uint64_t key) {
        EXPECT_TRUE(pressAndSettle(key, kModifierFunction | kModifierCommand));
        EXPECT_EQ(selected(), Rows{0});
        return screen().table.clipOrigin().y;
    };
    EXPECT_EQ(scroll(kKeyPageDown), 9 * 49);
    const double end = scroll(kKeyEnd);
    EXPECT_GT(end, 1900);
    EXPECT_EQ(scroll(kKeyPageUp), end - 9 * 49);
    EXPECT_EQ(scroll(kKeyHome), 0);
}

TEST_F(SearchFieldKeysTest, EscapeEmptiesTheFieldAndThenResetsAndCloses) {
    startWithFiles({"qq1"});
    type(u"qq");
    EXPECT_TRUE(pressAndSettle(49, kModifierControl | kModifierShift));  // maximised
    EXPECT_TRUE(pressAndSettle(kKeyEscape));
    EXPECT_EQ(field().content, u"");
    EXPECT_TRUE(names().empty());
    EXPECT_TRUE(screen().window.visible);
    EXPECT_TRUE(GlobalState::sharedInstance().maximized().value());
    EXPECT_TRUE(pressAndSettle(kKeyEscape));
    EXPECT_FALSE(screen().window.visible);
    EXPECT_FALSE(GlobalState::sharedInstance().maximized().value());
}

TEST_F(SearchFieldKeysTest, TheSecondEscapeGoesBackFromAFolderToTheProject) {
    home_.file("deep/qq1");
    launch({{"projects", {project("A", home_.url())}}, {"currentProject", "A"}});
    session_->app().window().toggleMainWindow();
    settle();
    // As if it had been chosen in this run.
    OVUserDefaults::sharedInstance().setObject("A", "previousRealProject");
    type(u"deep");
    EXPECT_TRUE(pressAndSettle(kKeyS, kModifierCommand | kModifierShift));  // search in it
    ASSERT_EQ(searchMode().currentProject()->uuid, home_.at("deep").path());
    EXPECT_EQ(field().content, u"");
    EXPECT_TRUE(pressAndSettle(kKeyEscape));
    EXPECT_FALSE(screen().window.visible);
    EXPECT_EQ(searchMode().currentProject()->uuid, "A");
}

TEST_F(SearchFieldKeysTest, ReturnOpensWithTheApplicationOfTheItem) {
    home_.folder("qqfolder");
    home_.link("qqlink", "qqfolder");
    startWithFiles({"qq.jpg", "qq.xyz"});
    desktop().applications = {{.id = "viewer", .extensions = {"jpg"}},
                              {.id = "reader", .types = {"public.data"}}};
    const struct {
        const char16_t* text;
        uint64_t flags;
        const char *path, *application;
    } cases[] = {
        {u"qq.jpg", 0, "qq.jpg", "viewer"},
        {u"qq.xyz", 0, "qq.xyz", "reader"},
        {u"qqfolder", 0, "qqfolder", "com.apple.Finder"},
        {u"qqlink", 0, "qqfolder", "com.apple.Finder"},
        {u"qq.jpg", kModifierShift, "qq.jpg", "com.example.Editor"},
    };
    for (const auto& c : cases) {
        showAgain();
        empty();
        type(c.text);
        EXPECT_TRUE(press(kKeyReturn, c.flags));
        const json request = opened();
        EXPECT_EQ(request["paths"], json{home_.at(c.path).path()});
        EXPECT_EQ(request["application"], c.application) << c.path;
        EXPECT_FALSE(screen().window.visible);
    }
    const auto history = OVUserDefaults::sharedInstance().stringArrayForKey("history");
    EXPECT_EQ(history, (Names{"qq.jpg", "qqlink", "qqfolder", "qq.xyz"}));
}

TEST_F(SearchFieldKeysTest, WhatCannotBeOpenedIsSaid) {
    startWithFiles({"qq.jpg"});
    EXPECT_FALSE(press(kKeyReturn));
    settle();
    EXPECT_EQ(message(), "No item selected");
    type(u"qq");
    desktop().applications.clear();
    EXPECT_TRUE(pressAndSettle(kKeyReturn));
    EXPECT_EQ(message(), "Found no application to open qq.jpg");
    showAgain();
    desktop().launchError = "It is broken";
    EXPECT_TRUE(pressAndSettle(kKeyReturn, kModifierShift));
    EXPECT_EQ(message(), "It is broken");
}

TEST_F(SearchFieldKeysTest, ASpaceInFrontIsDropped) {
    startWithFiles({});
    EXPECT_TRUE(press(kKeySpace));
    field().type(u"a");
    EXPECT_FALSE(press(kKeySpace));
    field().selectAll();
    EXPECT_TRUE(press(kKeySpace));
    EXPECT_FALSE(press(kKeySpace, kModifierShift));
}

TEST_F(SearchFieldKeysTest, ControlWDeletesTheWordBeforeTheCursor) {
    startWithFiles({"foo", "foobar"});
    const struct {
        const char16_t* text;
        size_t cursor;
        const char16_t* left;
        size_t cursorAfter;
    } cases[] = {
        {u"foo bar  ", 9, u"foo ", 4}, {u"foo bar", 4, u"bar", 0}, {u"foo", 3, u"", 0},
        {u"foo bar", 5, u"foo ar", 4}, {u"foo", 0, u"foo", 0},
    };
    for (const auto& c : cases) {
        empty();
        type(c.text);
        field().setSelection({c.cursor, 0});
        const KeyEvent event{
            .keyCode = kKeyW, .modifierFlags = kModifierControl, .characters = u"\x17"};
        EXPECT_TRUE(screen().send(event));
        settle();
        EXPECT_EQ(field().content, c.left);
        EXPECT_EQ(field().selected, (TextRange{c.cursorAfter, 0}));
    }
    empty();
    type(u"foo +bar$");
    EXPECT_FALSE(field().styles.empty());
    screen().send({.keyCode = kKeyW, .modifierFlags = kModifierControl, .characters = u"\x17"});
    settle();
    EXPECT_TRUE(field().styles.empty()) << "those of the text that is left";
    empty();
    type(u"foo bar");
    screen().send({.keyCode = kKeyW, .modifierFlags = kModifierControl, .characters = u"\x17"});
    settle();
    EXPECT_EQ(names(), (Names{"foo", "foobar"}));
}

TEST_F(SearchFieldKeysTest, DigitsChooseProjectsAndShiftMovesTheCurrentOne) {
    const FileURL a = home_.folder("a"), b = home_.folder("b");
    home_.file("a/qq in a");
    home_.file("b/qq in b");
    launch({{"projects", {project("A", a), project("B", b)}}, {"currentProject", "A"}});
    session_->app().window().toggleMainWindow();
    settle();
    EXPECT_TRUE(pressAndSettle(19, kModifierCommand));
    EXPECT_EQ(searchMode().currentProject()->uuid, "B");
    type(u"qq");
    EXPECT_EQ(names(), Names{"qq in b"});
    EXPECT_TRUE(pressAndSettle(20, kModifierCommand));  // there is no third
    EXPECT_EQ(searchMode().currentProject()->uuid, "B");
    EXPECT_TRUE(pressAndSettle(18, kModifierCommand | kModifierShift));
    EXPECT_EQ(OVUserDefaults::sharedInstance().arrayForKey("projects")[0]["uuid"], "B");
    EXPECT_TRUE(pressAndSettle(50, kModifierCommand));  // the one before
    EXPECT_EQ(searchMode().currentProject()->uuid, "A");
    EXPECT_FALSE(press(29, kModifierCommand));  // 0 is none of them
}

TEST_F(SearchFieldKeysTest, PathsAndNamesAreCopied) {
    startWithFiles({"qq1", "qq2"});
    type(u"qq");
    pressAndSettle(0, kModifierCommand);
    EXPECT_TRUE(pressAndSettle(kKeyReturn, kModifierOption));
    EXPECT_EQ(requests("pasteboard")[0]["text"],
              home_.at("qq1").path() + "\n" + home_.at("qq2").path());
    EXPECT_FALSE(screen().window.visible);
    showAgain();
    EXPECT_TRUE(pressAndSettle(kKeyReturn, kModifierOption | kModifierShift));
    EXPECT_EQ(requests("pasteboard")[0]["text"], "qq1\nqq2");
}

TEST_F(SearchFieldKeysTest, CancelKeysLeaveTheTextAlone) {
    startWithFiles({});
    type(u"q");
    EXPECT_TRUE(press(kKeyPeriod, kModifierCommand));
    EXPECT_EQ(requests("beep").size(), 1u);
    session_->app().hidingGuard().preventHiding();  // a question stands in front
    EXPECT_FALSE(press(kKeyEscape));
    EXPECT_FALSE(press(kKeyTab));
    session_->app().hidingGuard().allowHiding();
    settle();
    EXPECT_EQ(field().content, u"q");
}

TEST_F(SearchFieldKeysTest, KeysOfTheSettingsHoldAtOnce) {
    startWithFiles({"qq1"});
    type(u"qq");
    auto& settings = OVUserDefaults::sharedInstance();
    settings.setObject({{"RevealInFinder", "+38/262144"}}, "keyboardShortcuts");
    settle();
    EXPECT_FALSE(press(3, kModifierCommand));
    EXPECT_TRUE(pressAndSettle(38, kModifierControl));
    EXPECT_EQ(requests("reveal").size(), 1u);
}

TEST_F(SearchFieldKeysTest, HeldModifiersAreKnown) {
    startWithFiles({});
    screen().send({.modifierFlags = kModifierShift, .kind = KeyEvent::Kind::flagsChanged});
    EXPECT_EQ(session_->app().modeSwitcher().modifierFlags(), kModifierShift);
}

TEST_F(SearchFieldKeysTest, KeysThatFollowAtOnceActOnWhatTheKeysBeforeMade) {
    const FileURL a = home_.folder("a"), b = home_.folder("b");
    launch({{"projects", {project("A", a), project("B", b)}}, {"currentProject", "A"}});
    session_->app().window().toggleMainWindow();
    settle();
    constexpr uint64_t kCommand = kModifierCommand;
    const struct {
        std::vector<KeyEvent> keys;
        ModeIdentifier mode;
        const char *project, *firstProject;
    } steps[] = {
        {{{kKeyTab}, {kKeyTab}}, kSearchMode, "A", "A"},
        {{{19, kCommand}, {50, kCommand}, {50, kCommand}}, kSearchMode, "B", "A"},
        {{{18, kCommand}, {19, kCommand | kModifierShift}}, kSearchMode, "A", "B"},
        {{{18, kCommand | kModifierShift}, {19, kCommand}}, kSearchMode, "B", "A"},
        {{{15, kCommand}, {46, kCommand}, {11, kCommand}}, kBrowserMode, "B", "A"},
        {{{kKeyTab}, {kKeyTab}, {18, kCommand}}, kBrowserMode, "B", "A"},
    };
    for (const auto& step : steps) {
        for (const KeyEvent& key : step.keys) EXPECT_TRUE(screen().send(key)) << key.keyCode;
        settle();
        EXPECT_EQ(session_->app().modeHost().currentMode()->identifier(), step.mode);
        EXPECT_EQ(searchMode().currentProject()->uuid, step.project) << step.keys[0].keyCode;
        EXPECT_EQ(searchMode().projects()[0]->uuid, step.firstProject) << step.keys[0].keyCode;
    }
    EXPECT_EQ(session_->app().browserMode().currentDirectoryURL(), a) << "by its digit";
}

TEST_F(SearchFieldKeysTest, ADigitBrowsesTheOneFolderOfAProject) {
    const FileURL a = home_.folder("a"), b = home_.folder("b");
    auto none = project("N", a), two = project("T", a);
    none["folders"] = json::array();
    two["folders"].push_back({{"path", b.path()}});
    launch({{"projects", {project("B", b), none, two}}, {"currentProject", "B"}});
    session_->app().window().toggleMainWindow();
    EXPECT_TRUE(pressAndSettle(kKeyTab));
    const char* const messages[] = {"", "Project has no search folder",
                                    "Project has multiple search folders"};
    for (size_t i = 0; i < std::size(messages); i++) {
        EXPECT_TRUE(pressAndSettle(kDigitKeys[i], kModifierCommand));
        EXPECT_EQ(message(), messages[i]);
        EXPECT_EQ(session_->app().browserMode().currentDirectoryURL(), b);
        EXPECT_EQ(searchMode().currentProject()->uuid, "B");
    }
    EXPECT_FALSE(press(18, kModifierCommand | kModifierShift));
}

TEST_F(SearchFieldKeysTest, TheSecondEscapeListsEverythingAgain) {
    home_.file("in/qq1");
    startWithFiles({});
    AppDelegate& app = session_->app();
    for (TRVModeSupportingPath* mode : {static_cast<TRVModeSupportingPath*>(&searchMode()),
                                        static_cast<TRVModeSupportingPath*>(&app.recentMode())}) {
        showAgain();
        app.modeSwitcher().switchToMode(*mode);
        TRVMode::switchModeQueue().async([&] { mode->focusURL(home_.at("in")); });
        settle();
        type(u"q");
        EXPECT_TRUE(pressAndSettle(kKeyEscape));
        EXPECT_TRUE(mode->livePathFilter().hasRules());
        EXPECT_TRUE(pressAndSettle(kKeyEscape));
        EXPECT_FALSE(mode->livePathFilter().hasRules());
        EXPECT_TRUE(searchMode().isActive());
        EXPECT_FALSE(screen().window.visible);
    }
}

TEST_F(SearchFieldKeysTest, AMovementForgetsThePartOfThePathAlsoOnScreen) {
    home_.file("deep/qq1");
    startWithFiles({});
    type(u"qq");
    EXPECT_TRUE(pressAndSettle(43, kModifierControl));
    EXPECT_TRUE(screen().table.row(0).pathSelection);
    EXPECT_TRUE(pressAndSettle(kKeyUp, kArrow));  // it is the first row
    EXPECT_FALSE(screen().table.row(0).pathSelection);
    EXPECT_EQ(searchMode().clickedOrSelectedURLs(), std::vector{home_.at("deep/qq1")});
}

TEST_F(SearchFieldKeysTest, DeletingAsksAndRemembersTheSearch) {
    startWithFiles({"qq1", "qq2"});
    type(u"qq");
    screen().alerts.answers = {"Cancel"};
    EXPECT_TRUE(pressAndSettle(kKeyDelete, kModifierCommand));
    ASSERT_EQ(screen().alerts.shown.size(), 1u);
    EXPECT_EQ(screen().alerts.shown[0].alert.title, "Move item to Trash");
    EXPECT_EQ(OVUserDefaults::sharedInstance().stringArrayForKey("history"), Names{"qq"});
}

TEST_F(SearchFieldKeysTest, WhereNothingCanBeRenamedAnAlertSaysSo) {
    if (geteuid() == 0) GTEST_SKIP() << "the superuser may do it";
    home_.file("shut/qq1");
    startWithFiles({});
    type(u"qq1");
    chmod(home_.at("shut").c_str(), 0500);
    EXPECT_TRUE(pressAndSettle(kKeyReturn, kModifierControl));
    chmod(home_.at("shut").c_str(), 0700);
    ASSERT_EQ(screen().alerts.shown.size(), 1u);
    EXPECT_EQ(screen().alerts.shown[0].alert.title, "Permission denied");
    EXPECT_EQ(screen().alerts.shown[0].alert.text, "Cannot rename “qq1”.");
    EXPECT_FALSE(screen().table.edit());
    EXPECT_TRUE(field().takesTyping);
    EXPECT_TRUE(pressAndSettle(kKeyReturn, kModifierControl));
    EXPECT_TRUE(screen().table.edit());
}
