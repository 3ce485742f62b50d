#include <chrono>
#include <thread>

#include "searchmodes/MetaDataQuery.h"
#include "support/ApplicationTest.h"
#include "util/ProcessFlags.h"
#include "util/settings/OVUserDefaults.h"

using namespace std::chrono;

namespace {

class SearchLanguage : public ApplicationTest {
  protected:
    void startWith(nlohmann::json settings = nlohmann::json::object()) {
        settings["numberOfInvocations"] = 1;
        settings["projects"] = {project("P", home_.url())};
        settings["currentProject"] = "P";
        start(std::move(settings));
        settle();
    }
    const IndicatorContent& indicator(IndicatorButton button) {
        return screen().indicators[button];
    }
    static nlohmann::json storedProject() {
        return OVUserDefaults::sharedInstance().arrayForKey("projects").at(0);
    }
    void onSwitchModeQueue(std::function<void()> block) {
        TRVMode::switchModeQueue().async(std::move(block));
        settle();
    }
};

}  // namespace

TEST_F(SearchLanguage, ARunawayExpressionDoesNotHoldUpTheNextKey) {
    // Each of them takes hours.
    for (int i = 0; i < 8; i++) home_.file(std::string(200, 'a') + std::to_string(i) + "!");
    home_.file("found");
    startWith();
    field().setText(u"+(a+a+)+[bc]");
    session_->world().mainQueue().runPending();
    std::this_thread::sleep_for(100ms);  // it is under way
    const auto begin = steady_clock::now();
    field().setText(u"found");
    settle();
    EXPECT_LT(steady_clock::now() - begin, 50ms + 30ms);  // and what the new search takes
    EXPECT_EQ(names(), std::vector<std::string>{"found"});
}

TEST_F(SearchLanguage, AListIsNarrowedToFoldersUntilTheFilterIsReset) {
    for (const char* path : {"a/x1", "a/in/x2", "b/x3"}) home_.file(path);
    startWith();
    type(u"x");
    EXPECT_EQ(names(), (std::vector<std::string>{"x1", "x3", "x2"}));
    EXPECT_FALSE(indicator(IndicatorButton::resetFilterButton).isShown);
    screen().table.setClipOrigin({0, 20});
    onSwitchModeQueue([this] { searchMode().focusURL(home_.at("a")); });
    EXPECT_EQ(names(), (std::vector<std::string>{"x1", "x2"}));
    onSwitchModeQueue([this] { searchMode().ignoreURL(home_.at("a/in")); });
    EXPECT_EQ(names(), std::vector<std::string>{"x1"});
    EXPECT_EQ(indicator(IndicatorButton::resetFilterButton).toolTip,
              "Result is filtered by path (Super+Escape to clear)\n\n[+] " + home_.at("a").path() +
                  "/\n[-] " + home_.at("a/in").path() + "/");
    EXPECT_TRUE(screen().indicators.click(IndicatorButton::resetFilterButton));
    settle();
    EXPECT_EQ(names(), (std::vector<std::string>{"x1", "x3", "x2"}));
    EXPECT_FALSE(indicator(IndicatorButton::resetFilterButton).isShown);
}

TEST_F(SearchLanguage, TheFilterOfOneProjectIsNotThatOfAnother) {
    for (const char* path : {"a/x1", "b/x2"}) home_.file(path);
    startWith();
    onSwitchModeQueue([this] { searchMode().ignoreURL(home_.at("a")); });
    EXPECT_TRUE(indicator(IndicatorButton::resetFilterButton).isShown);
    onSwitchModeQueue([this] { searchMode().createVirtualProjectFromPath(home_.url()); });
    EXPECT_FALSE(indicator(IndicatorButton::resetFilterButton).isShown);
    type(u"x");
    EXPECT_EQ(names(), (std::vector<std::string>{"x1", "x2"}));
}

TEST_F(SearchLanguage, NothingSelectedIsNothingToNarrowTo) {
    home_.file("x");
    startWith();
    EXPECT_TRUE(
        searchMode().handleFocusOrIgnoreSelectedURL(TRVModeSupportingPath::Narrowing::focus));
    settle();
    EXPECT_EQ(screen().infoBar.text, "No item selected");
    type(u"x");
    EXPECT_TRUE(
        searchMode().handleFocusOrIgnoreSelectedURL(TRVModeSupportingPath::Narrowing::ignore));
    settle();
    EXPECT_EQ(names(), std::vector<std::string>{});
}

TEST_F(SearchLanguage, KeepsDiacriticsInThisRunOnlyAndTheOtherSwitchesForGood) {
    home_.file("\xC3\xA9t\xC3\xA9");
    startWith();
    type(u"ete");
    EXPECT_EQ(screen().table.numberOfRows(), 0u);
    session_->app().toggles().prefHandleDiacritics();
    settle();
    EXPECT_EQ(screen().table.numberOfRows(), 1u);
    EXPECT_FALSE(storedProject().value("ignoreDiacritics", false));
    session_->app().toggles().prefShowDirectories();
    settle();
    EXPECT_EQ(storedProject()["visibleItemType"], 1);
    EXPECT_EQ(screen().table.numberOfRows(), 1u);  // the text and the index are as they were
    EXPECT_EQ(field().content, u"ete");
}

TEST_F(SearchLanguage, ASwitchThatIsFlippedDuringAScanDoesNotLoseTheEvents) {
    for (int i = 0; i < 300; i++)
        home_.file("d" + std::to_string(i % 20) + "/f" + std::to_string(i));
    startWith();
    searchMode().scanParameterModified(searchMode().currentProject());
    session_->app().toggles().prefShowDirectories();
    settle();
    type(u"f299");
    EXPECT_EQ(names(), std::vector<std::string>{"f299"});
    EXPECT_EQ(searchMode().currentProject()->visibleItemType, 1);
}

TEST_F(SearchLanguage, WhatIsNotReadOrdersAndTestsNothing) {
    home_.file("bb");
    home_.file("bbb");
    startWith();
    type(u"b \\pl:d \\s>1G");
    EXPECT_EQ(names(), (std::vector<std::string>{"bb", "bbb"}));
    // The button beside it tells what to do.
    ASSERT_TRUE(screen().infoBar.marquee);
    EXPECT_NE(plainText(*screen().infoBar.marquee).find("not indexed"), std::string::npos);
    screen().indicators.click(IndicatorButton::enableMetadata);
    settle();
    EXPECT_EQ(names(), std::vector<std::string>{});
    const auto& message = screen().infoBar.marquee;
    EXPECT_TRUE(!message || plainText(*message).find("not indexed") == std::string::npos);
}

TEST_F(SearchLanguage, WhatIsWrongIsSaidInRedAndAnEmptyListInWords) {
    home_.file("bb");
    startWith();
    const auto retype = [&](std::u16string_view text) {
        field().selectAll();
        type(text);
    };
    type(u"+(b");
    ASSERT_TRUE(screen().infoBar.marquee);
    EXPECT_EQ(screen().infoBar.marquee->front().look, StyledSpan::Look::error);
    retype(u"+");
    ASSERT_TRUE(screen().infoBar.marquee);
    EXPECT_EQ(screen().infoBar.marquee->front().look, StyledSpan::Look::plain);
    retype(u"qq");
    EXPECT_EQ(screen().infoBar.freshness, "Nothing found");
    retype(u"b");
    EXPECT_EQ(screen().infoBar.freshness, "");
}
