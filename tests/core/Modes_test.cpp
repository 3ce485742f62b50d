#include <atomic>
#include <thread>

#include "core/state/GlobalState.h"
#include "modes/framework/TRVModeRepresentingFiles.h"
#include "modes/framework/TRVModeWithParentMode.h"
#include "modes/framework/modeLook.h"
#include "support/ApplicationTest.h"

namespace {

using namespace std::chrono_literals;
using Rows = std::vector<size_t>;

constexpr Colour kGreen{0.33, 0.5, 0.5};

/// A mode whose items are names; its searches last as long as a test wants.
template <class Base>
class NamesMode : public Base {
  public:
    explicit NamesMode(ModeIdentifier identifier) : Base(identifier) {}

    std::string searchFieldPlaceholderText() override { return "Names"; }
    std::string infoString() override { return "names"; }
    std::vector<RowContent> rowContents(size_t first, size_t most) override {
        std::vector<RowContent> rows;
        for (size_t i = first; i < std::min(first + most, size_t(this->filteredCount())); i++)
            rows.push_back({.name = "row"});
        return rows;
    }
    void searchForString(const std::u16string& string,
                         const TRVMode::SearchFinalBlock& block) override {
        searched.push_back(string);
        running++;
        mostRunning = std::max<int>(mostRunning, running);
        const auto isEndless = [&] { return !endsOnlyFor.empty() && string != endsOnlyFor; };
        for (int i = 0; (isEndless() || i < slowness) && !this->abortSearch(); i++)
            std::this_thread::sleep_for(1ms);
        running--;
        if (this->abortSearch()) {
            block(false, std::nullopt);
            return;
        }
        std::vector<TRVMode::FilteredItem> items;
        for (size_t i = 0; i < count; i++) items.push_back(std::make_shared<MatchingItem>());
        this->createFilteredItemsFromArray(std::move(items));
        block(true, std::nullopt);
    }
    void saveSelection() override { this->saveSelectionByIndexOfSelectedRow(); }
    void restoreSelection() override { this->restoreSelectionWithIndexSet({}); }
    void themeChanged() override {
        if constexpr (std::is_same_v<Base, TRVMode>) {
            this->setColours(kGreen, {}, {});
            this->setupTextAttrsForColor(kGreen);
        } else {
            Base::themeChanged();
        }
    }
    void activate() override {
        Base::activate();
        activations++;
    }

    size_t count = 30;
    std::u16string endsOnlyFor;  // set while nothing is searched; any other search goes stale
    int activations = 0, mostRunning = 0;
    std::atomic<int> slowness = 0, running = 0;
    std::vector<std::u16string> searched;  // on searchQ, one at a time
};
using PlainMode = NamesMode<TRVMode>;
using ChildMode = NamesMode<TRVModeWithParentMode>;

class ModesTest : public ApplicationTest {
  protected:
    ModesTest() {
        home_.file("qq1");
        home_.file("qq2");
    }
    ~ModesTest() override { session_.reset(); }
    void start() {
        ApplicationTest::start();
        for (TRVMode* mode : {static_cast<TRVMode*>(&plain_), static_cast<TRVMode*>(&child_)})
            mode->setHost(&session_->app().modeHost());
        settle();
    }
    void switchTo(TRVMode& mode) {
        session_->app().modeSwitcher().switchToMode(mode);
        settle();
    }

