#include "core/app/AppDelegate.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <thread>

#include "platform/FileTypes.h"
#include "support/FakeScreen.h"
#include "support/TemporaryFolder.h"
#include "util/World.h"
#include "util/log.h"
#include "util/settings/OVUserDefaults.h"

namespace {

using namespace std::chrono_literals;
using Names = std::vector<std::string>;
constexpr uint64_t kArrow = kModifierNumericPad | kModifierFunction;

struct PlainTypes : FileTypes {
    bool isFilePackageAtPath(const FileURL&) const override { return false; }
    std::string iconNameForItem(const FileURL&, uint8_t type) const override {
        return type == 2 ? "folder" : "text-x-generic";
    }
};

/// The whole application on a window without a screen, in a home folder of its own.
class AppDelegateTest : public testing::Test {
  protected:
    void start() {
        openSettingsAndLog(folders());
        app_ = std::make_unique<AppDelegate>(CoreModeHost::Views{window_, field_, table_, infoBar_},
                                             DesktopPorts{applications_, types_, &frontmost_},
                                             folders());
        app_->launch();
        app_->showMainWindow();
    }
    ~AppDelegateTest() override {
        app_.reset();
        logging::close();
    }
    Folders folders() const {
        return {.home = home_.url(),
                .configuration = outside_.at("config"),
                .state = outside_.at("state")};
    }
    /// The main thread's loop, until nothing is left to do.
    void settle() {
        for (int quiet = 0, tries = 0; quiet < 3; tries++) {
            ASSERT_LT(tries, 20000) << "never settled";
            if (world_.mainQueue().runPending() || !world_.isSettled(0ms))
                quiet = 0;
            else
                quiet++;
            std::this_thread::sleep_for(1ms);
        }
    }
    void type(std::u16string_view text) {
        field_.type(text);
        settle();
    }

