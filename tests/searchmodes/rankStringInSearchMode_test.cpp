#include "searchmodes/rankStringInSearchMode.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "platform/FileTypes.h"
#include "searchmodes/RegexSearch.h"
#include "searchmodes/itemComparators.h"
#include "searchmodes/rowComparison.h"
#include "support/LiteralRanking.h"
#include "support/PlainCache.h"

namespace {

class Ranking : public testing::Test {
  protected:
    struct Found {
        std::optional<match_array_t> rows;
        int64_t total = 0;
        std::vector<std::string> names() const {
            std::vector<std::string> names;
            for (const match_ptr& row : *rows) names.emplace_back(row->item->nameView());
            return names;
        }
    };
    Found rank(const RankRequest& request) {
        Found found;
        cache_.cache->performBlockReadOnly([&](const ReadSection& section) {
            found.rows = rankStringInSearchMode(section, *cache_.cache, request, found.total);
        });
        return found;
    }
    std::string compare(const RankRequest& request) {
        std::string difference;
        cache_.cache->performBlockReadOnly([&](const ReadSection& section) {
            int64_t total = 0;
            const auto rows = rankStringInSearchMode(section, *cache_.cache, request, total);
            difference =
                differenceOf(LiteralRanking(section, *cache_.cache, request), *rows, total);
        });
        return difference;
    }
    void addRandomItems(int count) {
        const std::string pieces[] = {"a",         "b", "Ab", "-",  "_", ".", " ", "main", "é",
                                      "u\xCC\x88", "ß", "ſ",  "東", "😀", "^", "x", "B",    "\xFF"};
        std::vector<std::string> folders{"/r"};
        cache_.add("/r", ITEM_DIRECTORY);
        for (int i = 0; i < count; i++) {
            std::string name;
            for (size_t n = 1 + random_() % (random_() % 50 ? 6 : 60); n > 0; n--)
                name += pieces[random_() % std::size(pieces)];
            if (name == "." || name == "..") continue;
            name.resize(std::min<size_t>(name.size(), 255));
            const std::string path = folders[random_() % folders.size()] + "/" + name;
            constexpr uint8_t kTypes[] = {ITEM_FILE, ITEM_FILE, ITEM_DIRECTORY, ITEM_BUNDLE,
                                          ITEM_FILE | ITEM_SYMLINK};
            const uint8_t type = kTypes[random_() % std::size(kTypes)];
            const bool isNew = cache_.add(path, type);
            if (isNew && type == ITEM_DIRECTORY && path.size() < 600) folders.push_back(path);
        }
    }
    PlainCache cache_;
    std::mt19937 random_{42};
};

TEST_F(Ranking, GivesWhatThePlainestWayGives) {
    addRandomItems(10500);
    const std::u16string searches[] = {
        u"a",      u"ab", u"aB",   u"main", u"b a",         u"é",    u"ü m",
        u"s",      u"ſ",  u"x.",   u"東",   u"😀",           u"BB",   u"zz",
        u"e",      u"^",  u"abab", u"/r/a", u"a b x m n i", u"\\-a", u"a a b b x x m m n",
        u"maiN-b", u"r a"};
    for (const std::u16string& search : searches)
        for (const bool filenameOnly : {true, false})
            for (const bool ignoreDiacritics : {false, true})
                for (const uint64_t limit :
                     {uint64_t{10}, filenameOnly == ignoreDiacritics ? 300 : kNoResultLimit}) {
                    RankRequest request{.searchString = ignoreDiacritics
                                                            ? stringByRemovingDiacritics(search)
                                                            : search};
                    request.filenameOnly = filenameOnly;
                    request.ignoreDiacritics = ignoreDiacritics;
                    request.numberOfThreads = 1 + limit % 4;
                    request.limit = limit;
                    EXPECT_EQ(compare(request), "")
                        << toUtf8(search) << (filenameOnly ? " names" : " paths")
                        << (ignoreDiacritics ? " without diacritics" : "") << " limit " << limit;
                }
}

TEST_F(Ranking, DoesNotDependOnTheNumberOfWorkers) {
    addRandomItems(21000);
    for (const unsigned threads : {1u, 2u, 3u, 4u})
        for (const bool filenameOnly : {true, false}) {
            RankRequest request{.searchString = u"bm"};
            request.filenameOnly = filenameOnly;
            request.numberOfThreads = threads;
            EXPECT_EQ(compare(request), "") << threads << " workers";
        }
}

TEST_F(Ranking, ShowsTheKindsThatAreWanted) {
    cache_.add("/x", ITEM_DIRECTORY);
    cache_.add("/x/xfile.c", ITEM_FILE);
    cache_.add("/x/xapp", ITEM_BUNDLE);
    cache_.add("/x/xlink", ITEM_FILE | ITEM_SYMLINK);
    using Names = std::vector<std::string>;
    auto shown = [&](bool files, bool directories, bool bundlesAsFiles) {
        auto names = rank({.searchString = u"x",
                           .showFiles = files,
                           .showDirectories = directories,
                           .bundlesAsFiles = bundlesAsFiles})
                         .names();
        std::sort(names.begin(), names.end());
        return names;
    };
    EXPECT_EQ(shown(true, true, true), (Names{"x", "xapp", "xfile.c", "xlink"}));
    EXPECT_EQ(shown(true, false, true), (Names{"xapp", "xfile.c", "xlink"}));
    EXPECT_EQ(shown(true, false, false), (Names{"xfile.c", "xlink"}));
    EXPECT_EQ(shown(false, true, false), (Names{"x", "xapp", "xlink"}));
    RankRequest filtered{.searchString = u"x"};
    filtered.extensionFilter = {"c"};
    EXPECT_EQ(rank(filtered).names(), Names{"xfile.c"});
}

TEST_F(Ranking, AsksThePathFilterForEachItem) {
    struct OnlyBelowA : ItemPathFilter {
        bool hasRules() const override { return true; }
        bool isPathExcluded(const FileURL& path) const override {
            return !path.hasPrefix(FileURL("/a"));
        }
    };
    for (const char* path : {"/a", "/b"}) cache_.add(path, ITEM_DIRECTORY);
    for (const char* path : {"/a/x", "/b/x"}) cache_.add(path, ITEM_FILE);
    RankRequest request{.searchString = u"x"};
    request.pathFilter = std::make_shared<OnlyBelowA>();
    const Found found = rank(request);
    ASSERT_EQ(found.rows->size(), 1u);
    EXPECT_EQ(found.total, 1);
    EXPECT_EQ(found.rows->front()->depth, 2);
}

/// Stands for the other engines: refuses some items, and adds nothing to the score.
struct NoDigits : RegexEngine {
    size_t numberOfSearchTerms() const override { return 1; }
    bool didExcludingSearchOnly() const override { return true; }
    bool match(std::u16string_view text, IndexSet&, double&) override {
        return text.find_first_of(u"0123456789") == text.npos;
    }
};
struct OddInodes : MetadataEngine {
    size_t numberOfSearchTerms() const override { return 1; }
    bool match(const fs_item_metadata*, IndexSet& criterions) override {
        criterions.add(16);
        return true;
    }
};

TEST_F(Ranking, ItemsThatNoTextTermScoredGetTheBaseScore) {
    cache_.add("/a1", ITEM_FILE);
    cache_.add("/ab", ITEM_FILE);
    cache_.add("/" + std::string(100, 'n'), ITEM_FILE);  // too long for a positive base score
    RankRequest request{.searchString = u"-[0-9]"};
    request.makeRegexEngine = [](std::u16string_view) { return std::make_unique<NoDigits>(); };
    Found found = rank(request);
    EXPECT_EQ(found.names(), (std::vector<std::string>{"/", "ab"}));
    EXPECT_EQ(found.rows->at(0)->score, 0 * -0.05 + 1.0 + 1 * -0.01);
    EXPECT_EQ(found.rows->at(1)->score, 1 * -0.05 + 1.0 + 2 * -0.01 + 1 * -0.03);

    RankRequest metadata{.searchString = u"a"};
    metadata.processMetadata = true;
    metadata.makeMetadataEngine = [](std::u16string_view) { return std::make_unique<OddInodes>(); };
    found = rank(metadata);
    EXPECT_EQ(found.total, 2);  // the fuzzy term still has to match
    EXPECT_EQ(found.rows->front()->matchingCriterions->items(), std::vector<uint64_t>{16});
}

/// Looks at every text itself.
struct WithoutNeed : RegexEngine {
    explicit WithoutNeed(std::u16string_view text) : search(text) {}
    size_t numberOfSearchTerms() const override { return search.numberOfSearchTerms(); }
    bool didExcludingSearchOnly() const override { return search.didExcludingSearchOnly(); }
    bool match(std::u16string_view text, IndexSet& indexes, double& totalScore) override {
        return search.match(text, indexes, totalScore);
    }
    RegexSearch search;
};

TEST_F(Ranking, ItemsPassedOverByTheirLettersWouldNotHaveMatched) {
    addRandomItems(6000);
    const auto rowsOf = [](const Found& found) {
        std::vector<std::tuple<const fs_item_t*, double, std::vector<uint64_t>>> rows;
        for (const match_ptr& row : *found.rows)
            rows.emplace_back(row->item, row->score, row->matchedIndexes.items());
        return rows;
    };
    for (const char16_t* search :
         {u"+main", u"+^a", u"+b\\.", u"+ss", u"+S+m", u"+main -b", u"-main", u"+a.b m",
          u"+( +.* +z", u"+x +n", u"+u\u0308", u"+r/.*b", u"+\\^a"})
        for (const unsigned variant : {0u, 1u, 2u, 3u}) {
            RankRequest request{.searchString = search};
            request.filenameOnly = variant & 1;
            request.ignoreDiacritics = variant & 2;
            request.limit = kNoResultLimit;
            request.makeRegexEngine = RegexSearch::maker(search, nullptr);
            const Found found = rank(request);
            request.makeRegexEngine = [](std::u16string_view text) {
                return std::make_unique<WithoutNeed>(text);
            };
            const Found plain = rank(request);
            EXPECT_EQ(found.total, plain.total) << toUtf8(search) << variant;
            EXPECT_TRUE(rowsOf(found) == rowsOf(plain)) << toUtf8(search) << variant;
        }
}

TEST_F(Ranking, FuzzyTermsWithExpressionsFindWhatBothFind) {
    addRandomItems(1000);
    for (const char16_t* fuzzy : {u"m", u"ma", u"a b", u"S"})
        for (const char16_t* expression : {u"+a", u"-b", u"+a.b", u"+^r|x$"})
            for (const unsigned variant : {0u, 1u, 2u, 3u}) {
                const auto items = [&](const std::u16string& search) {
                    RankRequest request{.searchString = search};
                    request.filenameOnly = variant & 1;
                    request.ignoreDiacritics = variant & 2;
                    request.limit = kNoResultLimit;
                    request.makeRegexEngine = RegexSearch::maker(search, nullptr);
                    const Found found = rank(request);
                    std::set<const fs_item_t*> matching;
                    for (const match_ptr& row : *found.rows) matching.insert(row->item);
                    return matching;
                };
                const auto one = items(fuzzy), other = items(expression);
                std::set<const fs_item_t*> both;
                std::set_intersection(one.begin(), one.end(), other.begin(), other.end(),
                                      std::inserter(both, both.end()));
                EXPECT_TRUE(items(std::u16string(fuzzy) + u" " + expression) == both)
                    << toUtf8(fuzzy) << " " << toUtf8(expression) << variant;
            }
}

TEST_F(Ranking, WithoutAUsableTermNothingIsListed) {
    cache_.add("/a", ITEM_FILE);
    for (const char16_t* search : {u"\\", u"-", u"+", u"-x", u" "}) {
        const Found found = rank({.searchString = search});
        ASSERT_TRUE(found.rows.has_value());
        EXPECT_EQ(found.rows->size() + static_cast<size_t>(found.total), 0u);
    }
}

TEST_F(Ranking, AnAbortedSearchHasNoResult) {
    addRandomItems(100);
    const Relaxed<bool> abort = true;
    RankRequest request{.searchString = u"a"};
    request.abortSearch = &abort;
    EXPECT_FALSE(rank(request).rows.has_value());
}

TEST_F(Ranking, AnAbortEndsAtTheNextItem) {
    addRandomItems(100);
    struct Aborting : RegexEngine {
        Aborting(Relaxed<bool>& flag, int& count) : abort(flag), matched(count) {}
        size_t numberOfSearchTerms() const override { return 1; }
        bool didExcludingSearchOnly() const override { return true; }
        bool match(std::u16string_view, IndexSet&, double&) override {
            abort = ++matched == 50;
            return true;
        }
        Relaxed<bool>& abort;
        int& matched;
    };
    Relaxed<bool> abort = false;
    int matched = 0;
    RankRequest request{.searchString = u"-x"};
    request.abortSearch = &abort;
    request.makeRegexEngine = [&](std::u16string_view) {
        return std::make_unique<Aborting>(abort, matched);
    };
    const Found found = rank(request);
    EXPECT_FALSE(found.rows.has_value());
    EXPECT_EQ(found.total, 0);
    EXPECT_EQ(matched, 50);
}

TEST(workerRanges, LeaveEachWorkerFiveThousandItems) {
    EXPECT_EQ(workerRanges(9999, 4).size(), 1u);
    EXPECT_EQ(workerRanges(10000, 4).size(), 2u);
    const auto ranges = workerRanges(20003, 3);
    ASSERT_EQ(ranges.size(), 3u);
    EXPECT_EQ(ranges[2].location, 13334u);
    EXPECT_EQ(ranges[2].length, 6669u);
    EXPECT_EQ(workerRanges(1, 0).size(), 1u);
    EXPECT_EQ(resultLimit(0), 10u);
    EXPECT_EQ(resultLimit(10), 10u);
    EXPECT_EQ(resultLimit(11), 11u);
}

class Comparators : public Ranking {
  protected:
    int compare(int (*by)(const fs_item_t*, const fs_item_t*), const char* a, const char* b) {
        return cache_.cache->performBlockReadOnly([&](const ReadSection& section) {
            return by(cache_.cache->fsItemWithURL(section, FileURL(a)),
                      cache_.cache->fsItemWithURL(section, FileURL(b)));
        });
    }
};

TEST_F(Comparators, OrderWithoutRegardToCaseComponentByComponent) {
    for (const char* path :
         {"/a", "/a/x", "/a-b", "/a-b/x", "/B", "/é", "/É2", "/.rc", "/n.", "/n.c", "/n.D", "/N"})
        cache_.add(path, ITEM_DIRECTORY);
    EXPECT_EQ(compare(fs_item_path_compare, "/a", "/a"), 0);
    EXPECT_EQ(compare(fs_item_path_compare, "/a", "/a/x"), -1);
    EXPECT_EQ(compare(fs_item_path_compare, "/a/x", "/a"), 1);
    EXPECT_EQ(compare(fs_item_path_compare, "/a/x", "/a-b"), -1);
    EXPECT_EQ(compare(fs_item_path_compare, "/B", "/a-b/x"), 1);
    EXPECT_EQ(compare(fs_item_path_compare, "/é", "/É2"), -1);
    EXPECT_EQ(compare(lastPathComponentComperator, "/a-b/x", "/a/x"), 0);
    EXPECT_EQ(compare(lastPathComponentComperator, "/B", "/a"), 1);
    EXPECT_EQ(compare(filenameExtensionComperator, "/.rc", "/n.c"), -1);
    EXPECT_EQ(compare(filenameExtensionComperator, "/n.c", "/n."), 1);
    EXPECT_EQ(compare(filenameExtensionComperator, "/n.c", "/n.D"), -1);
}

TEST_F(Comparators, KeepsEachOfTwoPathsThatDifferInCaseAloneBeforeTheOther) {
    for (const char* path : {"/Same", "/same"}) cache_.add(path, ITEM_FILE);
    EXPECT_EQ(compare(fs_item_path_compare, "/Same", "/same"), -1);
    EXPECT_EQ(compare(fs_item_path_compare, "/same", "/Same"), -1);
    EXPECT_EQ(rank({.searchString = u"same"}).names(), (std::vector<std::string>{"same", "Same"}));
}

TEST_F(Ranking, RowsAreComparedByItemPlaceAndMetadata) {
    for (const char* path : {"/a", "/ab"}) cache_.add(path, ITEM_FILE);
    auto rows = [&](const char16_t* search) {
        match_array_t list = std::move(*rank({.searchString = search}).rows);
        for (const match_ptr& row : list) row->fingerprint = fingerprintOf(*row);
        return list;
    };
    const match_array_t old = rows(u"a");
    match_array_t same = rows(u"a"), fewer = rows(u"ab"), none;
    EXPECT_FALSE(compareRows(old, same, false, false).didChange);
    EXPECT_TRUE(compareRows(old, same, false, false).changedRows.empty());
    EXPECT_EQ(compareRows(old, same, true, false).changedRows, (std::vector<size_t>{0, 1}));
    EXPECT_TRUE(same[1]->updateMatchIndicators);
    EXPECT_TRUE(compareRows(old, same, false, true).didChange);
    EXPECT_TRUE(compareRows(old, fewer, true, false).didChange);
    EXPECT_TRUE(compareRows(none, none, false, false).didChange);
    std::swap(same[0], same[1]);
    const RowComparison swapped = compareRows(old, same, false, false);
    EXPECT_TRUE(swapped.didChange);
    EXPECT_EQ(swapped.changedRows, (std::vector<size_t>{0, 1}));
    cache_.cache->movePath(FileURL("/a"), FileURL("/c"), {});
    EXPECT_NE(old[0]->fingerprint, fingerprintOf(*old[0]));
}

}  // namespace
