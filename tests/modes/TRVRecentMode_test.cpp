#include "modes/ModesTest.h"

namespace {

class RecentModeTest : public FileModesTest {
  protected:
    void begin() {
        for (const char* name : {"/old.txt", "/new.md", "/folder"})
            home_.file("root" + std::string(name));
        start();
        uint64_t inode = 10;
        for (const char* name : {"/old.txt", "/new.md"})
            cache().addRecentItem(under(name), {.inode = inode++, .ofType = 1, .change = 2});
        cache().addRecentItem(under("/folder"), {.inode = inode++, .ofType = 2, .change = 1});
        enter(recent());
    }
    Cache& cache() { return *searchMode().currentCache(); }
};

TEST_F(RecentModeTest, NewestComeFirstWithTheirAge) {
    begin();
    EXPECT_EQ(names().size(), 3u);
    EXPECT_EQ(names().front().substr(names().front().find(' ')), " (0m ago)");
    EXPECT_EQ(field().placeholder, "Search recent items");
    EXPECT_EQ(screen().infoBar.text, "Recent items in project P");
    OVUserDefaults::sharedInstance().setInteger(1, "recentItemsVisibleItemTypes");
    type(u"e");
    EXPECT_EQ(names(), Names{"new.md (0m ago)"});
    type(u"zzz");
    EXPECT_TRUE(names().empty());
}

TEST_F(RecentModeTest, TheAgeCountsWholeUnits) {
    constexpr std::time_t kDay = 86400;
    for (const auto& [age, text] :
         std::vector<std::pair<std::time_t, std::string>>{{0, " (0m ago)"},
                                                          {59, " (0m ago)"},
                                                          {300, " (5m ago)"},
                                                          {3600, " (1h ago)"},
                                                          {kDay - 1, " (23h ago)"},
                                                          {3 * kDay, " (3d ago)"},
                                                          {-50, " (0m ago)"}})
        EXPECT_EQ(TRVRecentMode::ageText(1'000'000, 1'000'000 + age), text);
}

TEST_F(RecentModeTest, ANewNameIsTypedWithoutTheAge) {
    begin();
    select("old.txt (0m ago)");
    recent().prepareRenameSelectionAtRow(table().selectedRows().front());
    ASSERT_TRUE(table().edit());
    EXPECT_EQ(table().edit()->text, u"old.txt");
    table().endEditingRow();
}

TEST_F(RecentModeTest, AnEntryCanGoWhileItsFileStays) {
    begin();
    const auto urls = std::vector{under("/new.md")};
    screen().alerts.answers = {"Cancel", "Remove from Recent Items"};
    recent().deleteItems(urls);
    settle();
    EXPECT_EQ(names().size(), 3u);
    recent().deleteItems(urls);
    settle();
    EXPECT_EQ(names().size(), 2u);
    EXPECT_TRUE(exists(under("/new.md")));
    const Alert& alert = screen().alerts.shown.front().alert;
    EXPECT_EQ(alert.title, "Move \"new.md\" to Trash");
    EXPECT_EQ(alert.text, "Do you want to move \"new.md\" to the Trash?");
}

TEST_F(RecentModeTest, KeepsToTheProjectsDiacriticsSetting) {
    home_.file("root/caf\xc3\xa9");
    start({{"recentItemsIgnoreDiacritics", true}});
    cache().addRecentItem(under("/caf\xc3\xa9"), {.inode = 5, .ofType = 1, .change = 2});
    enter(recent());
    type(u"cafe");
    EXPECT_TRUE(names().empty());
}

TEST_F(RecentModeTest, AFileThatHasGoneStaysListed) {
    begin();
    unlink(under("/old.txt").c_str());
    type(u"txt");
    EXPECT_EQ(names(), Names{"old.txt (0m ago)"});
}

TEST_F(RecentModeTest, ListsOnlyWhatThePathFilterLetsThrough) {
    home_.file("root/sub/inside.txt");
    begin();
    cache().addRecentItem(under("/sub/inside.txt"), {.inode = 50, .ofType = 1, .change = 2});
    for (const char16_t* text : {u"", u"txt"}) {
        search(text);
        behind([&] { recent().focusURL(under("/sub")); });
        EXPECT_EQ(names(), Names{"inside.txt (0m ago)"});
        behind([&] { recent().resetPathFilter(); });
        behind([&] { recent().ignoreURL(under("/sub")); });
        EXPECT_EQ(names().size(), *text ? 1u : 3u);
        behind([&] { recent().resetPathFilter(); });
    }
}

}  // namespace
