// A scan takes records in by batches, with pointers kept from before. Whatever it does must come
// out as if each entry had been added by its path.
#include <dirent.h>

#include <atomic>
#include <thread>

#include "index/FSScanner.h"
#include "index/IndexTestSupport.h"
#include "index/Metadata.h"
#include "index/RandomTree.h"
#include "index/RuleSubject.h"
#include "index/exclusionStatus.h"
#include "util/Unicode.h"

namespace {

MatchingRule rule(const char* pattern, uint8_t patternType, uint8_t fileType, uint8_t type) {
    MatchingRule made;
    made.originalPattern = pattern;
    made.originalPatternType = patternType;
    made.fileType = fileType;
    made.type = type;
    made.preprocess();
    return made;
}

FolderRules usualRules() {
    FolderRules rules;
    for (const char* pattern : {".*", "*.framework"})
        rules.foldersToSkip.push_back(rule(pattern, kPatternGlob, 2, kRuleExclude));
    rules.foldersToSkip.push_back(rule("node_modules", kPatternExact, 2, kRuleExclude));
    for (const char* pattern : {".*", "*~", "~*"})
        rules.rules.push_back(rule(pattern, kPatternGlob, 7, kRuleExclude));
    return rules;
}

FolderRules includeRules() {
    FolderRules rules;
    rules.rules.push_back(rule("*[0-9]", kPatternGlob, 7, kRuleInclude));
    rules.rules.push_back(rule("/src*", kPatternGlob, 7, kRuleInclude));
    rules.rules.push_back(rule("\u00E9t", kPatternRegexp, 7, kRuleInclude));
    rules.wantUnmatchedItems = false;
    return rules;
}

class ScanEqualityTest : public IndexTest {
  protected:
    void scan(const FolderRules& rules, std::optional<int64_t> maxDepth = {}, uint64_t id = 0) {
        auto end = ReverseSemaphore::initWithCount(1);
        FSScanner::sharedInstance().contentsOfDirectory(folder.url(),
                                                        {.projectSearchFolderURL = folder.url(),
                                                         .cache = cache,
                                                         .maxDepth = maxDepth,
                                                         .rules = rules,
                                                         .fsEventId = id,
                                                         .projectFolderCountSemaphore = end});
        end->wait();
    }
    /// The same with nothing but addPath, and in another order.
    void addOneByOne(Cache& plain, const FileURL& directory, const FolderRules& rules,
                     std::optional<int64_t> maxDepth) {
        DIR* entries = opendir(directory.c_str());
        bool any = false;
        while (const dirent* entry = entries ? readdir(entries) : nullptr) {
            const std::string name = entry->d_name;
            if (name == "." || name == "..") continue;
            any = true;
            const FileURL url = directory.appending(name);
            struct stat status = {};
            lstat(url.c_str(), &status);
            const bool bundle = S_ISDIR(status.st_mode) && url.pathExtension() == "app";
            uint8_t type = bundle                    ? ITEM_BUNDLE
                           : S_ISDIR(status.st_mode) ? ITEM_DIRECTORY
                                                     : ITEM_FILE;
            if (S_ISLNK(status.st_mode)) type |= ITEM_SYMLINK;
            const std::u16string subject = ruleText(url.path().substr(folder.url().path().size()));
            const size_t offset = subject.rfind(u'/') + 1;
            if (type == ITEM_DIRECTORY && (!maxDepth || *maxDepth >= 1) &&
                exclusionStatus(subject, offset, 2, rules.foldersToSkip) != kStatusExcluded)
                addOneByOne(plain, url, rules,
                            maxDepth ? std::optional(*maxDepth - 1) : std::nullopt);
            const auto wanted = exclusionStatus(subject, offset, type, rules.rules);
            if (wanted == kStatusIncluded || (wanted == kStatusNoRule && rules.wantUnmatchedItems))
                add(plain, url, type, entry->d_ino);
        }
        if (entries) closedir(entries);
        if (!any) add(plain, directory, ITEM_DIRECTORY, inodeOf(directory));
    }
    void add(Cache& plain, const FileURL& url, uint8_t type, uint64_t inode) {
        struct statx status;
        const bool found = processFlags.processMetadata && statItem(url.c_str(), status);
        plain.addPath(url, {.ofType = type,
                            .inode = inode,
                            .metadata = metadataFromStatBuf(found ? &status : nullptr)});
    }
    std::vector<std::string> plainDump(const FolderRules& rules, std::optional<int64_t> maxDepth) {
        Cache plain(observer, types);
        observer.cache = &plain;
        addOneByOne(plain, folder.url(), rules, maxDepth);
        EXPECT_EQ(checkTree(plain), "");
        auto lines = dump(plain, folder.url());
        observer.cache = cache.get();
        return lines;
    }
};

TEST_F(ScanEqualityTest, BatchesAndSingleItemsMakeTheSameTree) {
    for (unsigned seed = 1; seed <= 8; seed++) {
        const TemporaryFolder own;
        const RandomTree tree(folder, seed);  // grows on with each seed
        processFlags.processMetadata = seed % 2 == 0;
        for (const FolderRules& rules : {FolderRules{}, usualRules(), includeRules()})
            for (const std::optional<int64_t> depth :
                 {std::optional<int64_t>(), std::optional<int64_t>(0), std::optional<int64_t>(2)}) {
                cache->removePath(FileURL("/"), 0);
                scan(rules, depth);
                ASSERT_EQ(dump(*cache, folder.url()), plainDump(rules, depth)) << seed;
                ASSERT_EQ(checkTree(*cache), "");
                const uint64_t count = cache->count();
                scan(rules, depth, 3);  // all is there already
                ASSERT_EQ(cache->count(), count);
            }
        EXPECT_EQ(cache->lastEventStreamEventId(), 3u);
    }
}

// Items come and go while the scan runs, so that the pointers it keeps go bad again and again.
TEST_F(ScanEqualityTest, TreeStaysWholeWhileOthersChangeAndReadIt) {
    for (unsigned seed = 20; seed < 26; seed++) const RandomTree tree(folder, seed);
    const LogOf log;  // of children that are added to files
    std::atomic<bool> over = false;
    std::thread reader([&] {
        while (!over) EXPECT_EQ(checkTree(*cache), "");
    });
    std::thread writer([&] {
        std::mt19937 random(1);
        while (!over) {
            const std::string name = random() % 2 ? "src" : "UPPER";
            const FileURL url = folder.at(name + std::to_string(random() % 9));
            if (random() % 2)
                cache->removePath(url, 0);
            else
                cache->movePath(url, folder.at("moved" + std::to_string(random() % 4)), {});
            cache->addPath(url.appending("a b"), {.ofType = ITEM_FILE});
        }
    });
    for (int i = 0; i < 30; i++) scan(i % 2 ? FolderRules{} : usualRules());
    over = true;
    reader.join();
    writer.join();
    cache->removePath(FileURL("/"), 0);
    scan({});
    EXPECT_EQ(dump(*cache, folder.url()), plainDump({}, {}));
}

TEST_F(ScanEqualityTest, LargeFolderArrivesInParts) {
    for (int i = 0; i < 9'000; i++)
        (void)mknod(folder.at(std::to_string(i)).c_str(), S_IFREG | 0600, 0);
    scan({});
    EXPECT_EQ(dump(*cache, folder.url()).size(), 9'001u);
    EXPECT_EQ(find(folder.url())->dircontent->capacity, 16'384u);
}

TEST_F(ScanEqualityTest, EventsOfAFolderReachItsBatch) {
    folder.file("sub/f");
    scan({}, {}, 42);
    EXPECT_EQ(cache->lastEventStreamEventId(), 42u);
    EXPECT_NE(find(folder.at("sub/f")), nullptr);
}

// The records of a batch that came too late are given up, and with them what points at them.
TEST_F(ScanEqualityTest, HintAtARecordThatWasNotTakenIsNotFollowed) {
    folder.file("sub/f");
    const ItemPool::Borrowed lane = cache->pool().take();
    ScanBatch outer{.folder = folder.url()};
    fs_item_t* record =
        outer.add(*lane, {.name = "sub", .type = ITEM_DIRECTORY, .inode = 1, .withMap = true});
    ScanBatch inner{.folder = folder.at("sub"),
                    .folderItem = record,
                    .structureVersion = cache->structureVersion()};
    inner.add(*lane, {.name = "f", .type = ITEM_FILE, .inode = 2, .withMap = false});
    inner.makeMap(*lane);
    fs_item_t* present = cache->addPath(folder.at("sub"), {.ofType = ITEM_DIRECTORY}).item;
    cache->addBatch(std::move(outer));
    cache->addBatch(std::move(inner));
    ASSERT_NE(find(folder.at("sub/f")), nullptr);
    EXPECT_EQ(find(folder.at("sub/f"))->parent, present);
}

TEST_F(ScanEqualityTest, BatchesWaitForASearchAndAreThereAtTheEnd) {
    folder.file("f");
    std::atomic<bool> read = false;
    Relaxed<int64_t> scanned = 0;
    auto end = ReverseSemaphore::initWithCount(1);
    FSScanner& scanner = FSScanner::sharedInstance();
    scanner.setSearchModeActive(true);
    std::thread scanning;
    cache->performBlockReadOnly([&](const ReadSection&) {
        scanning = std::thread([&] {
            scanner.contentsOfDirectory(folder.url(), {.projectSearchFolderURL = folder.url(),
                                                       .cache = cache,
                                                       .performBlock = [&] { read = true; },
                                                       .every = 1,
                                                       .scanned = &scanned,
                                                       .projectFolderCountSemaphore = end});
        });
        while (!read) std::this_thread::yield();  // the job does not wait for this section
        EXPECT_EQ(cache->count(), 1u);
    });
    scanning.join();
    end->wait();
    EXPECT_NE(find(folder.at("f")), nullptr);
}

}  // namespace
