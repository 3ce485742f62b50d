#include "index/IndexTestSupport.h"

namespace {

class CacheMoveTest : public IndexTest {
  protected:
    FileURL add(const char* path, uint8_t type = ITEM_FILE) {
        const FileURL url = type == ITEM_DIRECTORY ? folder.folder(path) : folder.file(path);
        cache->addPath(url, {.ofType = type, .inode = inodeOf(url)});
        return url;
    }
    MoveStatus move(const FileURL& from, const FileURL& to, MovePath with = {}) {
        observer.calls.clear();
        return cache->movePath(from, to, with);
    }
};

TEST_F(CacheMoveTest, FolderKeepsItsRecordsAndAllBelowIt) {
    const FileURL file = add("a/b/f"), target = add("other", ITEM_DIRECTORY);
    fs_item_t* item = find(file);
    const uint64_t index = item->index, count = cache->count();
    EXPECT_EQ(move(folder.at("a/b"), target.appending("new"), {.forFsEventId = 5}),
              MoveStatus::moved);
    EXPECT_EQ(fs_item_url(item), folder.at("other/new/f"));
    EXPECT_EQ(item->index, index);
    EXPECT_EQ(cache->count(), count);
    EXPECT_EQ(find(folder.at("a/b")), nullptr);
    EXPECT_EQ(cache->lastEventStreamEventId(), 5u);
    EXPECT_EQ(observer.calls.back(),
              "rename " + folder.at("a/b").path() + " " + folder.at("other/new").path());
    // Neither its name nor its folder is new: nothing moves.
    EXPECT_EQ(move(folder.at("other/new"), folder.at("other/new")), MoveStatus::moved);
    EXPECT_EQ(fs_item_url(item), folder.at("other/new/f"));
}

TEST_F(CacheMoveTest, StatusTellsWhatWasThere) {
    const FileURL file = add("a/f"), second = add("a/g");
    EXPECT_EQ(move(folder.at("a/none"), folder.at("a/nobody")), MoveStatus::unknown);
    EXPECT_EQ(move(folder.at("a/none"), second), MoveStatus::destinationExists);
    EXPECT_EQ(move(file, folder.at("outside/f"), {.forFsEventId = 8}), MoveStatus::sourceRemoved);
    EXPECT_EQ(find(file), nullptr);
    EXPECT_EQ(cache->lastEventStreamEventId(), 8u);
    EXPECT_EQ(static_cast<int>(MoveStatus::destinationExists), -1);
}

TEST_F(CacheMoveTest, WhatStandsAtTheDestinationMakesWay) {
    const FileURL from = add("a/from"), to = add("a/to/inside").deletingLastPathComponent();
    fs_item_t* item = find(from);
    const uint64_t count = cache->count();
    EXPECT_EQ(move(from, to), MoveStatus::moved);
    EXPECT_EQ(find(to), item);
    EXPECT_EQ(cache->count(), count - 2);
    EXPECT_EQ(observer.calls[0], "remove to");
}

TEST_F(CacheMoveTest, NothingMovesIntoItselfAndTheRootNowhere) {
    add("a/b/f");
    const LogOf log;
    EXPECT_EQ(move(folder.at("a"), folder.at("a/b/a")), MoveStatus::destinationExists);
    EXPECT_EQ(move(FileURL("/"), folder.at("root")), MoveStatus::destinationExists);
    EXPECT_TRUE(log.holds("Cannot move root item"));
    EXPECT_NE(find(folder.at("a/b/f")), nullptr);
}

TEST_F(CacheMoveTest, FileOperationRefreshesMetadata) {
    const FileURL from = add("from"), to = folder.at("to");
    rename(from.c_str(), to.c_str());
    processFlags.processMetadata = true;
    move(from, to, {.forFsEventId = 3});
    EXPECT_EQ(find(to)->metadata, nullptr) << "an event's handler does that itself";
    rename(to.c_str(), from.c_str());
    move(to, from);
    EXPECT_NE(find(from)->metadata, nullptr);
}

TEST_F(CacheMoveTest, KeepsMovedItemAsAFreshRecentOne) {
    const FileURL from = add("from"), to = folder.at("to");
    cache->addRecentItem(from, {.inode = 77, .ofType = 1, .change = 1});
    move(from, to, {.toInode = 78, .ofType = 1, .includeInRecentItems = true});
    const auto recent = cache->recentItems();
    ASSERT_EQ(recent.size(), 1u);
    EXPECT_EQ(recent[0].url, to);
    EXPECT_EQ(recent[0].inode, 78u);
    EXPECT_EQ(recent[0].change, 4);
}

class RecentItemsTest : public IndexTest {
  protected:
    void note(const char* path, uint64_t inode) {
        cache->addRecentItem(FileURL(path), {.inode = inode, .ofType = 1, .change = 1});
    }
    std::string recent() {
        std::string text;
        for (const RecentItem& item : cache->recentItems()) text += item.url.path() + " ";
        return text;
    }
};

TEST_F(RecentItemsTest, NewestIsFirstAndPathOrInodeReplaces) {
    note("/a", 1);
    note("/b", 2);
    note("/a", 3);
    EXPECT_EQ(recent(), "/a /b ");
    note("/c", 2);
    EXPECT_EQ(recent(), "/c /a ");
    OVUserDefaults::sharedInstance().setInteger(3, "recentItemsMaxCount");
    note("/d", 4);
    note("/e", 5);
    EXPECT_EQ(recent(), "/e /d /c ");
    EXPECT_EQ(cache->indexOfRecentItemExistsWithName("ignored", FileURL("/d")), 1u);
    EXPECT_EQ(cache->indexOfRecentItemExistsWithName("d", FileURL("/x")), std::nullopt);
}

TEST_F(RecentItemsTest, RenamingChangesTheItemAndWhatIsBelow) {
    note("/dir/x", 1);
    note("/dir", 2);
    note("/directory", 3);
    clock->seconds++;
    EXPECT_TRUE(cache->renameRecentItemsFrom(FileURL("/dir"), FileURL("/new")));
    EXPECT_EQ(recent(), "/directory /new /new/x ");
    const auto items = cache->recentItems();
    EXPECT_EQ(items[1].timestamp, items[2].timestamp + 1) << "only the item itself has changed";
    EXPECT_FALSE(cache->renameRecentItemsFrom(FileURL("/dir"), FileURL("/new")));
    cache->removeRecentItemsBelowURL(FileURL("/new"));
    EXPECT_EQ(recent(), "/directory ");
}

TEST_F(RecentItemsTest, KeepsLinkToAFileAsNoFile) {
    folder.link("link", "file");
    cache->addPath(folder.at("link"),
                   {.ofType = ITEM_FILE | ITEM_SYMLINK, .inode = 5, .changeType = 1});
    cache->addPath(folder.file("f"), {.ofType = ITEM_BUNDLE, .inode = 6, .changeType = 2});
    EXPECT_EQ(cache->recentItems()[1].type, 2);
    EXPECT_EQ(cache->recentItems()[0].type, 1);
    cache->removePath(folder.url(), 0);
    EXPECT_TRUE(cache->recentItems().empty());
}

}  // namespace
