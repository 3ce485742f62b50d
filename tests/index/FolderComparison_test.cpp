#include "index/FolderComparison.h"

#include "index/DirectoryOnDisk.h"
#include "index/EventsTestSupport.h"
#include "index/RandomChanges.h"
#include "util/settings/OVUserDefaults.h"

namespace {

using json = nlohmann::json;

json rules(const char* pattern, int type = 7) {
    return {{{"pattern", pattern}, {"patternType", 1}, {"fsItemType", type}}};
}

class FolderComparisonTest : public EventsTest {
  protected:
    ~FolderComparisonTest() override { client.cache.reset(); }

    /// As "-path", "+path" or both with "*", below the test's folder.
    Paths compare(std::initializer_list<std::pair<const char*, TouchedFolders::Depth>> touched) {
        TouchedFolders folders;
        for (const auto& [path, depth] : touched) folders.add(folder.at(path), depth);
        FolderComparison comparison(*cache, *client.project);
        Paths found;
        for (const Difference& each : comparison.differences(folders))
            found.push_back((each.isOther  ? "*"
                             : each.remove ? "-"
                                           : "+") +
                            each.url.path().substr(folder.url().path().size() + 1) +
                            (each.isOther && each.create ? "+" : ""));
        return found;
    }
    Paths compare(const char* path, TouchedFolders::Depth depth = kEntries) {
        return compare({{path, depth}});
    }
    int settle(std::initializer_list<Event> events) {
        return ClosingComparison(handler, client).process(batch(events));
    }
    static constexpr auto kEntries = TouchedFolders::Depth::entries;
    static constexpr auto kAsRead = TouchedFolders::Depth::asRead;
    static constexpr auto kSubtree = TouchedFolders::Depth::subtree;
    static constexpr uint32_t kTouched = kFSEventStreamEventFlagItemInodeMetaMod | kDir;
};

TEST_F(FolderComparisonTest, NamesKindsAndInodes) {
    for (const char* path : {"p/same", "p/gone", "p/other", "p/kind", "p/d/f", "p/e/f"})
        folder.file(path);
    folder.link("p/link", "d");
    useAndScan();
    EXPECT_EQ(compare("p", kSubtree), Paths{});
    for (const char* path : {"p/gone", "p/kind"}) ::unlink(folder.at(path).c_str());
    rename("p/other", "kept");  // so that its number is not given again
    rename("p/d", "d");
    folder.file("p/other");
    folder.file("p/kind/f");
    folder.file("p/d/f");
    folder.file("p/new");
    folder.file("p/e/new");
    EXPECT_EQ(compare("p"), (Paths{"*p/d+", "-p/gone", "*p/kind+", "+p/new", "*p/other+"}));
    EXPECT_EQ(compare("p/e"), Paths{"+p/e/new"});
    EXPECT_EQ(compare("p/d/f"), Paths{"*p/d+"}) << "found on the way";
    EXPECT_EQ(compare("p/gone/deeper"), Paths{"-p/gone"});
    EXPECT_EQ(compare("q"), Paths{});
    EXPECT_GT(settle({{kTouched, "p"}, {kTouched, "p/e"}}), 0);
    EXPECT_EQ(compare("p", kSubtree), Paths{});
    EXPECT_EQ(paths(), (Paths{"p", "p/d", "p/d/f", "p/e", "p/e/f", "p/e/new", "p/kind", "p/kind/f",
                              "p/link", "p/new", "p/other", "p/same"}));
}

TEST_F(FolderComparisonTest, ProjectFoldersThemselves) {
    folder.file("p/f");
    folder.file("p/n/g~");
    folder.file("p/n/h");
    useAndScan({{{"path", "p"}, {"rules", rules("*~")}}, {{"path", "p/n"}}});
    ASSERT_TRUE(has("p/n/g~"));
    EXPECT_EQ(compare("p", kSubtree), Paths{});
    // Read anew as part of the outer folder, the inner one has to come back by itself.
    EXPECT_GT(settle({{kMustScan | kDir, "p"}}), 0);
    EXPECT_TRUE(has("p/n/g~"));
    rename("p", "away");
    EXPECT_EQ(compare("p"), Paths{"-p"});
    settle({{kRemoved | kDir, "p"}});
    EXPECT_EQ(paths(), Paths{});
    rename("away", "p");
    settle({{kTouched, "p"}});
    EXPECT_EQ(paths(), (Paths{"p", "p/f", "p/n", "p/n/g~", "p/n/h"}));
    cache->removePath(folder.at("p/n"), 0);
    EXPECT_EQ(compare("p", kSubtree), (Paths{"+p/n/g~", "+p/n/h"}));
}

// What the rules refuse is in the index as long as something in it is wanted.
TEST_F(FolderComparisonTest, FoldersThatTheRulesRefuse) {
    folder.file("p/a/b/x.c");
    folder.file("p/a/b/y.h");
    useAndScan({{{"path", "p"}, {"ruleType", 1}, {"rules", rules("*.c")}}});
    EXPECT_EQ(compare("p", kSubtree), Paths{});
    ::unlink(folder.at("p/a/b/x.c").c_str());
    EXPECT_EQ(settle({{kTouched, "p/a/b"}}), 3) << "one for each level";
    EXPECT_EQ(paths(), Paths{"p"});
    folder.file("p/a/b/z.c");
    EXPECT_EQ(compare("p"), Paths{}) << "nobody has touched what is below";
    EXPECT_EQ(compare("p/a/b"), Paths{"+p/a/b/z.c"});
    EXPECT_EQ(compare("p/a", kAsRead), Paths{"+p/a/b/z.c"}) << "no event reads it";
    // The same tree under another name, by one event that says nothing to an include list.
    settle({{kTouched, "p/a/b"}});
    rename("p/a", "p/c");
    settle({{kRenamed | kDir, "p/a"}, {kRenamed | kDir, "p/c"}});
    EXPECT_EQ(paths(), (Paths{"p", "p/c", "p/c/b", "p/c/b/z.c"}));
    settle({{kMustScan | kDir, "p"}});
    EXPECT_EQ(paths(), (Paths{"p", "p/c", "p/c/b", "p/c/b/z.c"}));
}

TEST_F(FolderComparisonTest, WhatEventsBringBeyondAScanGoes) {
    folder.file("p/a");
    folder.file("p/m/n/f");
    useAndScan({{{"path", "p"}, {"limitSearchDepth", 1}, {"rules", rules("*~")}}});
    ASSERT_FALSE(has("p/m/n/f"));
    settle({{kCreated | kDir, "p/m/n"}});
    EXPECT_TRUE(has("p/m/n"));
    EXPECT_FALSE(has("p/m/n/f")) << "deeper than the limit";
    rename("p/a", "p/a~");
    settle({{kRenamed, "p/a"}, {kRenamed, "p/a~"}});
    EXPECT_FALSE(has("p/a~")) << "excluded";
    folder.file("p/x.app~/f");
    folder.file("p/d/e/f");
    rename("p/d", "p/m/d");
    settle({{kRenamed | kDir, "p/m/d"}});
    EXPECT_EQ(paths(), (Paths{"p", "p/m", "p/m/d", "p/m/n"}));
}

// None of these is told: no event could put it right.
TEST_F(FolderComparisonTest, KeepsWhatEventsAndScansDisagreeOn) {
    OVUserDefaults::sharedInstance().setObject(rules("*.o"), "globalFolderRules");
    folder.folder("p/refused~");
    folder.file("p/skip/f");
    folder.folder("inc");
    folder.file("inc/x.o");
    folder.file("p/n/f.x");
    const json projectFolders = {
        {{"path", "p"}, {"excludedFolders", rules("skip", 2)}, {"rules", rules("*~")}},
        {{"path", "p/n"}, {"rules", rules("*.x")}},
        {{"path", "inc"}, {"ruleType", 1}, {"rules", rules("*.o")}}};
    useAndScan(projectFolders);
    folder.link("p/l", "nowhere");
    process({{kCreated, "p/l"}});
    const std::initializer_list<std::pair<const char*, TouchedFolders::Depth>> all = {
        {"p", kSubtree}, {"inc", kSubtree}, {"p/refused~", kSubtree}, {"p/skip", kSubtree}};
    const Paths disagreed = {"p/refused~", "p/skip", "p/n/f.x", "inc/x.o"};
    EXPECT_EQ(compare(all), Paths{});
    for (const std::string& path : disagreed) {
        EXPECT_TRUE(has(path)) << path;
        cache->removePath(folder.at(path), 0);
    }
    EXPECT_EQ(compare(all), Paths{});
}

TEST_F(FolderComparisonTest, FoldersWithoutRights) {
    if (geteuid() == 0) GTEST_SKIP() << "no folder is barred to root";
    folder.file("p/d/f");
    useAndScan();
    chmod(folder.at("p/d").c_str(), 0);
    EXPECT_EQ(compare("p/d"), Paths{"-p/d/f"});
    EXPECT_EQ(compare("p"), Paths{});
    cache->removePath(folder.at("p/d"), 0);
    EXPECT_EQ(compare("p"), Paths{}) << "no event adds it";
    chmod(folder.at("p/d").c_str(), 0700);
    EXPECT_EQ(compare("p"), Paths{"+p/d"});
}

TEST_F(FolderComparisonTest, OnlyWhatWasTouchedIsARecentItem) {
    useAndScan({{{"path", "p"},
                 {"ruleType", 1},
                 {"includeContentsInRecentItems", true},
                 {"rules", rules("*.c")}}});
    folder.file("p/a.c");
    folder.file("p/d/b.c");
    settle({{kTouched, "p"}, {kMustScan | kDir, "p/d"}});
    ASSERT_TRUE(has("p/d/b.c"));
    ASSERT_EQ(cache->recentItems().size(), 1u);
    EXPECT_EQ(cache->recentItems()[0].url, folder.at("p/a.c"));
}

TEST_F(FolderComparisonTest, WaitsForTheEndOfAFirstScan) {
    useAndScan();
    ClosingComparison closing(handler, client);
    folder.file("p/f");
    cache->scanInProgress().set(true);
    closing.process(batch({{kTouched, "p"}}));
    EXPECT_FALSE(has("p/f"));
    cache->scanInProgress().set(false);
    closing.process(batch({{kTouched, "q"}}));
    EXPECT_TRUE(has("p/f"));
}

TEST_F(FolderComparisonTest, OwnChangesAreLeftToThoseWhoMakeThem) {
    useAndScan();
    folder.file("p/f");
    EXPECT_EQ(settle({{kCreated | kFSEventStreamEventFlagOwnEvent, "p/f"}}), 0);
    EXPECT_FALSE(has("p/f"));
}

// The two do not agree on what a package is, so that no round brings an end.
TEST_F(FolderComparisonTest, EndsWhereNothingHelps) {
    struct NoPackages : AppPackages {
        bool isFilePackageAtPath(const FileURL&) const override { return false; }
    } none;
    folder.file("p/f");
    useAndScan();
    FsEventHandler other(client, FSScanner::sharedInstance(), none);
    folder.file("p/x.app/f");
    const LogOf log;
    EXPECT_EQ(ClosingComparison(other, client).process(batch({{kTouched, "p"}})),
              ClosingComparison::kMaxRounds);
    EXPECT_TRUE(log.holds("differs from the disk again and again"));
    EXPECT_TRUE(has("p/f"));
}

/// What is in the index, or in that of a fresh scan, but for what the two may disagree on.
class StormTest : public FolderComparisonTest {
  protected:
    Paths agreed(Cache& of) const {
        std::map<std::string, std::string> lines;
        of.performBlockReadOnly([&](const ReadSection& section) {
            for (const fs_item_t* item : of.items(section)) {
                const FileURL url = fs_item_url(item);
                if (url == folder.at("p") || !url.hasPrefix(folder.at("p"))) continue;
                if (item->type == ITEM_DIRECTORY && item->nameView() == "skip") continue;
                lines[url.path()] = " " + std::to_string(item->type & ~ITEM_SYMLINK) + " " +
                                    std::to_string(item->inode);
            }
        });
        // From below: what holds nothing but what is disputed is so itself.
        for (auto line = lines.end(); line != lines.begin();) {
            const auto at = --line;
            const auto next = std::next(at);
            const bool holdsMore = next != lines.end() && next->first.starts_with(at->first + "/");
            if (!holdsMore && isDisputed(FileURL(at->first))) line = lines.erase(at);
        }
        Paths all;
        for (const auto& [path, rest] : lines)
            all.push_back(path.substr(folder.url().path().size()) + rest);
        return all;
    }
    /// A folder that the rules refuse, and that is empty or holds one that is or that is skipped.
    bool isDisputed(const FileURL& url) const {
        const std::string_view name = url.lastPathComponent();
        const auto onDisk = statusOnDisk(url);
        return onDisk && onDisk->type == ITEM_DIRECTORY && name != "x.app" &&
               (name.ends_with('~') || !name.ends_with(".c")) && holdsDisputed(url);
    }
    static bool holdsDisputed(const FileURL& url) {
        const DirectoryOnDisk directory(url);
        if (directory.entries().empty()) return true;
        for (const auto& each : directory.entries())
            if (each.type == ITEM_DIRECTORY && each.name != "x.app" &&
                (each.name == "skip" || holdsDisputed(url.appending(each.name))))
                return true;
        return false;
    }

