#include "index/Cache.h"

#include "index/IndexTestSupport.h"
#include "index/Metadata.h"

namespace {

using CacheTest = IndexTest;

metadata_ptr metadataOf(const FileURL& url) {
    struct statx status;
    return statItem(url.c_str(), status) ? metadataFromStatBuf(&status) : nullptr;
}

TEST_F(CacheTest, AddedPathStandsBelowTheFoldersAroundIt) {
    const FileURL url = folder.file("a/b/c.txt");
    EXPECT_EQ(cache->count(), 1u);
    const auto added = cache->addPath(url, {.ofType = ITEM_FILE, .inode = inodeOf(url)});
    ASSERT_NE(added.item, nullptr);
    EXPECT_FALSE(added.alreadyExists);
    EXPECT_EQ(fs_item_url(added.item), url);
    EXPECT_EQ(find(folder.at("a"))->type, ITEM_DIRECTORY);
    EXPECT_EQ(find(folder.at("a"))->inode, inodeOf(folder.at("a")));
    const auto again = cache->addPath(url, {.ofType = ITEM_DIRECTORY, .inode = 1});
    EXPECT_TRUE(again.alreadyExists);
    EXPECT_EQ(again.item, added.item);
    EXPECT_EQ(added.item->type, ITEM_FILE) << "only metadata is refreshed";
    EXPECT_EQ(cache->lastEventStreamEventId(), ~uint64_t{0});
    EXPECT_EQ(cache->addPath(FileURL("/"), {.ofType = ITEM_DIRECTORY}).item, find(FileURL("/")));
}

TEST_F(CacheTest, PathComponentsHaveTheTypesOfWhatTheyAre) {
    folder.file("x.app/in");
    folder.link("toFolder", "x.app/..");
    folder.link("toPackage", "x.app");
    folder.link("toNothing", "nobody");
    const auto typeOf = [&](const char* name) {
        cache->performBlockExclusive([&](const WriteSection& section) {
            cache->fsItemWithURL(section, folder.at(name), Create::yes);
        });
        return find(folder.at(name))->type;
    };
    EXPECT_EQ(typeOf("x.app"), ITEM_BUNDLE);
    EXPECT_NE(find(folder.at("x.app"))->dircontent, nullptr);
    EXPECT_EQ(typeOf("toFolder"), ITEM_DIRECTORY | ITEM_SYMLINK);
    EXPECT_EQ(find(folder.at("toFolder"))->dircontent, nullptr);
    EXPECT_EQ(typeOf("toPackage"), ITEM_DIRECTORY | ITEM_SYMLINK);
    EXPECT_EQ(typeOf("toNothing"), ITEM_FILE | ITEM_SYMLINK);
    EXPECT_EQ(typeOf("x.app/in"), ITEM_FILE);
}

TEST_F(CacheTest, WhatCannotBeAddedLeavesNoTrace) {
    processFlags.processMetadata = true;
    const FileURL gone = folder.at("gone/file");
    const auto result = cache->addPath(
        gone, {.ofType = ITEM_FILE, .metadata = metadataOf(folder.url()), .fsEventId = 7});
    EXPECT_EQ(result.item, nullptr);
    EXPECT_EQ(cache->lastEventStreamEventId(), ~uint64_t{0});

    const LogOf log;
    const std::string tooLong(1024, 'x'), withNul("a\0b", 3);
    EXPECT_EQ(cache->addPath(folder.at(tooLong), {.ofType = ITEM_FILE}).item, nullptr);
    EXPECT_EQ(cache->addPath(folder.at(withNul), {.ofType = ITEM_FILE}).item, nullptr);
    EXPECT_TRUE(log.holds("Cannot get filesystem representation of path component"));
    EXPECT_EQ(find(FileURL("tmp/none")), nullptr);
    EXPECT_TRUE(log.holds("called with relative path: tmp/none"));

    Cache other(observer, types);
    EXPECT_EQ(other.addPath(folder.at("x"), {.ofType = ITEM_FILE}).item, nullptr)
        << "only the current cache is added to";
    EXPECT_EQ(other.count(), 1u);
}

// Without a map the child would be in the array alone, and outlive its parent there.
TEST_F(CacheTest, ChildOfAFileIsReportedAndGoesWithIt) {
    const FileURL file = folder.file("file");
    const LogOf log;
    cache->addPath(file.appending("child"), {.ofType = ITEM_FILE});
    EXPECT_TRUE(log.holds("Parent of " + file.path() + "/child (type 1) has NULL dircontent list"));
    EXPECT_NE(find(file.appending("child")), nullptr);
    const uint64_t count = cache->count();
    cache->removePath(file, 0);
    EXPECT_EQ(cache->count(), count - 2);
}

TEST_F(CacheTest, MetadataIsStoredRefreshedAndDropped) {
    const FileURL url = folder.file("file", "12345"), link = folder.link("link", ".");
    processFlags.processMetadata = true;
    fs_item_t* item = cache->addPath(url, {.ofType = ITEM_FILE, .metadata = metadataOf(url)}).item;
    EXPECT_EQ(item->metadata->size, 5u);
    folder.file("file", "123");
    cache->addPath(url, {.ofType = ITEM_FILE, .metadata = metadataOf(url)});
    EXPECT_EQ(item->metadata->size, 3u);
    EXPECT_EQ(item->parent->metadata->size, ~uint64_t{0}) << "a folder has none";
    EXPECT_EQ(metadataOf(link)->size, 1u) << "a link has its own";
    cache->addPath(url, {.ofType = ITEM_FILE});
    EXPECT_EQ(item->metadata, nullptr);
    EXPECT_EQ(metadataFromStatBuf(nullptr), nullptr);
}

TEST_F(CacheTest, RemovalTellsOfEachItemBeforeItsMemoryGoes) {
    for (const char* path : {"a/b/1", "a/b/2", "c"})
        cache->addPath(folder.file(path), {.ofType = ITEM_FILE});
    observer.marked = true;
    observer.calls.clear();
    cache->removePath(folder.at("a"), 9);
    ASSERT_EQ(observer.calls.size(), 9u);
    EXPECT_EQ(observer.calls[0], "unmark " + folder.at("a").path());
    EXPECT_EQ(observer.calls[1], "remove a");
    EXPECT_EQ(observer.calls[2], "unmark " + folder.at("a/b").path());
    EXPECT_EQ(observer.calls[8], "consolidate");
    EXPECT_EQ(cache->lastEventStreamEventId(), 9u);
    EXPECT_EQ(find(folder.at("a/b/1")), nullptr);
    EXPECT_NE(find(folder.at("c")), nullptr);

    observer.calls.clear();
    cache->removePath(folder.at("nobody"), 10);
    EXPECT_TRUE(observer.calls.empty());
    EXPECT_EQ(cache->lastEventStreamEventId(), 9u);

    cache->removePath(FileURL("/"), 0);
    EXPECT_EQ(cache->count(), 1u);
    cache->addPath(folder.at("c"), {.ofType = ITEM_FILE});
    observer.calls.clear();
    const auto items = cache->count();
    cache.reset();
    EXPECT_EQ(std::count_if(observer.calls.begin(), observer.calls.end(),
                            [](const std::string& call) { return call.starts_with("remove "); }),
              static_cast<std::ptrdiff_t>(items));
}

TEST_F(CacheTest, DeepTreeIsRemovedWithoutRecursion) {
    const FileURL top = folder.file("top");
    cache->performBlockExclusive([&](const WriteSection&) {});
    FileURL url = top;
    fs_item_t* parent = cache->addPath(url, {.ofType = ITEM_DIRECTORY}).item;
    for (int depth = 0; depth < 50'000; depth++) {
        ScanBatch batch{
            .folder = url, .folderItem = parent, .structureVersion = cache->structureVersion()};
        const ItemPool::Borrowed lane = cache->pool().take();
        parent =
            batch.add(*lane, {.name = "d", .type = ITEM_DIRECTORY, .inode = 1, .withMap = true});
        batch.makeMap(*lane);
        cache->addBatch(std::move(batch));
    }
    EXPECT_GT(cache->count(), 50'000u);
    const uint64_t before = cache->count();
    cache->removePath(top, 0);
    EXPECT_EQ(cache->count(), before - 50'001);
}

TEST_F(CacheTest, RangesEndAtTheEndOrWhenToldTo) {
    cache->addPath(folder.file("f"), {.ofType = ITEM_FILE});
    cache->performBlockReadOnly([&](const ReadSection& section) {
        const uint64_t count = cache->count();
        int calls = 0, nulls = 0;
        const auto note = [&](fs_item_t* item) {
            calls++;
            nulls += item == nullptr;
            return true;
        };
        EXPECT_TRUE(cache->performBlockWithItemsInRange(section, {count - 1, 3}, note));
        EXPECT_EQ(calls, 3);
        EXPECT_EQ(nulls, 2);
        EXPECT_TRUE(cache->performBlockWithItemsInRange(section, {0, 0}, note));
        EXPECT_FALSE(
            cache->performBlockWithItemsInRange(section, {0, 5}, [](fs_item_t*) { return false; }));
    });
}

TEST_F(CacheTest, RefreshWaitsForAQuietSecondButNotForEver) {
    const auto change = [&](uint64_t id) {
        cache->addPath(folder.file("f"), {.ofType = ITEM_FILE, .fsEventId = id});
    };
    EXPECT_EQ(cache->nextFsEventId(), 0u);
    EXPECT_FALSE(cache->resultListUpdateDue());
    cache->resultListUpdated();
    change(100);
    EXPECT_EQ(cache->nextFsEventId(), 102u);
    EXPECT_FALSE(cache->resultListUpdateDue()) << "the second is not over";
    clock->seconds++;
    EXPECT_TRUE(cache->resultListUpdateDue());
    for (int second = 1; second <= 3; second++) {
        change(101);
        EXPECT_EQ(cache->resultListUpdateDue(), second == 3);
        clock->seconds++;
    }
    change(102);
    clock->seconds--;
    EXPECT_FALSE(cache->resultListUpdateDue()) << "a change in the future";
    cache->setNextResultListUpdateDue();
    EXPECT_TRUE(cache->resultListUpdateDue());
    cache->resultListUpdated();
    EXPECT_FALSE(cache->resultListUpdateDue());
}

TEST_F(CacheTest, DumpHoldsEveryPath) {
    cache->addPath(folder.file("a/f"), {.ofType = ITEM_FILE});
    ASSERT_TRUE(cache->dumpTo(folder.at("dump")));
    const auto content = readFile(folder.at("dump"), 1 << 20);
    EXPECT_TRUE(content.value().bytes.starts_with("//\n"));
    EXPECT_TRUE(content.value().bytes.ends_with(folder.at("a/f").path() + "\n"));
    const LogOf log;
    cache->dumpItem(nullptr, 12);
    EXPECT_TRUE(log.holds("12     > " + folder.at("a/f").path()));
}

}  // namespace
