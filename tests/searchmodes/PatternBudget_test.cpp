#include "searchmodes/PatternBudget.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <random>

#include "searchmodes/RegexPattern.h"
#include "util/Unicode.h"

namespace {

std::u16string times(size_t count, std::u16string_view piece) {
    std::u16string text;
    while (count-- > 0) text += piece;
    return text;
}

TEST(PatternBudget, AllowsWhatPeopleWrite) {
    const std::u16string patterns[] = {
        u"^(?:19|20)\\d{2}[-_. ]?(?:0[1-9]|1[0-2])[^/]*\\.(?:jpe?g|png|tiff?)$",
        u"\\p{Lu}\\p{Ll}+[\\p{L}\\p{N}_-]*\\s\\P{L}",
        times(8, u"[\\w.-]+"),
        times(300, u"[^/]*[a-z0-9_]"),
        times(400, u"x{1,3}"),
        times(10'000, u"a"),
        u"[\u4E00-\u9FFF]+[\xD83D\xDE00-\xD83D\xDE4F]",
        u"[\\x{0}-\\x{10ffff}][[^a]&&[^b]]",
        u"[a-z&&[^aeiou]]" + times(5, u"[\\w&&[^\\d]]"),
        u"\\Q" + times(99, u"[^-\\p{L}-") + u"\\E[^a]",
        u"(?i)(?<max>x-y)",
    };
    for (const std::u16string& pattern : patterns) {
        EXPECT_TRUE(PatternBudget().allows(pattern)) << toUtf8(pattern).substr(0, 60);
        PatternBudget budget;
        EXPECT_EQ(compilePattern(pattern, budget).error, U_ZERO_ERROR) << toUtf8(pattern);
    }
    PatternBudget budget;
    EXPECT_EQ(compilePattern(u"\\p{Zork}", budget).error, U_REGEX_PROPERTY_SYNTAX);
}

TEST(PatternBudget, RefusesWhatTakesTooLong) {
    const std::u16string patterns[] = {
        times(10'000, u"\\p{L}"),
        times(20, u"[\\p{L}]"),
        times(20, u"[:L:]"),
        times(4, u"[\\p{Any}]"),
        times(4, u"\\p{javaDefined}"),
        times(4, u"[\\W]"),
        times(4, u"[[^a]]"),
        times(4, u"[][^a]]"),
        times(4, u"[\\x{0}-\\x{10ffff}]"),
        times(4, u"[\\0-\\U0010ffff]"),
        times(4, u"[a-\xDBFF\xDFFF]"),
        u"\\Q\\E" + times(4, u"[\\S]"),
        u"(?#\\Q)" + times(20, u"[\\w]"),
        u"(?x)" + times(4, u"[#]\n[^a]]"),
        times(1'000, u"a{1,99}"),
        times(20'000, u"a"),
    };
    for (const std::u16string& pattern : patterns) {
        PatternBudget budget;
        EXPECT_EQ(compilePattern(pattern, budget).error, U_REGEX_PATTERN_TOO_BIG)
            << toUtf8(pattern).substr(0, 60);
    }
}

TEST(PatternBudget, IsThatOfAllTermsTogether) {
    PatternBudget budget;
    size_t allowed = 0;
    for (int i = 0; i < 20; i++) allowed += budget.allows(u"\\p{L}\\p{L}");
    EXPECT_GT(allowed, 4u);
    EXPECT_LT(allowed, 15u);
    EXPECT_TRUE(budget.allows(u"\\.txt$")) << "what costs little is not refused with the rest";
    for (int i = 0; i < 100; i++) EXPECT_FALSE(budget.allows(times(1000, u"a{2}")));
    EXPECT_FALSE(budget.allows(times(100, u"x"))) << "to look at all that has used it up";
}

double millisecondsToCompile(std::u16string_view pattern) {
    const std::clock_t begin = std::clock();
    UErrorCode status = U_ZERO_ERROR;
    uregex_close(uregex_open(pattern.data(), static_cast<int32_t>(pattern.size()),
                             UREGEX_CASE_INSENSITIVE, nullptr, &status));
    return static_cast<double>(std::clock() - begin) * 1000 / CLOCKS_PER_SEC;
}

TEST(PatternBudget, WhatItAllowsCompilesInTime) {
    const std::u16string_view pieces[] = {
        u"\\p{L}",  u"\\P{Lu}",      u"\\p{Any}", u"\\p{IsL}", u"[",       u"[^",      u"]",
        u"[]",      u"&&",           u"--",       u"-",        u"a",       u"\\W",     u"\\w",
        u"\\Q",     u"\\E",          u"(?#",      u")",        u"(?x)",    u"#",       u"\n",
        u"[:L:]",   u"[:^alpha:]",   u":]",       u"{1,9}",    u"(",       u"(?:",     u"*",
        u"\\x{10}", u"\\x{10ffff}",  u"|",        u"\\",       u"\\ufffe", u"[\\w]",   u"[^\\S]",
        u"\\N{",    u"\\U0010ffff]", u"\uFFFF",   u"[[^a]]",   u"[\\D",    u"\\p{M}]", u"(?<=",
    };
    std::mt19937 random(11);
    size_t compiled = 0;
    for (int round = 0; round < 600; round++) {
        std::u16string pattern;
        const std::u16string_view few[] = {pieces[random() % std::size(pieces)],
                                           pieces[random() % std::size(pieces)],
                                           pieces[random() % std::size(pieces)]};
        for (size_t n = 1 + random() % (round % 3 ? 8 : 60); n > 0; n--)
            pattern += round % 2 ? few[n % 3] : pieces[random() % std::size(pieces)];
        if (round % 5 == 0) pattern = times(1 + random() % 100, pattern);
        PatternBudget budget;
        if (!budget.allows(pattern)) continue;
        double time = millisecondsToCompile(pattern);
        for (int again = 0; again < 3 && time > 100; again++)
            time = std::min(time, millisecondsToCompile(pattern));
        compiled++;
        ASSERT_LT(time, 100) << toUtf8(pattern).substr(0, 200);  // sanitizers make it slower
    }
    EXPECT_GT(compiled, 200u);
}

}  // namespace