    PlainMode plain_{kProjectMode};
    ChildMode child_{kActionsMode};
};

TEST_F(ModesTest, EachComesBackAsItWasLeft) {
    start();
    type(u"qq");
    press(kKeyDown, kModifierNumericPad | kModifierFunction);
    settle();
    switchTo(plain_);
    EXPECT_EQ(field().content, u"");
    EXPECT_EQ(screen().field.placeholder, "Names");
    EXPECT_EQ(screen().infoBar.inset, 0);
    EXPECT_EQ(screen().window.look.normalFile.colour.hue, kGreen.hue);
    EXPECT_TRUE(screen().table.hasScroller());
    type(u"x");
    screen().table.click({25});
    screen().table.scrollTo(800);
    settle();
    switchTo(searchMode());
    EXPECT_EQ(field().content, u"qq");
    EXPECT_EQ(field().selected, (TextRange{0, 2})) << "the next key replaces it";
    EXPECT_EQ(screen().table.selectedRows(), Rows{1});
    EXPECT_EQ(screen().infoBar.inset, 63);
    switchTo(plain_);
    EXPECT_EQ(field().content, u"x");
    EXPECT_EQ(screen().table.selectedRows(), Rows{25});
    // Coming again to where one is changes nothing.
    const int activations = plain_.activations;
    switchTo(plain_);
    EXPECT_EQ(plain_.activations, activations);
}

TEST_F(ModesTest, AChangeOfModeStartsNoSearchOfItsOwn) {
    start();
    type(u"qq");
    switchTo(plain_);
    EXPECT_EQ(plain_.searched, std::vector<std::u16string>{u""});
    type(u"a");
    EXPECT_EQ(plain_.searched, (std::vector<std::u16string>{u"", u"a"}));
}

TEST_F(ModesTest, OneSearchRunsAndTheNewestTextWins) {
    start();
    switchTo(plain_);
    plain_.endsOnlyFor = u"abcde";
    plain_.searched.clear();
    screen().table.takeChanges();
    for (const char16_t letter : std::u16string(u"abcde")) {
        field().type({&letter, 1});
        std::this_thread::sleep_for(3ms);
    }
    settle();
    EXPECT_EQ(plain_.mostRunning, 1);
    EXPECT_EQ(plain_.searched.back(), u"abcde");
    EXPECT_EQ(screen().table.takeChanges().size(), 1u) << "one update of the table";
}

TEST_F(ModesTest, AForcedBlockIsCalledForAStaleSearchToo) {
    start();
    switchTo(plain_);
    plain_.slowness = 200;
    std::atomic<int> forced = 0, plain = 0;
    GlobalState& state = GlobalState::sharedInstance();
    state.searchInBackgroundForceBlockExecution(ForceBlock::yes, [&](auto) { forced++; });
    std::this_thread::sleep_for(10ms);
    state.searchInBackgroundForceBlockExecution(ForceBlock::no, [&](auto) { plain++; });
    std::this_thread::sleep_for(10ms);
    plain_.slowness = 0;
    state.searchInBackgroundForceBlockExecution(ForceBlock::no, [&](auto) { plain++; });
    settle();
    EXPECT_EQ(forced, 1);
    EXPECT_EQ(plain, 1);
}

TEST_F(ModesTest, ASlowModeShowsItsOldRowsAtOnce) {
    start();
    switchTo(plain_);
    type(u"x");
    plain_.setLastSearchWasSlow(true);
    switchTo(searchMode());
    EXPECT_EQ(screen().table.numberOfRows(), 0u);
    plain_.slowness = 30;
    TRVMode::switchModeQueue().async(
        [this] { session_->app().modeSwitcher().activateMode(plain_); });
    settle();
    EXPECT_EQ(screen().table.numberOfRows(), 30u) << "before anything was searched";
}

TEST_F(ModesTest, AModeWithAParentWearsItsColoursAndGoesBackToIt) {
    start();
    switchTo(plain_);
    child_.setParentMode(&plain_);
    switchTo(child_);
    EXPECT_EQ(screen().window.look.background, kGreen);
    EXPECT_EQ(child_.backgroundColor(), kGreen);
    child_.restoreParentModeInBackground();
    settle();
    EXPECT_TRUE(plain_.isActive());
}

TEST_F(ModesTest, TheSelectionFallsBackToTheSamePlace) {
    start();
    switchTo(plain_);
    screen().table.click({29});
    settle();
    plain_.count = 20;
    session_->app().modeHost().reloadInBackgroundAnimated(false);
    settle();
    EXPECT_EQ(screen().table.selectedRows(), Rows{19}) << "the last row of a shorter table";
    plain_.selection()->clearSelection = true;
    session_->app().modeHost().reloadInBackgroundAnimated(false);
    settle();
    EXPECT_TRUE(screen().table.selectedRows().empty());
    plain_.count = 0;
    session_->app().modeHost().reloadInBackgroundAnimated(false);
    settle();
    EXPECT_TRUE(screen().table.selectedRows().empty());
    EXPECT_EQ(plain_.filteredItemAtIndex(0), nullptr);
    EXPECT_EQ(plain_.filteredItemAtIndex(-1), nullptr);
    EXPECT_TRUE(plain_.filteredItemsAtIndexSet({0, 5}).empty());
}

TEST(MatchingItem, RecentItemsAreEqualByInodeAndFilesByPath) {
    MatchingRecentItem a, b;
    a.inode = b.inode = 7;
    a.url = FileURL("/a");
    b.url = FileURL("/b");
    EXPECT_TRUE(a.isEqual(b));
    EXPECT_EQ(a.hash(), b.hash());
    MatchingPathItem c, d;
    c.url = d.url = FileURL("/a");
    EXPECT_TRUE(c.isEqual(d));
    EXPECT_FALSE(c.isEqual(a));
    EXPECT_FALSE(MatchingItem().isEqual(MatchingItem()));
}

TEST(modeLook, TextsFollowOneHueAndTheGround) {
    ModeLook look{.isDark = true};
    setupTextAttrs(look, 0.25, 0.75);
    EXPECT_EQ(look.normalFile.colour, (Colour{0.25, 0.1, 1.0, 1.0}));
    EXPECT_EQ(look.hilitePath.colour, (Colour{0.25, 0.3, 0.4, 1.0}));
    EXPECT_EQ(look.selectedText, (Colour{0.75, 0.1, 1.0, 1.0}));
    EXPECT_TRUE(look.hilitePath.underline);
    look.isDark = false;
    setupTextAttrs(look, 0.25, 0.75);
    EXPECT_EQ(look.normalFile.colour, (Colour{0.25, 0.1, 0.1, 0.8}));
    EXPECT_EQ(look.selectedText, (Colour{0, 0, 1, 1}));
}

}  // namespace
