#include "index/FsEventHandler.h"

#include "index/EventsTestSupport.h"
#include "index/PathCache.h"

namespace {

TEST_F(EventsTest, CreatedAndRemovedItems) {
    useAndScan();
    folder.file("p/f");
    folder.file("p/d/e/g");
    folder.link("p/l", "d");
    process({{kCreated | kFile, "p/f"}, {kCreated | kDir, "p/d"}, {kCreated, "p/l"}});
    EXPECT_EQ(paths(), (Paths{"p", "p/d", "p/d/e", "p/d/e/g", "p/f", "p/l"}));
    EXPECT_EQ(find(folder.at("p/d/e/g"))->inode, inodeOf(folder.at("p/d/e/g")));
    EXPECT_EQ(cache->lastEventStreamEventId(), lastId);
    rename("p/d", "away");
    ::unlink(folder.at("p/f").c_str());
    client.calls.clear();
    process({{kRemoved | kDir, "p/d"}, {kRemoved | kFile, "p/f"}});
    EXPECT_EQ(paths(), (Paths{"p", "p/l"}));
    EXPECT_EQ(client.calls,
              (Paths{"clear " + folder.at("p/d").path(), "clear " + folder.at("p/f").path()}));
}

TEST_F(EventsTest, KeepsLinksThatComeByEventsAsPlainFiles) {
    folder.link("p/scanned", "nowhere");
    useAndScan();
    folder.link("p/l", "nowhere");
    process({{kCreated, "p/l"}});
    EXPECT_EQ(find(folder.at("p/scanned"))->type, ITEM_FILE | ITEM_SYMLINK);
    EXPECT_EQ(find(folder.at("p/l"))->type, ITEM_FILE);
}

TEST_F(EventsTest, FlagsThatMeanNoWork) {
    useAndScan();
    folder.file("p/f");
    folder.file("p/d/g");
    const auto comes = [&](uint32_t flags, std::string_view path) {
        process({{flags, path}});
        const bool came = has(path);
        cache->removePath(folder.at(path), 0);
        return came;
    };
    const uint32_t metadata = kFSEventStreamEventFlagItemInodeMetaMod;
    const uint32_t finder = kFSEventStreamEventFlagItemFinderInfoMod;
    EXPECT_FALSE(comes(kFSEventStreamEventFlagHistoryDone, "p/f"));
    EXPECT_FALSE(comes(kCreated | kFSEventStreamEventFlagOwnEvent, "p/f"));
    EXPECT_FALSE(comes(kFSEventStreamEventFlagKernelDropped, "p/f"));
    for (const uint32_t flag : {metadata, finder, kXattr, kOwner})
        EXPECT_FALSE(comes(flag, "p/f")) << flag;
    EXPECT_FALSE(comes(metadata | kDir, "p/d"));
    for (const uint32_t flag : {kXattr | kDir, kOwner | kDir}) EXPECT_TRUE(comes(flag, "p/d"));
    for (const uint32_t flag :
         {kCreated, kModified, kRenamed, kRemoved, kFSEventStreamEventFlagHistoryDone | kCreated})
        EXPECT_TRUE(comes(flag, "p/f")) << flag;
    processFlags.processMetadata = true;
    for (const uint32_t flag : {metadata, kOwner}) EXPECT_TRUE(comes(flag, "p/f")) << flag;
    for (const uint32_t flag : {finder, kXattr}) EXPECT_FALSE(comes(flag, "p/f")) << flag;
}

TEST_F(EventsTest, RenameKeepsTheRecordAndTellsOfIt) {
    folder.file("p/old");
    folder.file("p/new-one");
    useAndScan();
    const fs_item_t* record = find(folder.at("p/old"));
    const uint64_t inode = inodeOf(folder.at("p/old"));
    rename("p/old", "p/new");
    // An event of another kind may stand between the halves.
    process({{kRenamed, "p/old"}, {kModified, "p/new-one"}, {kRenamed, "p/new"}});
    EXPECT_EQ(find(folder.at("p/new")), record);
    EXPECT_FALSE(has("p/old"));
    EXPECT_TRUE(
        client.holds("renamed " + folder.at("p/old").path() + " " + folder.at("p/new").path()));
    EXPECT_EQ(client.lastRenamed.fromInode, 0u);
    EXPECT_EQ(client.lastRenamed.toInode, inode);
    EXPECT_TRUE(client.lastRenamed.external);
}

TEST_F(EventsTest, RenameOntoAnItemReplacesIt) {
    folder.file("p/a", "1");
    folder.file("p/b", "2");
    useAndScan();
    const uint64_t inode = inodeOf(folder.at("p/a"));
    rename("p/a", "p/b");
    process({{kRenamed, "p/a"}, {kRenamed, "p/b"}});
    EXPECT_EQ(paths(), (Paths{"p", "p/b"}));
    EXPECT_EQ(find(folder.at("p/b"))->inode, inode);
}

TEST_F(EventsTest, HalvesInTwoBatchesAreARemovalAndACreation) {
    folder.file("p/d/f");
    useAndScan();
    rename("p/d", "p/e");
    process({{kRenamed | kDir, "p/d"}});
    EXPECT_EQ(paths(), Paths{"p"});
    process({{kRenamed | kDir, "p/e"}});
    EXPECT_EQ(paths(), (Paths{"p", "p/e", "p/e/f"}));
    EXPECT_TRUE(client.calls.empty()) << "nobody was told of a rename";
}

TEST_F(EventsTest, ItemsMovedOutGo) {
    for (const char* name : {"p/a", "p/b", "p/c"}) folder.file(name);
    useAndScan();
    for (const char* name : {"a", "b", "c"}) rename(std::string("p/") + name, name);
    folder.file("p/n");
    const uint64_t first = lastId + 1;
    process({{kRenamed, "p/a"}, {kRenamed, "p/b"}, {kModified, "p/n"}, {kRenamed, "p/c"}});
    EXPECT_EQ(paths(), (Paths{"p", "p/n"}));
    EXPECT_EQ(cache->lastEventStreamEventId(), first + 3) << "the last one went under its own id";
}

TEST_F(EventsTest, ItemsMovedInAreNew) {
    useAndScan({{{"path", "p"}, {"includeContentsInRecentItems", true}}});
    folder.file("f");
    rename("f", "p/f");
    process({{kRenamed, "p/f"}});
    EXPECT_TRUE(has("p/f"));
    EXPECT_EQ(changes(), std::vector<int>{4});
    // The source is not in the index: also new.
    folder.file("p/g");
    process({{kRenamed, "p/unknown"}, {kRenamed, "p/g"}});
    EXPECT_TRUE(has("p/g"));
    EXPECT_EQ(changes(), (std::vector<int>{4, 4}));
}

TEST_F(EventsTest, MoveToWhereTheIncludeListSaysNothingRemoves) {
    folder.file("p/a.txt");
    useAndScan({{{"path", "p"},
                 {"ruleType", 1},
                 {"rules", {{{"pattern", "*.txt"}, {"patternType", 1}, {"fsItemType", 7}}}}}});
    ASSERT_TRUE(has("p/a.txt"));
    rename("p/a.txt", "p/a.bin");
    process({{kRenamed, "p/a.txt"}, {kRenamed, "p/a.bin"}});
    EXPECT_EQ(paths(), Paths{"p"});
    EXPECT_EQ(client.calls, Paths{"reload"});
}

// To where a rule excludes it, on the other hand, the item goes along.
TEST_F(EventsTest, KeepsItemThatMovesToAnExcludedName) {
    folder.file("p/a");
    useAndScan(
        {{{"path", "p"}, {"rules", {{{"pattern", "*~"}, {"patternType", 1}, {"fsItemType", 7}}}}}});
    rename("p/a", "p/a~");
    process({{kRenamed, "p/a"}, {kRenamed, "p/a~"}});
    EXPECT_EQ(paths(), (Paths{"p", "p/a~"}));
}

TEST_F(EventsTest, RenameOfCaseAloneOnADiskThatIgnoresIt) {
    auto ignoring = std::make_unique<NamesIgnoringCase>();
    ignoring->names = {{"name", "Name"}};
    FsEventHandler own(client, FSScanner::sharedInstance(), types, std::move(ignoring));
    folder.file("p/name");
    useAndScan();
    const fs_item_t* record = find(folder.at("p/name"));
    folder.file("p/Name");  // such a disk would find it under both
    own.processFsEvents(batch({{kRenamed, "p/name"}, {kRenamed, "p/Name"}}));
    EXPECT_EQ(find(folder.at("p/Name")), record);
    EXPECT_FALSE(has("p/name"));
    EXPECT_EQ(client.lastRenamed.fromInode, inodeOf(folder.at("p/name")));
}

TEST_F(EventsTest, NamesOnThisDisk) {
    folder.file("p/Name");
    const NamesOnDisk disk;
    const auto sensitive = disk.isCaseSensitive(folder.at("p/Name"));
    ASSERT_TRUE(sensitive);
    EXPECT_TRUE(sensitive.value()) << "temporary folders of Linux are";
    EXPECT_EQ(disk.nameOf(folder.at("p/nAME")).value(), "Name");
    EXPECT_FALSE(disk.nameOf(folder.at("p/other")));
    EXPECT_FALSE(disk.isCaseSensitive(folder.at("gone/x")));
}

TEST_F(EventsTest, PackagesAreUpdatedAndNeverEntered) {
    useAndScan({{{"path", "p"}, {"includeContentsInRecentItems", true}}});
    folder.file("p/x.app/in/f");
    process({{kModified | kFile, "p/x.app/in/f"}});
    ASSERT_TRUE(has("p/x.app"));
    EXPECT_EQ(find(folder.at("p/x.app"))->type, ITEM_BUNDLE);
    EXPECT_FALSE(has("p/x.app/in"));
    EXPECT_EQ(changes(), std::vector<int>{1}) << "whatever has happened in there";
    processFlags.processMetadata = true;
    process({{kRenamed | kDir, "p/x.app"}});
    EXPECT_EQ(client.calls, Paths{"update " + folder.at("p/x.app").path()});
    EXPECT_NE(find(folder.at("p/x.app"))->metadata, nullptr);
    // What is gone is no package any more.
    rename("p/x.app", "y.app");
    process({{kRemoved | kDir, "p/x.app"}});
    EXPECT_FALSE(has("p/x.app"));
}

TEST_F(EventsTest, MustScanReadsTheSubtreeAnew) {
    folder.file("p/d/old");
    folder.file("p/other");
    useAndScan();
    ::unlink(folder.at("p/d/old").c_str());
    ::unlink(folder.at("p/other").c_str());
    folder.file("p/d/e/new");
    process({{kMustScan | kFSEventStreamEventFlagKernelDropped, "p/d"}});
    EXPECT_EQ(paths(), (Paths{"p", "p/d", "p/d/e", "p/d/e/new", "p/other"}));
    EXPECT_EQ(client.calls, Paths{"clear " + folder.at("p/d").path()});
    process({{kMustScan, "p"}});
    EXPECT_EQ(paths(), (Paths{"p", "p/d", "p/d/e", "p/d/e/new"}));
}

// An include list says nothing of its own folder, so the folder is not read again.
TEST_F(EventsTest, KeepsFolderOfAnIncludeListEmptyAfterMustScan) {
    folder.file("p/a.txt");
    useAndScan({{{"path", "p"},
                 {"ruleType", 1},
                 {"rules", {{{"pattern", "*.txt"}, {"patternType", 1}, {"fsItemType", 7}}}}}});
    process({{kMustScan, "p"}});
    EXPECT_EQ(paths(), Paths{});
}

// The limit counts from the folder, but what an event brings may be one level deeper.
TEST_F(EventsTest, KeepsEntriesOfAFolderAtTheLimit) {
    useAndScan({{{"path", "p"}, {"limitSearchDepth", 1}}});
    folder.file("p/d/e/f");
    process({{kCreated, "p/d/e/f"}});
    EXPECT_FALSE(has("p/d"));
    process({{kCreated | kDir, "p/d/e"}});
    EXPECT_EQ(paths(), (Paths{"p", "p/d", "p/d/e", "p/d/e/f"}));
}

TEST_F(EventsTest, RulesAndFoldersToSkip) {
    use({{{"path", "p"},
          {"rules", {{{"pattern", "*~"}, {"patternType", 1}, {"fsItemType", 7}}}},
          {"excludedFolders", {{{"pattern", "skip"}, {"patternType", 0}, {"fsItemType", 2}}}}},
         {{"path", "p/nested"}, {"limitSearchDepth", 0}}});
    folder.file("p/skip/f");
    folder.file("p/d/skip/f");
    folder.file("p/f~");
    folder.file("p/nested/f~");
    folder.file("p/nested/d/f");
    folder.file("q");
    process({{kCreated, "p/skip/f"},
             {kCreated | kDir, "p/skip"},
             {kCreated, "p/d/skip/f"},
             {kCreated, "p/f~"},
             {kCreated, "p/nested/f~"},
             {kCreated, "p/nested/d/f"},
             {kCreated, "q"}});
    EXPECT_EQ(paths(), (Paths{"p", "p/nested", "p/nested/f~"}));
    EXPECT_FALSE(has("q"));
}

TEST_F(EventsTest, RightsOfAFolderMatterOnlyWhileItIsUnknown) {
    folder.file("p/d/f");
    useAndScan();
    folder.file("p/d/later");
    process({{kOwner | kDir, "p/d"}});
    EXPECT_FALSE(has("p/d/later")) << "it has been read";
    cache->removePath(folder.at("p/d"), 0);
    process({{kXattr | kDir, "p/d"}});
    EXPECT_TRUE(has("p/d/later"));
    if (geteuid() == 0) return;  // to whom no folder is barred
    chmod(folder.at("p/d").c_str(), 0);
    process({{kOwner | kDir, "p/d"}});
    EXPECT_FALSE(has("p/d/f"));
    chmod(folder.at("p/d").c_str(), 0700);
    process({{kOwner | kDir, "p/d"}});
    EXPECT_TRUE(has("p/d/f"));
}

TEST_F(EventsTest, RecentItemsByKindOfChange) {
    useAndScan({{{"path", "p"}, {"includeContentsInRecentItems", true}}});
    const std::vector<std::pair<uint32_t, std::vector<int>>> cases = {
        {kCreated, {1}},
        {kFSEventStreamEventFlagItemCloned | kRemoved, {1}},
        {kCreated | kRenamed | kRemoved, {4}},
        {kModified, {2}},
        {kMustScan | kDir, {2}},
    };
    for (const auto& [flags, expected] : cases) {
        cache->removePath(folder.at("p"), 0);
        folder.folder("p/x");
        rmdir(folder.at("p/x").c_str());
        flags& kDir ? folder.folder("p/x") : folder.file("p/x");
        process({{flags, "p/x"}});
        EXPECT_EQ(changes(), expected) << flags;
        ::unlink(folder.at("p/x").c_str());
    }
    useAndScan();
    folder.file("p/y");
    cache->removeRecentItemsBelowURL(folder.at("p"));
    process({{kCreated | kModified, "p/y"}});
    EXPECT_TRUE(changes().empty());
}

TEST_F(EventsTest, MountReadsTheProjectFolderAndUnmountRemoves) {
    folder.file("p/disk/f");
    use();
    process({{kMount | kDir, "p/disk"}});
    EXPECT_TRUE(has("p/disk/f"));
    client.calls.clear();
    process({{kUnmount | kDir, ""}});
    EXPECT_TRUE(has("p/disk/f")) << "a folder of the project is below it";
    process({{kUnmount | kDir, "p/disk"}});
    EXPECT_EQ(paths(), Paths{"p"});
    process({{kUnmount | kDir, "p"}});
    EXPECT_EQ(paths(), Paths{});
    EXPECT_TRUE(client.calls.empty()) << "it is no clearing";
}

// What is marked is the user's: it goes with its file, not with the index.
TEST_F(EventsTest, MarksGoWithTheirFilesAlone) {
    struct Marks : RecordingObserver {
        explicit Marks(const FileTypes& fileTypes) : paths(fileTypes) {}
        void updatePathCachesAfterRemovePath(const FileURL& url) override {
            paths.removePathIfGone(url);
        }
        PathCache paths;
    } marks(types);
    marks.marked = true;
    auto own = std::make_shared<Cache>(marks, types);
    marks.cache = own.get();
    for (const char* name : {"p/d/stays", "p/d/goes", "p/disk/f"})
        marks.paths.addURL(folder.file(name));
    use();
    client.cache = own;
    process({{kCreated | kDir, "p"}});
    ::unlink(folder.at("p/d/goes").c_str());
    process({{kMustScan | kDir, "p/d"}});
    EXPECT_TRUE(marks.paths.containsURL(folder.at("p/d/stays")));
    EXPECT_FALSE(marks.paths.containsURL(folder.at("p/d/goes")));
    rename("p/disk", "unmounted");
    folder.folder("p/disk");
    process({{kUnmount | kDir, "p/disk"}});
    EXPECT_TRUE(marks.paths.containsURL(folder.at("p/disk/f")));
    client.cache.reset();
}

TEST_F(EventsTest, LogFollowsOnePathIfTold) {
    useAndScan();
    folder.file("p/f");
    folder.file("p/g");
    const auto follows = [&](std::string_view path) {
        const LogOf log;
        process({{kCreated, "p/f"}, {kCreated, "p/g"}});
        return log.holds("Event path: '" + folder.at(path).path() + "'");
    };
    EXPECT_FALSE(follows("p/f"));
    std::string other = folder.at("p/G").path();
    handler.setDebugFsEventPath(other);
    EXPECT_TRUE(follows("p/g"));
    EXPECT_FALSE(follows("p/f"));
    handler.setDebugFsEventPath({});
    processFlags.debugFsEvents = true;
    EXPECT_TRUE(follows("p/f"));
    handler.setDebugFsEventPath(other);
    EXPECT_FALSE(follows("p/f"));
    processFlags.debugFsEvents = false;
}

// Nobody but the disk knows that it is gone; the next event on its folder tells.
TEST_F(EventsTest, KeepsWhatVanishedBeforeItWasLookedAt) {
    useAndScan();
    process({{kCreated | kFile, "p/short-lived"}});
    ASSERT_TRUE(has("p/short-lived"));
    EXPECT_EQ(find(folder.at("p/short-lived"))->inode, 0u);
    ClosingComparison(handler, client).process(batch({{kCreated | kFile, "p/other"}}));
    EXPECT_EQ(paths(), Paths{"p"});
}

TEST_F(EventsTest, WithoutAProjectNothingHappens) {
    folder.file("p/f");
    process({{kCreated, "p/f"}});
    client.cache = cache;
    process({{kCreated, "p/f"}, {kRenamed, "p/gone"}});
    EXPECT_EQ(cache->count(), 1u);
    client.cache.reset();
}

}  // namespace
