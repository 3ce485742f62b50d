#include <unistd.h>

#include "support/ApplicationTest.h"
#include "util/settings/OVUserDefaults.h"

namespace {

using Names = std::vector<std::string>;
using AppDelegateTest = ApplicationTest;
constexpr uint64_t kArrow = kModifierNumericPad | kModifierFunction;

TEST_F(AppDelegateTest, FindsFilesOfTheHomeFolderWhileTheyAreTyped) {
    home_.file("Documents/report 2024.txt");
    home_.file("src/main.c");
    home_.file(".hidden/report.txt");
    home_.file("src/node_modules/report.js");
    start();
    EXPECT_EQ(field().placeholder, "Search Home");
    type(u"rep");
    EXPECT_EQ(names(), Names{"report 2024.txt"});
    EXPECT_EQ(screen().table.selectedRows(), std::vector<size_t>{0});
    const RowContent row = screen().table.row(0);
    EXPECT_EQ(row.path, home_.at("Documents").path());
    EXPECT_EQ(row.nameHighlights, (std::vector<TextRange>{{0, 3}}));
    EXPECT_EQ(screen().infoBar.text, "Search project Home [1/1*]");
    EXPECT_FALSE(screen().infoBar.scanning);
    type(u"zzz");
    EXPECT_TRUE(names().empty());
    EXPECT_EQ(screen().window.place.height, 64);
}

TEST_F(AppDelegateTest, KeysMoveOpenClearAndHide) {
    for (const char* name : {"qq1.txt", "qq2.txt", "qq3.txt"}) home_.file(name);
    start();
    type(u"qq");
    ASSERT_EQ(names(), (Names{"qq1.txt", "qq2.txt", "qq3.txt"}));
    EXPECT_EQ(screen().window.place.height, 212);
    EXPECT_TRUE(press(kKeyDown, kArrow));
    EXPECT_TRUE(press(kKeyDown, kArrow));
    EXPECT_TRUE(press(kKeyDown, kArrow));  // at the end it stays
    settle();
    EXPECT_EQ(screen().table.selectedRows(), std::vector<size_t>{2});
    EXPECT_TRUE(press(kKeyUp, kArrow | kModifierShift));
    settle();
    EXPECT_EQ(screen().table.selectedRows(), (std::vector<size_t>{1, 2}));
    EXPECT_TRUE(press(kKeyReturn));
    settle();
    const auto opened = requests("open");
    ASSERT_EQ(opened.size(), 2u);
    EXPECT_EQ(opened[1]["paths"][0], home_.at("qq3.txt").path());
    EXPECT_FALSE(screen().window.visible);

    session_->app().window().toggleMainWindow();
    EXPECT_TRUE(screen().window.visible);
    EXPECT_EQ(field().content, u"qq");  // as it was left
    EXPECT_TRUE(press(kKeyEscape));
    settle();
    EXPECT_EQ(field().content, u"");
    EXPECT_TRUE(names().empty());
    EXPECT_TRUE(screen().window.visible);
    EXPECT_TRUE(press(kKeyEscape));
    settle();
    EXPECT_FALSE(screen().window.visible);
}

TEST_F(AppDelegateTest, TheSelectionStaysWithItsFileWhenTheListChanges) {
    for (const char* name : {"qq1", "qq2", "qq3"}) home_.file(name);
    start();
    type(u"qq");
    press(kKeyDown, kArrow);
    settle();
    Cache& cache = *TRVSearchMode::sharedInstance().currentCache();
    cache.removePath(home_.at("qq1"), 0);
    EXPECT_EQ(session_->app().table().numberOfRows(), 2u);
    TRVSearchMode::sharedInstance().triggerRefresh();
    settle();
    EXPECT_EQ(names(), (Names{"qq2", "qq3"}));
    EXPECT_EQ(screen().table.selectedRows(), std::vector<size_t>{0});
}

TEST_F(AppDelegateTest, ThePinKeepsTheWindowAndTheCrossHidesIt) {
    start();
    auto& window = screen().window;
    ASSERT_TRUE(window.visible);
    EXPECT_FALSE(window.sticky);
    window.delegate->stickyButtonClicked();
    EXPECT_TRUE(window.sticky);
    EXPECT_FALSE(OVUserDefaults::sharedInstance().boolForKey("hideSearchFieldOnDeFocus"));
    window.delegate->windowWillClose();
    EXPECT_FALSE(window.visible);
}

TEST_F(AppDelegateTest, SaysWhatItCannotOpen) {
    home_.link("broken", "nowhere");
    home_.file("gone.txt");
    start();
    type(u"broken");
    press(kKeyReturn);
    settle();
    EXPECT_EQ(screen().infoBar.text, "Cannot open file: broken symlink");
    EXPECT_TRUE(screen().infoBar.errorLook);
    empty();
    type(u"gone");
    ASSERT_EQ(unlink(home_.at("gone.txt").c_str()), 0);
    press(kKeyReturn);
    settle();
    EXPECT_EQ(screen().infoBar.text, "Cannot open file: it does not exist");
    EXPECT_TRUE(requests("open").empty());
    EXPECT_TRUE(screen().window.visible);
}

TEST_F(AppDelegateTest, StartsWithAProjectThatIsNotThereOrHasNoFolder) {
    home_.file(".config/trovast/settings.json",
               R"({"currentProject": "nobody", "maxResultsetSize": "x"})");
    start();
    type(u"a");
    EXPECT_EQ(screen().infoBar.text, "No active project");
    EXPECT_EQ(OVUserDefaults::sharedInstance().integerForKey("maxResultsetSize"), 100);
}

TEST_F(AppDelegateTest, ASettingsFileThatCannotBeReadDoesNotStopIt) {
    home_.folder(".config/trovast/settings.json");
    home_.file("found.txt");
    start();
    type(u"found");
    EXPECT_EQ(names(), Names{"found.txt"});
}

TEST_F(AppDelegateTest, TypingFastEndsWithTheNewestText) {
    for (int i = 0; i < 300; i++) home_.file("file" + std::to_string(i) + ".txt");
    start();
    for (int round = 0; round < 40; round++) {
        empty();
        field().type(u"file2");
        session_->world().mainQueue().runPending();
    }
    type(u"99");
    EXPECT_EQ(names(), Names{"file299.txt"});
}

TEST_F(AppDelegateTest, EndsInTheMiddleOfAScanAndOfASearch) {
    for (int i = 0; i < 2000; i++)
        home_.file("d" + std::to_string(i % 50) + "/f" + std::to_string(i));
    start();
    field().type(u"f1");
    session_.reset();
    EXPECT_FALSE(World::exists());
}

TEST_F(AppDelegateTest, TheGateWaitsForTheConsentAndRemembersTheAnswer) {
    launch({}, [](SimulatedDesktop& desktop) { desktop.diskAccessError = EPERM; });
    settle();
    EXPECT_FALSE(session_->app().isLaunched());
    ASSERT_TRUE(screen().diskAccess.buttons);
    session_->advance(3);
    EXPECT_FALSE(session_->app().isLaunched());
    desktop().diskAccessError = 0;
    session_->advance(1);
    EXPECT_TRUE(session_->app().isLaunched());
    EXPECT_FALSE(screen().diskAccess.buttons);
    EXPECT_EQ(OVUserDefaults::sharedInstance().integerForKey("fullDiskAccess"), 2);

    // Lost again: asked again. Going on without is remembered for good.
    session_.reset();
    launch({}, [](SimulatedDesktop& desktop) { desktop.diskAccessError = EPERM; });
    ASSERT_TRUE(screen().diskAccess.buttons);
    screen().diskAccess.buttons->later();
    session_->advance(1);
    EXPECT_TRUE(session_->app().isLaunched());
    EXPECT_EQ(OVUserDefaults::sharedInstance().integerForKey("fullDiskAccess"), 1);
    session_.reset();
    launch({}, [](SimulatedDesktop& desktop) { desktop.diskAccessError = EPERM; });
    EXPECT_TRUE(session_->app().isLaunched());
}

TEST_F(AppDelegateTest, AQuestionKeepsTheWindowAndAnAuthorisationItsClosing) {
    start();
    HidingGuard& guard = session_->app().hidingGuard();
    guard.preventHiding();
    session_->app().window().hideMainWindow();
    EXPECT_FALSE(screen().window.visible);
    settle();
    EXPECT_TRUE(screen().window.visible) << "it comes back";
    EXPECT_TRUE(desktop().isActive());
    guard.allowHiding();
    guard.willPerformAuthorization();
    session_->app().window().hideMainWindow();
    EXPECT_TRUE(screen().window.visible);
    guard.didPerformAuthorization();
    session_->app().window().hideMainWindow();
    settle();
    EXPECT_FALSE(screen().window.visible);
}

TEST_F(AppDelegateTest, TheFirstPageFindsItsExamplesAmongTheUsersFiles) {
    home_.file("Documents/annual report.txt");
    home_.file("summer trip.jpg");
    launch();
    settle();
    session_->advance(1);
    const QuickStartContent& content = screen().quickStart.content;
    ASSERT_EQ(content.tries.size(), 3u);
    EXPECT_EQ(content.tries[2].query, "documents") << "not what leads to them";
    EXPECT_TRUE(content.hotKey.empty());
    EXPECT_EQ(desktop().hotKey(), std::nullopt) << "offered, not taken";
    for (size_t i = 0; i < 3; i++) {
        screen().quickStart.delegate->tryChosen(i);
        settle();
        ASSERT_FALSE(names().empty()) << content.tries[i].query;
        EXPECT_NE(content.tries[i].explanation.find(names().front()), std::string::npos)
            << content.tries[i].explanation;
    }
    for (const uint64_t flags : {uint64_t{0}, uint64_t{kModifierCommand}}) {
        screen().quickStart.delegate->hotKeyRecorded({.keyCode = kKeyQ, .modifierFlags = flags});
        EXPECT_TRUE(content.isHotKeyMessageAnError) << flags;
        EXPECT_EQ(desktop().hotKey(), std::nullopt) << flags;
    }
    const KeyEvent keys{.keyCode = kKeySpace, .modifierFlags = kModifierCommand | kModifierControl};
    desktop().takenHotKey = HotKey{keys.keyCode, keys.modifierFlags};
    screen().quickStart.delegate->hotKeyRecorded(keys);
    EXPECT_EQ(content.hotKeyMessage, "Another program holds the hot key.");
    desktop().takenHotKey.reset();
    screen().quickStart.delegate->hotKeyRecorded(keys);
    EXPECT_EQ(content.hotKey, "Ctrl+Alt+Space");
    EXPECT_FALSE(content.isHotKeyMessageAnError);
    session_.reset();
    launch();
    EXPECT_EQ(desktop().hotKey(), (HotKey{keys.keyCode, keys.modifierFlags}));
}

TEST_F(AppDelegateTest, TheHotKeyMayBeAAndRestsWhileAnotherOneIsPressed) {
    constexpr HotKey kCtrlAltA{.keyCode = 0, .modifierFlags = kModifierCommand | kModifierControl};
    const auto stored = [](const HotKey& key) {
        return nlohmann::json{{"keyCode", key.keyCode}, {"modifierFlags", key.modifierFlags}};
    };
    launch({{"hotKey", stored(kCtrlAltA)}, {"numberOfInvocations", 1}});
    EXPECT_EQ(desktop().hotKey(), kCtrlAltA);
    QuickStartViewDelegate& page = *screen().quickStart.delegate;
    page.hotKeyRecording(true);
    EXPECT_EQ(desktop().hotKey(), std::nullopt);
    page.hotKeyRecording(false);
    EXPECT_EQ(desktop().hotKey(), kCtrlAltA);
    page.hotKeyRecorded({.keyCode = 0, .modifierFlags = kModifierOption});
    EXPECT_EQ(screen().quickStart.content.hotKey, "Super+A");
    OVUserDefaults::sharedInstance().setObject(stored({}), "hotKey");
    settle();
    EXPECT_EQ(desktop().hotKey(), std::nullopt);
}

TEST_F(AppDelegateTest, TogglingAndTypingFastLoseNothing) {
    for (int i = 0; i < 50; i++) home_.file("paper" + std::to_string(i));
    start();
    for (int i = 0; i < 200; i++) {
        session_->app().window().toggleMainWindow();
        session_->world().mainQueue().runPending();
        if (i % 40 == 0) field().type(u"p");
    }
    settle();
    EXPECT_EQ(field().content, u"ppppp");
    empty();
    type(u"paper49");
    EXPECT_EQ(names(), Names{"paper49"});
}

}  // namespace
