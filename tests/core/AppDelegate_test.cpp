#include <gtest/gtest.h>
#include <unistd.h>

#include <thread>

#include "AppSession.h"
#include "support/TemporaryFolder.h"
#include "util/settings/OVUserDefaults.h"

namespace {

using namespace std::chrono_literals;
using Names = std::vector<std::string>;
constexpr uint64_t kArrow = kModifierNumericPad | kModifierFunction;

/// The whole application on the simulated desktop, in a home folder of its own.
class AppDelegateTest : public testing::Test {
  protected:
    void start(nlohmann::json settings = nlohmann::json::object()) {
        session_ = std::make_unique<AppSession>(AppSession::Start{
            .home = home_.url(), .settings = std::move(settings), .followsDisk = false});
        session_->app().window().toggleMainWindow();
    }
    SimulatedScreen& screen() { return session_->screen(); }
    SimulatedField& field() { return screen().field; }
    void settle() { ASSERT_TRUE(session_->settle(20)) << "never settled"; }
    void type(std::u16string_view text) {
        field().type(text);
        settle();
    }
    bool press(uint64_t keyCode, uint64_t modifierFlags = 0) {
        return screen().send({.keyCode = keyCode, .modifierFlags = modifierFlags});
    }
    void empty() { field().setText({}); }
    Names names() {
        Names names;
        for (size_t row = 0; row < screen().table.numberOfRows(); row++)
            names.push_back(screen().table.row(row).name);
        return names;
    }
    /// What was asked of the desktop, by its kind.
    std::vector<nlohmann::json> requests(std::string_view what) {
        auto all = session_->desktop().takeRequests();
        std::erase_if(all, [what](const auto& request) { return request["what"] != what; });
        return all;
    }

    TemporaryFolder home_;
    std::unique_ptr<AppSession> session_;
};

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
    EXPECT_EQ(screen().table.selectedRows(), std::vector<size_t>{2});
    EXPECT_TRUE(press(kKeyUp, kArrow | kModifierShift));
    EXPECT_EQ(screen().table.selectedRows(), (std::vector<size_t>{1, 2}));
    EXPECT_TRUE(press(kKeyReturn));
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
    EXPECT_FALSE(screen().window.visible);
}

TEST_F(AppDelegateTest, TheSelectionStaysWithItsFileWhenTheListChanges) {
    for (const char* name : {"qq1", "qq2", "qq3"}) home_.file(name);
    start();
    type(u"qq");
    press(kKeyDown, kArrow);
    Cache& cache = *TRVSearchMode::sharedInstance().currentCache();
    cache.removePath(home_.at("qq1"), 0);
    EXPECT_EQ(session_->app().table().numberOfRows(), 2u);
    TRVSearchMode::sharedInstance().triggerRefresh();
    settle();
    EXPECT_EQ(names(), (Names{"qq2", "qq3"}));
    EXPECT_EQ(screen().table.selectedRows(), std::vector<size_t>{0});
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

}  // namespace