    TemporaryFolder home_, outside_;
    World world_;
    PlainTypes types_;
    RecordingApplications applications_;
    RecordingFrontmost frontmost_;
    FakeWindow window_;
    FakeField field_;
    FakeTable table_;
    FakeInfoBar infoBar_;
    std::unique_ptr<AppDelegate> app_;
};

TEST_F(AppDelegateTest, FindsFilesOfTheHomeFolderWhileTheyAreTyped) {
    home_.file("Documents/report 2024.txt");
    home_.file("src/main.c");
    home_.file(".hidden/report.txt");
    home_.file("src/node_modules/report.js");
    start();
    EXPECT_EQ(field_.placeholder, "Search Home");
    type(u"rep");
    EXPECT_EQ(table_.names(), Names{"report 2024.txt"});
    EXPECT_EQ(table_.selected, std::vector<size_t>{0});
    const RowContent row = table_.data->row(0);
    EXPECT_EQ(row.path, home_.at("Documents").path());
    EXPECT_EQ(row.nameHighlights, (std::vector<TextRange>{{0, 3}}));
    EXPECT_EQ(infoBar_.text, "Search project Home [1/1]");
    EXPECT_FALSE(infoBar_.busy);
    type(u"zzz");
    EXPECT_TRUE(table_.names().empty());
    EXPECT_EQ(window_.place.height, 64);
}

TEST_F(AppDelegateTest, KeysMoveOpenClearAndHide) {
    for (const char* name : {"qq1.txt", "qq2.txt", "qq3.txt"}) home_.file(name);
    start();
    type(u"qq");
    ASSERT_EQ(table_.names(), (Names{"qq1.txt", "qq2.txt", "qq3.txt"}));
    EXPECT_EQ(window_.place.height, 212);
    EXPECT_TRUE(field_.press(kKeyDown, kArrow));
    EXPECT_TRUE(field_.press(kKeyDown, kArrow));
    EXPECT_TRUE(field_.press(kKeyDown, kArrow));  // at the end it stays
    EXPECT_EQ(table_.selected, std::vector<size_t>{2});
    EXPECT_TRUE(field_.press(kKeyUp, kArrow | kModifierShift));
    EXPECT_EQ(table_.selected, (std::vector<size_t>{1, 2}));
    EXPECT_FALSE(field_.press(kKeyDown, kArrow | kModifierCommand));
    EXPECT_TRUE(field_.press(kKeyReturn));
    EXPECT_EQ(applications_.opened,
              (std::vector<FileURL>{home_.at("qq2.txt"), home_.at("qq3.txt")}));
    EXPECT_FALSE(window_.visible);
    EXPECT_EQ(frontmost_.givenBack, 1);

    app_->toggleMainWindow();
    EXPECT_TRUE(window_.visible);
    EXPECT_EQ(field_.content, u"qq");  // as it was left
    EXPECT_TRUE(field_.press(kKeyEscape));
    settle();
    EXPECT_EQ(field_.content, u"");
    EXPECT_TRUE(table_.names().empty());
    EXPECT_TRUE(window_.visible);
    EXPECT_TRUE(field_.press(kKeyEscape));
    EXPECT_FALSE(window_.visible);
}

TEST_F(AppDelegateTest, TheSelectionStaysWithItsFileWhenTheListChanges) {
    for (const char* name : {"qq1", "qq2", "qq3"}) home_.file(name);
    start();
    type(u"qq");
    field_.press(kKeyDown, kArrow);
    Cache& cache = *TRVSearchMode::sharedInstance().currentCache();
    cache.removePath(home_.at("qq1"), 0);
    EXPECT_EQ(table_.data->numberOfRows(), 2u);
    TRVSearchMode::sharedInstance().triggerRefresh();
    settle();
    EXPECT_EQ(table_.names(), (Names{"qq2", "qq3"}));
    EXPECT_EQ(table_.selected, std::vector<size_t>{0});
}

TEST_F(AppDelegateTest, SaysWhatItCannotOpen) {
    home_.link("broken", "nowhere");
    home_.file("gone.txt");
    start();
    type(u"broken");
    field_.press(kKeyReturn);
    settle();
    EXPECT_EQ(infoBar_.text, "Cannot open file: broken symlink");
    EXPECT_TRUE(infoBar_.error);
    field_.content.clear();
    type(u"gone");
    ASSERT_EQ(unlink(home_.at("gone.txt").c_str()), 0);
    field_.press(kKeyReturn);
    settle();
    EXPECT_EQ(infoBar_.text, "Cannot open file: it does not exist");
    EXPECT_TRUE(applications_.opened.empty());
    EXPECT_TRUE(window_.visible);
}

TEST_F(AppDelegateTest, StartsWithAProjectThatIsNotThereOrHasNoFolder) {
    outside_.file("config/settings.json",
                  R"({"currentProject": "nobody", "maxResultsetSize": "x"})");
    start();
    type(u"a");
    EXPECT_EQ(infoBar_.text, "No active project");
    EXPECT_EQ(OVUserDefaults::sharedInstance().integerForKey("maxResultsetSize"), 100);
}

TEST_F(AppDelegateTest, ASettingsFileThatCannotBeReadDoesNotStopIt) {
    outside_.folder("config/settings.json");
    home_.file("found.txt");
    start();
    type(u"found");
    EXPECT_EQ(table_.names(), Names{"found.txt"});
}

TEST_F(AppDelegateTest, TypingFastEndsWithTheNewestText) {
    for (int i = 0; i < 300; i++) home_.file("file" + std::to_string(i) + ".txt");
    start();
    for (int round = 0; round < 40; round++) {
        field_.content.clear();
        field_.type(u"file2");
        world_.mainQueue().runPending();
    }
    type(u"99");
    EXPECT_EQ(table_.names(), Names{"file299.txt"});
}

TEST_F(AppDelegateTest, EndsInTheMiddleOfAScanAndOfASearch) {
    for (int i = 0; i < 2000; i++)
        home_.file("d" + std::to_string(i % 50) + "/f" + std::to_string(i));
    start();
    field_.type(u"f1");
    app_.reset();
    EXPECT_EQ(field_.delegate, nullptr);
}

}  // namespace
