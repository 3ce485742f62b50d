#include "datatypes/MatchingRule.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "util/Unicode.h"

namespace {

MatchingRule rule(const std::string& pattern, int type) {
    MatchingRule made(
        nlohmann::json{{"pattern", pattern}, {"patternType", type}, {"fsItemType", 7}});
    made.preprocess();
    return made;
}

TEST(MatchingRule, GlobsArePreparedAsWhatIsCheapestToTest) {
    struct Case {
        const char* glob;
        int type;
        const char16_t* pattern;  // null: none
        int64_t slash;
    };
    const Case cases[] = {
        {"*", kPatternAnything, nullptr, kNotFound},
        {"*.o", kPatternSuffix, u".o", kNotFound},
        {"tmp*", kPatternPrefix, u"tmp", kNotFound},
        {"lib/*", kPatternPrefix, u"lib/", 3},
        {"*/x", kPatternSuffix, u"/x", 0},
        {"a*b", kPatternRegexp, u"a[^/]+b", 3},
        {"*.[ch]", kPatternRegexp, u"[^/]+\\.[ch]", 2},
        {"*a*", kPatternRegexp, u"[^/]+a[^/]+", 2},
        {"src/**/test", kPatternRegexp, u"src/.*/test", 3},
        {"a?c", kPatternRegexp, u"a.c", kNotFound},
        {"[!x]", kPatternRegexp, u"[^x]", kNotFound},
        {"a{b}.c", kPatternRegexp, u"a\\{b\\}\\.c", kNotFound},
    };
    for (const Case& c : cases) {
        const MatchingRule made = rule(c.glob, kPatternGlob);
        EXPECT_EQ(made.patternType, c.type) << c.glob;
        EXPECT_EQ(made.patternSlashLocation, c.slash) << c.glob;
        EXPECT_EQ(made.pattern.has_value(), c.pattern != nullptr) << c.glob;
        if (c.pattern) {
            EXPECT_EQ(*made.pattern, c.pattern) << c.glob;
        }
        EXPECT_EQ(made.regexp != nullptr, c.type == kPatternRegexp) << c.glob;
    }
}

TEST(MatchingRule, PatternsAreComposed) {
    // A byte that is no UTF-8 stands in a rule as in any stored path, and looks as in a rule's
    // subject.
    EXPECT_EQ(*rule(pathToText("/\xFF"), kPatternExact).pattern, ruleText("/\xFF"));
    EXPECT_EQ(*rule("u\xCC\x88*", kPatternGlob).pattern, u"\u00FC");
    EXPECT_EQ(*rule("u\xCC\x88/x", kPatternExact).pattern, u"\u00FC/x");
    EXPECT_EQ(rule("u\xCC\x88/x", kPatternExact).patternSlashLocation, 1);
}

TEST(MatchingRule, APatternThatCannotBeUsedLeavesAnEmptyRule) {
    EXPECT_EQ(rule("[a", kPatternRegexp).regexp, nullptr);
    EXPECT_EQ(rule("[a", kPatternGlob).regexp, nullptr);
    const MatchingRule unknown = rule("*", 5);
    EXPECT_EQ(unknown.patternType, kPatternExact);
    EXPECT_FALSE(unknown.pattern.has_value());
}

TEST(MatchingRule, KeepsLookingAtTheWholePathForARegularExpressionAsWritten) {
    EXPECT_EQ(rule("x", kPatternRegexp).patternSlashLocation, 0);
    EXPECT_FALSE(rule("x", kPatternRegexp).pattern.has_value());
}

TEST(MatchingRule, ACopyStandsOnItsOwn) {
    auto original = std::make_unique<MatchingRule>(rule("a*b", kPatternGlob));
    original->type = kRuleInclude;
    const MatchingRule copy = *original;
    original->originalPattern = "x*";
    original->preprocess();
    EXPECT_EQ(*original->pattern, u"x");
    EXPECT_EQ(original->regexp, nullptr) << "of the pattern before";
    original.reset();
    EXPECT_EQ(*copy.pattern, u"a[^/]+b");
    ASSERT_NE(copy.regexp, nullptr);
    UErrorCode status = U_ZERO_ERROR;
    EXPECT_NE(RegexPointer(uregex_clone(copy.regexp.get(), &status)), nullptr);
    EXPECT_EQ(copy.type, kRuleInclude);
}

TEST(MatchingRule, ReadsAnythingAndWritesItsThreeKeys) {
    const nlohmann::json odd[] = {nullptr,
                                  3,
                                  nlohmann::json::array(),
                                  {{"pattern", 7}},
                                  {{"patternType", -1}, {"fsItemType", 1000}}};
    for (const auto& dictionary : odd) {
        MatchingRule made(dictionary);
        made.preprocess();
        EXPECT_EQ(made.dictionaryRepresentation(),
                  (nlohmann::json{{"pattern", ""}, {"patternType", 0}, {"fsItemType", 7}}));
    }
}

}  // namespace
