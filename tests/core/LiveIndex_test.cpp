#include <cstdlib>
#include <random>
#include <thread>

#include "index/DirectoryOnDisk.h"
#include "index/checkTree.h"
#include "index/scanProject.h"
#include "platform/linux/events/EventStorm.h"
#include "support/ApplicationTest.h"

namespace {

using Items = std::vector<std::string>;

/// Of an index in nobody's list.
struct NoObserver : IndexObserver {
    Cache* currentCache() override { return cache; }
    void removeFilteredItem(const fs_item_t*) override {}
    void consolidateFilteredList() override {}
    bool hasMarkedPaths() override { return false; }
    void updatePathCachesAfterRemovePath(const FileURL&) override {}
    void updatePathCachesAfterRename(const FileURL&, const FileURL&) override {}

    Cache* cache = nullptr;
};

/// The whole application on the real disk, with the real source of events.
class LiveIndexTest : public ApplicationTest {
  protected:
    LiveIndexTest() : root_(home_.folder("root")), outside_(home_.folder("outside")) {}
    ~LiveIndexTest() override { session_.reset(); }

    void start() {
        session_ = std::make_unique<AppSession>(AppSession::Start{
            .home = home_.url(),
            .settings = {{"projects", {project("P", root_)}}, {"currentProject", "P"}}});
        session_->app().window().toggleMainWindow();
        settle();
    }
    /// What an index holds below the folder. A link counts as what an event makes of it: a file. A
    /// disk's mount point has two numbers, that of the folder and that of the disk.
    Items itemsOf(Cache& cache) const {
        constexpr uint8_t kKind = ITEM_FILE | ITEM_DIRECTORY | ITEM_BUNDLE;
        Items items;
        cache.performBlockReadOnly([&](const ReadSection& section) {
            for (const fs_item_t* item : cache.items(section)) {
                if (!item->parent) continue;
                const FileURL url = fs_item_url(item);
                if (url == root_ || !url.hasPrefix(root_)) continue;
                const auto disk = statusOnDisk(url);
                const uint64_t inode =
                    disk && hasInode(url, item->inode) ? disk->inode : item->inode;
                items.push_back(url.path().substr(root_.path().size()) + " " +
                                std::to_string(item->type & kKind) + " " + std::to_string(inode));
            }
        });
        std::sort(items.begin(), items.end());
        return items;
    }
    Items freshScan() {
        NoObserver observer;
        const auto fresh = std::make_shared<Cache>(observer, desktop());
        observer.cache = fresh.get();
        EXPECT_EQ(scanProject(FSScanner::sharedInstance(), *searchMode().currentProject(),
                              {.cache = fresh}),
                  ScanEnd::complete);
        return itemsOf(*fresh);
    }
    /// Empty where the index is what a scan would make of the disk.
    std::string difference() {
        Cache& cache = *searchMode().currentCache();
        const std::string broken = checkTree(cache);
        if (!broken.empty()) return broken;
        const Items live = itemsOf(cache), fresh = freshScan();
        Items differing;
        std::set_symmetric_difference(live.begin(), live.end(), fresh.begin(), fresh.end(),
                                      std::back_inserter(differing));
        std::string text;
        for (const std::string& item : differing)
            text += (std::binary_search(live.begin(), live.end(), item) ? "only in the index: "
                                                                        : "only on the disk: ") +
                    item + "\n";
        return text;
    }

