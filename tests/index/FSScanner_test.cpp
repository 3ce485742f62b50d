#include "index/FSScanner.h"

#include <dirent.h>
#include <fcntl.h>

#include <thread>

#include "datatypes/Project.h"
#include "index/IndexTestSupport.h"
#include "index/RuleSubject.h"
#include "index/scanProject.h"

namespace {

class FSScannerTest : public IndexTest {
  protected:
    void scan(const FileURL& url, const std::function<void(ScanRequest&)>& change = {}) {
        auto end = ReverseSemaphore::initWithCount(1);
        ScanRequest request{.projectSearchFolderURL = url, .cache = cache};
        request.projectFolderCountSemaphore = end;
        if (change) change(request);
        scanner.contentsOfDirectory(url, std::move(request));
        end->wait();
    }
    void scan(const std::function<void(ScanRequest&)>& change = {}) { scan(folder.url(), change); }
    bool has(const char* path) { return find(folder.at(path)) != nullptr; }

    FSScanner& scanner = FSScanner::sharedInstance();
};

TEST_F(FSScannerTest, DepthCountsLevelsBelowTheFolder) {
    folder.file("1/2/3/f");
    scan([](ScanRequest& request) { request.maxDepth = 0; });
    EXPECT_TRUE(has("1"));
    EXPECT_FALSE(has("1/2"));
    scan([](ScanRequest& request) { request.maxDepth = 1; });
    EXPECT_TRUE(has("1/2"));
    EXPECT_FALSE(has("1/2/3"));
    scan();
    EXPECT_TRUE(has("1/2/3/f"));
}

TEST_F(FSScannerTest, LinksAndPackagesAreNotEntered) {
    folder.file("real/f");
    folder.file("Tool.app/Contents");
    folder.link("link", "real");
    folder.link("broken", "nowhere");
    folder.link("loop", "loop");
    scan();
    EXPECT_EQ(find(folder.at("link"))->type, ITEM_FILE | ITEM_SYMLINK);
    EXPECT_EQ(find(folder.at("broken"))->type, ITEM_FILE | ITEM_SYMLINK);
    EXPECT_EQ(find(folder.at("loop"))->type, ITEM_FILE | ITEM_SYMLINK);
    EXPECT_FALSE(has("link/f"));
    EXPECT_EQ(find(folder.at("Tool.app"))->type, ITEM_BUNDLE);
    EXPECT_EQ(find(folder.at("Tool.app"))->dircontent, nullptr);
    EXPECT_FALSE(has("Tool.app/Contents"));

    processFlags.debugScan = true;
    const LogOf log;
    scan();
    EXPECT_TRUE(log.holds("Failed to stat '" + folder.at("loop").path() + "'"));
    EXPECT_FALSE(log.holds("Failed to stat '" + folder.at("broken").path()));
}

TEST_F(FSScannerTest, KeepsEmptyAndUnreadableFoldersThatRulesDrop) {
    folder.folder("empty");
    folder.folder("full");
    folder.file("full/f");
    folder.folder("closed");
    chmod(folder.at("closed").c_str(), 0);
    FolderRules rules;
    MatchingRule folders;
    folders.originalPattern = "*";
    folders.originalPatternType = kPatternGlob;
    folders.fileType = 2;
    folders.preprocess();
    rules.rules.push_back(std::move(folders));
    rules.rules.push_back(rules.rules.front());
    scan([&](ScanRequest& request) { request.rules = rules; });
    EXPECT_TRUE(has("empty"));
    EXPECT_TRUE(has("closed"));
    EXPECT_TRUE(has("full")) << "a component of its file's path";
    EXPECT_EQ(find(folder.at("full"))->type, ITEM_DIRECTORY);
    rules.foldersToSkip = rules.rules;
    cache->removePath(folder.url(), 0);
    scan([&](ScanRequest& request) { request.rules = rules; });
    EXPECT_FALSE(has("empty"));
}

TEST_F(FSScannerTest, FolderThatCannotBeOpenedEndsTheScan) {
    processFlags.debugScan = true;
    const LogOf log;
    scan(folder.at("gone"));
    scan(folder.file("file"));
    EXPECT_TRUE(log.holds("opendir(\"" + folder.at("gone").path() + "\") failed: "));
    EXPECT_EQ(cache->count(), 1u);
}

TEST_F(FSScannerTest, RootIsAnItemOrARecentOneIfAskedFor) {
    folder.file("f");
    scan([](ScanRequest& request) {
        request.maxDepth = 0;
        request.changeType = 4;
    });
    ASSERT_EQ(cache->recentItems().size(), 1u);
    EXPECT_EQ(cache->recentItems()[0].url, folder.url());
    EXPECT_EQ(cache->recentItems()[0].type, 2);
    cache->removePath(FileURL("/"), 0);
    scan(folder.folder("lonely"), [](ScanRequest& request) {
        request.includeRootItem = true;
        request.fsEventId = 6;
        request.changeType = 1;
    });
    EXPECT_TRUE(has("lonely"));
    EXPECT_EQ(cache->recentItems()[0].change, 1);
    EXPECT_EQ(cache->lastEventStreamEventId(), 6u);
}

TEST_F(FSScannerTest, RefreshComesEverySoManyEntriesAlsoForThoseLeftOut) {
    for (int i = 0; i < 25; i++) folder.file((i % 2 ? "a/" : "b/") + std::to_string(i));
    std::atomic<int> calls = 0;
    Relaxed<int64_t> scanned = 0, ignored = 0;
    FolderRules rules;
    MatchingRule all;
    all.originalPattern = "*";
    all.originalPatternType = kPatternGlob;
    all.preprocess();
    rules.rules.push_back(std::move(all));
    const auto counting = [&](ScanRequest& request) {
        request.rules = rules;
        request.performBlock = [&] { calls++; };
        request.every = 10;
        request.scanned = &scanned;
        request.ignored = &ignored;
    };
    scan(counting);
    EXPECT_EQ(scanned, 27);
    EXPECT_EQ(ignored, 27);
    EXPECT_EQ(calls, 0) << "Search mode is not there to be refreshed";
    scanner.setSearchModeActive(true);
    scan(counting);
    EXPECT_EQ(calls, 3) << "at 30, 40 and 50";
    scan([&](ScanRequest& request) {
        counting(request);
        request.performBlock = nullptr;
    });
    EXPECT_EQ(scanned, 54);
}

TEST_F(FSScannerTest, PathsLongerThanAPathMayBeAreReached) {
    const std::string name(200, 'd');
    int at = open(folder.url().c_str(), O_RDONLY | O_DIRECTORY);
    for (int depth = 0; depth < 40; depth++) {
        ASSERT_EQ(mkdirat(at, name.c_str(), 0700), 0);
        const int below = openat(at, name.c_str(), O_RDONLY | O_DIRECTORY);
        close(at);
        at = below;
    }
    close(openat(at, "end", O_CREAT | O_WRONLY, 0600));
    close(at);
    scan();
    FileURL url = folder.url();
    for (int depth = 0; depth < 40; depth++) url = url.appending(name);
    EXPECT_NE(find(url.appending("end")), nullptr);
}

TEST_F(FSScannerTest, FewFoldersAreOpenHoweverManyWait) {
    std::string path;
    for (int depth = 0; depth < 400; depth++) {
        path += "d/";
        folder.folder(path + "waits");
    }
    folder.file(path + "end");
    Relaxed<int64_t> scanned = 0, mostOpen = 0;
    scanner.setSearchModeActive(true);
    scan([&](ScanRequest& request) {
        request.performBlock = [&] {
            int64_t open = 0;
            DIR* handles = opendir("/proc/self/fd");
            while (readdir(handles)) open++;
            closedir(handles);
            if (open > mostOpen) mostOpen = open;
        };
        request.every = 1;
        request.scanned = &scanned;
    });
    EXPECT_NE(find(folder.at(path + "end")), nullptr);
    EXPECT_GT(mostOpen, 100);
    EXPECT_LT(mostOpen, 300);
}

TEST_F(FSScannerTest, AbortEndsTheScanAndWhatWaitsForIt) {
    for (int i = 0; i < 100; i++) folder.file(std::to_string(i) + "/a/b/f");
    std::atomic<bool> started = false;
    std::thread scanning([&] {
        scanner.setSearchModeActive(true);
        Relaxed<int64_t> scanned = 0;
        // Each refresh holds its job until the scan is to be ended.
        scan([&](ScanRequest& request) {
            request.performBlock = [&] {
                started = true;
                while (!scanner.isAborting()) std::this_thread::yield();
            };
            request.every = 1;
            request.scanned = &scanned;
        });
        EXPECT_LT(scanned, 400);
    });
    while (!started) std::this_thread::yield();
    scanner.abortScan();
    EXPECT_FALSE(scanner.isAborting());
    EXPECT_TRUE(scanner.scanDirectoryQ().isIdle());
    scanning.join();
}

TEST_F(FSScannerTest, ProjectIsScannedByItsFoldersAndTheGlobalRules) {
    OVUserDefaults::sharedInstance().setObject(
        {{{"pattern", ".*"}, {"patternType", 1}, {"fsItemType", 7}}}, "globalFolderRules");
    folder.file("in/.hidden");
    folder.file("in/deep/er/f");
    folder.file("out/f");
    Project project(nlohmann::json{
        {"folders",
         {{{"path", folder.at("in").path()}, {"limitSearchDepth", 1}, {"includeRoot", true}},
          {{"path", folder.at("in/deep").path()}},
          {{"path", folder.at("gone").path()}}}}});
    EXPECT_EQ(scanProject(scanner, project, {.cache = cache}), ScanEnd::complete);
    EXPECT_FALSE(cache->scanInProgress().value());
    EXPECT_TRUE(has("in/deep/er/f"));
    EXPECT_FALSE(has("in/.hidden"));
    EXPECT_FALSE(has("out"));
    const Relaxed<bool> abort = true;
    EXPECT_EQ(scanProject(scanner, project, {.cache = cache, .abortScan = &abort}),
              ScanEnd::stopped);
    EXPECT_EQ(scanProject(scanner, Project(), {.cache = cache}), ScanEnd::complete);
}

TEST_F(FSScannerTest, JobThatHangsIsLeftBehind) {
    folder.file("f");
    std::atomic<bool> hanging = false, answers = false;
    Relaxed<int64_t> scanned = 0;
    scanner.setSearchModeActive(true);
    const LogOf log;
    std::thread scanning([&] {
        scan([&](ScanRequest& request) {
            request.performBlock = [&] {
                hanging = true;
                while (!answers) std::this_thread::yield();
            };
            request.every = 1;
            request.scanned = &scanned;
        });
    });
    while (!hanging) std::this_thread::yield();
    const OperationQueue* queue = &scanner.scanDirectoryQ();
    scanner.abortScan();
    scanning.join();
    EXPECT_NE(&scanner.scanDirectoryQ(), queue);
    EXPECT_TRUE(log.holds("are left behind"));
    cache->removePath(FileURL("/"), 0);
    scan();
    EXPECT_TRUE(has("f"));
    answers = true;
    while (!queue->isIdle()) std::this_thread::yield();
    scan();  // forgets the queue
}

// Long after the first job of the last folder is over: what is there is a part all the same.
TEST_F(FSScannerTest, ScanThatIsEndedNearItsEndIsNotComplete) {
    folder.file("a/f");
    const Project project(nlohmann::json{{"folders", {{{"path", folder.url().path()}}}}});
    std::thread scanning, aborting;
    cache->performBlockReadOnly([&](const ReadSection&) {  // no scan ends meanwhile
        scanning = std::thread(
            [&] { EXPECT_EQ(scanProject(scanner, project, {.cache = cache}), ScanEnd::aborted); });
        while (!cache->scanInProgress().value()) std::this_thread::yield();
        while (scanner.scanDirectoryQ().isIdle()) std::this_thread::yield();
        aborting = std::thread([&] { scanner.abortScan(); });
        while (!scanner.isAborting()) std::this_thread::yield();
    });
    scanning.join();
    aborting.join();
}

TEST(RuleSubject, BeginsWithASlashAlsoInTheRoot) {
    RuleSubject inRoot("/", "/"), below("/", "/usr"), own("/a/b", "/a/b");
    inRoot.setName("bin");
    EXPECT_EQ(inRoot.path(), u"/bin");
    below.setName("e\u0301");
    EXPECT_EQ(below.path(), u"/usr/\u00E9");
    EXPECT_EQ(below.lastPathComponentOffset(), 5u);
    below.setName("b\xFF");
    EXPECT_EQ(below.path(), u"/usr/b\uFFFD");
    own.setName("c");
    EXPECT_EQ(own.path(), u"/c");
}

TEST_F(FSScannerTest, SubdirectoriesAreListedByKind) {
    folder.folder("dir");
    folder.folder(".dots");
    folder.folder("Tool.app");
    folder.file("file");
    folder.link("toDir", "dir");
    folder.link("broken", "nowhere");
    Relaxed<bool> abort = true;
    const auto list = [&](bool hide, uint8_t visible, bool bundles) {
        auto names = FSScanner::subdirectoriesOfPath(
            folder.url(),
            {.hideDotFiles = hide, .visibleItemTypes = visible, .treatBundlesAsFiles = bundles},
            types, abort);
        std::sort(names.begin(), names.end());
        std::string text;
        for (const auto& name : names) text += name + " ";
        return text;
    };
    EXPECT_EQ(list(true, 2, true), "dir toDir ");
    EXPECT_EQ(list(false, 2, false), ".dots Tool.app dir toDir ");
    EXPECT_EQ(list(true, 1, true), "Tool.app file ");
    EXPECT_FALSE(abort);
    EXPECT_TRUE(FSScanner::subdirectoriesOfPath(
                    folder.at("gone"),
                    {.hideDotFiles = false, .visibleItemTypes = 3, .treatBundlesAsFiles = true},
                    types, abort)
                    .empty());
}

}  // namespace
