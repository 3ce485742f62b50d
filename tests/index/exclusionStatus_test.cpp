#include "index/exclusionStatus.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "index/fs_item.h"
#include "util/Relaxed.h"
#include "util/Unicode.h"
#include "util/World.h"
#include "util/queues/OperationQueue.h"

namespace {

struct Pattern {
    const char* pattern;
    int patternType;
    int fileType = 7;
    uint8_t type = kRuleExclude;
};

MatchingRules rules(std::initializer_list<Pattern> patterns) {
    MatchingRules made;
    for (const Pattern& p : patterns) {
        MatchingRule& rule = made.emplace_back(nlohmann::json{
            {"pattern", p.pattern}, {"patternType", p.patternType}, {"fsItemType", p.fileType}});
        rule.type = p.type;
        rule.preprocess();
    }
    return made;
}

int status(std::u16string_view path, const MatchingRules& list, uint8_t mask = ITEM_FILE) {
    return exclusionStatus(path, path.rfind(u'/') + 1, mask, list);
}

TEST(exclusionStatus, EachKindOfPatternLooksAtNameOrPath) {
    struct Case {
        const char16_t* path;
        Pattern pattern;
        bool matches;
    };
    const Case cases[] = {
        {u"/x/node_modules", {"node_modules", kPatternExact}, true},
        {u"/x/NODE_MODULES", {"node_modules", kPatternExact}, true},
        {u"/Library", {"/Library", kPatternExact}, true},
        {u"/library", {"/Library", kPatternExact}, true},
        {u"/x/Library", {"/Library", kPatternExact}, false},
        {u"/x/lib/foo", {"lib/foo", kPatternExact}, true},
        {u"/x/lib/FOO", {"lib/foo", kPatternExact}, false},
        {u"/a/B.framework", {"*.framework", kPatternGlob}, true},
        {u"/a/B.FRAMEWORK", {"*.framework", kPatternGlob}, false},
        {u"/a/.profile", {".*", kPatternGlob}, true},
        {u"/a/b.c", {".*", kPatternGlob}, false},
        {u"/lib/x", {"lib/*", kPatternGlob}, false},
        {u"/library", {"/lib*", kPatternGlob}, true},
        {u"/a/x~", {"*~", kPatternGlob}, true},
        {u"/a/b/deep.o", {"*/b/deep.o", kPatternGlob}, true},
        {u"/a/anything", {"*", kPatternGlob}, true},
        {u"/a.tmp1x", {"*.tmp[0-9]", kPatternGlob}, true},
        {u"/a/.tmp1", {"*.tmp[0-9]", kPatternGlob}, false},
        {u"/src/a/b/test", {"src/**/test", kPatternGlob}, true},
        {u"/src/test", {"src/**/test", kPatternGlob}, false},
        {u"/folder/x", {"FOLDER", kPatternRegexp}, true},
        {u"/x", {"[a", kPatternRegexp}, false},
        {u"/x", {"", kPatternExact}, false},
        {u"/", {"x", kPatternExact}, false},
        {u"/", {"*x", kPatternGlob}, false},
        {u"/", {"a?", kPatternGlob}, false},
    };
    for (const Case& c : cases)
        EXPECT_EQ(status(c.path, rules({c.pattern})), c.matches ? kStatusExcluded : kStatusNoRule)
            << c.pattern.pattern << " on "
            << std::string(c.path, c.path + std::u16string(c.path).size());
}

TEST(exclusionStatus, TheFirstRuleThatMatchesDecides) {
    const MatchingRules list =
        rules({{".*", kPatternGlob}, {"*.txt", kPatternGlob, 7, kRuleInclude}});
    EXPECT_EQ(status(u"/.a.txt", list), kStatusExcluded);
    EXPECT_EQ(status(u"/a.txt", list), kStatusIncluded);
    EXPECT_EQ(status(u"/a.c", list), kStatusNoRule);
    EXPECT_EQ(status(u"/a.c", {}), kStatusNoRule);
}

TEST(exclusionStatus, KeepsPassingOverPrefixesWithAnInnerSlashAndCaseInSuffixes) {
    EXPECT_EQ(status(u"/lib/x", rules({{"lib/*", kPatternGlob}})), kStatusNoRule);
    EXPECT_EQ(status(u"/x/lib/FOO", rules({{"lib/foo", kPatternExact}})), kStatusNoRule);
    EXPECT_EQ(status(u"/X/FOO", rules({{"foo", kPatternExact}})), kStatusExcluded);
    EXPECT_EQ(status(u"/X/FOO", rules({{"*oo", kPatternGlob}})), kStatusNoRule);
    EXPECT_EQ(status(u"/X/FOO", rules({{"*o?", kPatternGlob}})), kStatusExcluded);
}

/// What is compiled is shorter than what the glob stands for; it must find the same.
TEST(exclusionStatus, AGlobFindsWhatItsWholeExpressionFinds) {
    const auto words = [](const std::string& letters, size_t length) {
        std::vector<std::string> all{""}, last{""};
        for (size_t i = 0; i < length; i++) {
            std::vector<std::string> next;
            for (const std::string& word : last)
                for (const char c : letters) next.push_back(word + c);
            all.insert(all.end(), next.begin(), next.end());
            last = std::move(next);
        }
        return all;
    };
    std::vector<std::string> names = words("aB/", 5);
    names.push_back("[^/]");
    std::vector<std::string> globs = words("a*+/?", 4);
    for (const char* odd : {"?\\Q*", "*|b*", "[a*", "(*)*", "*\\Q*", "a\\*"}) globs.push_back(odd);
    for (const std::string& glob : globs) {
        const MatchingRules prepared = rules({{glob.c_str(), kPatternGlob}});
        if (!prepared[0].regexp) continue;
        MatchingRules whole = prepared;
        whole[0].originalPattern = toUtf8(*prepared[0].pattern);
        whole[0].originalPatternType = kPatternRegexp;
        whole[0].preprocess();
        whole[0].patternSlashLocation = prepared[0].patternSlashLocation;
        for (const std::string& name : names) {
            const std::u16string path = u"/" + ruleText(name);
            ASSERT_EQ(status(path, prepared), status(path, whole)) << glob << " on /" << name;
        }
    }
}

TEST(exclusionStatus, MayBeAskedOnManyThreadsAtOnce) {
    World world;
    const MatchingRules list = rules({{"a*b?", kPatternGlob}, {"x", kPatternExact}});
    Relaxed<int> excluded = 0;
    OperationQueue queue("rules", 4, Qos::utility);
    for (int job = 0; job < 8; job++)
        queue.addBlock([&] {
            for (int i = 0; i < 200; i++) excluded.add(-status(i % 2 ? u"/AxxBc" : u"/abc", list));
        });
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_EQ(excluded, 800);
}

TEST(exclusionStatus, ARuleForFoldersPassesOverFilesAndALinkIsAFile) {
    const MatchingRules list = rules({{"build", kPatternExact, ITEM_DIRECTORY}});
    EXPECT_EQ(status(u"/build", list, ITEM_FILE), kStatusNoRule);
    EXPECT_EQ(status(u"/build", list, ITEM_FILE | ITEM_SYMLINK), kStatusNoRule);
    EXPECT_EQ(status(u"/build", list, ITEM_DIRECTORY), kStatusExcluded);
    EXPECT_EQ(status(u"/x", rules({{"x", kPatternExact, 1}}), ITEM_FILE | ITEM_SYMLINK),
              kStatusExcluded);
}

}  // namespace