    const FileURL root_, outside_;
};

unsigned numberFrom(const char* variable, unsigned otherwise) {
    const char* text = std::getenv(variable);
    return text && *text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : otherwise;
}

/// TROVAST_STORMS and TROVAST_SEED make it longer, and the same again.
TEST_F(LiveIndexTest, EqualsAFreshScanAfterEachStorm) {
    const unsigned storms = numberFrom("TROVAST_STORMS", 200);
    const unsigned seed = numberFrom("TROVAST_SEED", std::random_device()());
    RecordProperty("mounts", EventStorm::mayMount());
    start();
    for (unsigned i = 0; i < storms; i++) {
        const unsigned first = seed + 2 * i;
        const int operations = i % 10 == 0 ? 1500 : 60;
        EventStorm one(root_, outside_, first, operations);
        EventStorm other(root_, outside_, first + 1, operations);
        one.begin();
        other.begin();
        if (i % 3 == 0) {  // with a pause
            one.wait();
            session_->world().mainQueue().runPending();
        }
        while (!one.hasEnded() || !other.hasEnded()) session_->world().mainQueue().runPending();
        settle();
        const std::string differing = difference();
        ASSERT_EQ(differing, "") << "storm " << i << " of TROVAST_SEED=" << seed;
        one.unmountAll();
        settle();
        const std::string after = difference();
        ASSERT_EQ(after, "") << "unmounted after storm " << i << " of TROVAST_SEED=" << seed;
    }
}

TEST_F(LiveIndexTest, AnUpdateLeavesTheSearchForAKeyStrokeAlone) {
    home_.file("root/sheet");
    start();
    Cache& cache = *searchMode().currentCache();
    cache.performBlockExclusive([&](const WriteSection&) {
        field().type(u"h");  // one search, which waits for the section; a second would wait for it
        while (searchMode().abortSearch()) std::this_thread::yield();
        cache.setNextResultListUpdateDue();
        searchMode().triggerAutoUpdateTimer();
        session_->world().mainQueue().runPending();
        EXPECT_FALSE(searchMode().abortSearch());
    });
    settle();
    EXPECT_EQ(names(), std::vector<std::string>{"sheet"});
}

TEST_F(LiveIndexTest, ANewFileIsInTheVisibleListWithItsSelectionKept) {
    home_.file("root/sheet b");
    home_.file("root/sheet c");
    start();
    type(u"sheet");
    press(kKeyDown, kModifierNumericPad | kModifierFunction);
    settle();
    ASSERT_EQ(std::system(("touch '" + root_.path() + "/sheet a'").c_str()), 0);
    settle();
    session_->advance(5);
    settle();
    EXPECT_EQ(names(), (std::vector<std::string>{"sheet a", "sheet b", "sheet c"}));
    EXPECT_EQ(screen().table.selectedRows(), std::vector<size_t>{2});
    // Renamed from outside: the row stays selected under its new name.
    ASSERT_EQ(
        std::system(("mv '" + root_.path() + "/sheet c' '" + root_.path() + "/sheet d'").c_str()),
        0);
    settle();
    session_->advance(5);
    settle();
    EXPECT_EQ(names(), (std::vector<std::string>{"sheet a", "sheet b", "sheet d"}));
    EXPECT_EQ(screen().table.selectedRows(), std::vector<size_t>{2});
}

TEST_F(LiveIndexTest, ReturnOpensTheRowThatIsShownThoughOneBeforeItHasGone) {
    for (int i = 0; i < 5; i++) home_.file("root/wombat" + std::to_string(i));
    start();
    type(u"wombat");
    screen().table.click({2});
    settle();
    ASSERT_EQ(unlink(home_.at("root/wombat0").c_str()), 0);
    // Our own doing is no event for us: told as if another program had done it.
    searchMode().currentCache()->removePath(home_.at("root/wombat0"), 5);
    session_->world().mainQueue().runPending();
    EXPECT_EQ(names().at(screen().table.selectedRows().at(0)), "wombat2");
    press(kKeyReturn);
    settle();
    const auto opened = requests("open");
    ASSERT_EQ(opened.size(), 1u);
    EXPECT_EQ(opened[0]["paths"][0], home_.at("root/wombat2").path());
}

TEST_F(LiveIndexTest, ABetterMatchThatArrivesDoesNotTakeTheSelection) {
    home_.file("root/wombat");
    start();
    for (const char16_t letter : std::u16string(u"wom")) type({&letter, 1});
    ASSERT_EQ(screen().table.selectedRows(), std::vector<size_t>{0});
    ASSERT_EQ(std::system(("touch '" + root_.path() + "/wom'").c_str()), 0);
    settle();
    session_->advance(5);
    settle();
    EXPECT_EQ(names(), (std::vector<std::string>{"wom", "wombat"}));
    EXPECT_EQ(screen().table.selectedRows(), std::vector<size_t>{1});
}

TEST_F(LiveIndexTest, WhatHappensWhileAProjectIsLeftIsThereOnReturn) {
    home_.file("root/sheet");
    start();
    const auto cache = searchMode().sharedCurrentCache();
    TRVMode::switchModeQueue().async(
        [this] { ASSERT_TRUE(searchMode().createVirtualProjectFromPath(outside_)); });
    settle();
    ASSERT_EQ(std::system(("mkdir -p '" + root_.path() + "/new/deep' && touch '" + root_.path() +
                           "/new/deep/sheet 2' && rm '" + root_.path() + "/sheet'")
                              .c_str()),
              0);
    TRVMode::switchModeQueue().async([this] {
        session_->app().projectSwitcher().makeCurrentProject(searchMode().projectByUuid("P"));
    });
    settle();
    EXPECT_EQ(searchMode().sharedCurrentCache(), cache);
    EXPECT_EQ(difference(), "");
    type(u"sheet");
    EXPECT_EQ(names(), std::vector<std::string>{"sheet 2"});
}

}  // namespace