    Paths fresh() {
        auto scanned = std::make_shared<Cache>(observer, types);
        observer.cache = scanned.get();
        EXPECT_EQ(scanProject(FSScanner::sharedInstance(), *client.project, {.cache = scanned}),
                  ScanEnd::complete);
        observer.cache = cache.get();
        return agreed(*scanned);
    }
};

// Another first seed can be given in the environment, for longer storms.
TEST_F(StormTest, IndexEqualsAFreshScanAfterEachBatch) {
    const json skipping = rules("skip", 2);
    const std::vector<json> projects = {
        {{{"path", "p"}}},
        {{{"path", "p"}, {"rules", rules("*~")}, {"excludedFolders", skipping}}},
        {{{"path", "p"}, {"ruleType", 1}, {"rules", rules("*.c")}, {"excludedFolders", skipping}}},
        {{{"path", "p"}, {"limitSearchDepth", 1}, {"rules", rules("*~")}}, {{"path", "p/a"}}},
    };
    const char* given = std::getenv("TROVAST_STORM_SEED");
    const unsigned first = given ? static_cast<unsigned>(std::atoi(given)) : 1;
    for (unsigned seed = first; seed < first + 5; seed++)
        for (const json& project : projects) {
            RandomChanges changes(folder, seed);
            for (int i = 0; i < 60; i++) changes.change();
            cache->removePath(folder.at("p"), 0);
            useAndScan(project);
            ClosingComparison closing(handler, client);
            for (int round = 0; round < 10; round++) {
                for (unsigned n = changes.below(20); n > 0; n--) changes.change();
                closing.process(changes.lossyBatch(lastId));
                ASSERT_EQ(checkTree(*cache), "") << "seed " << seed;
                ASSERT_EQ(agreed(*cache), fresh())
                    << "seed " << seed << ", round " << round << ", " << project.dump();
            }
        }
}

}  // namespace
