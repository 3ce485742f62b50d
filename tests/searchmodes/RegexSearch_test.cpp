#include "searchmodes/RegexSearch.h"

#include <algorithm>
#include <random>

#include "searchmodes/RegexTermCheck.h"
#include "searchmodes/StringRanker.h"
#include "searchmodes/corpus.h"
#include "util/TestSupport.h"
#include "util/Unicode.h"
#include "util/queues/OperationQueue.h"

namespace {

using Indexes = std::vector<uint64_t>;

struct Found {
    bool match = false;
    double score = 0;
    IndexSet indexes;
};
Found find(std::u16string_view searchString, std::u16string_view text) {
    RegexSearch search(searchString);
    Found found;
    found.match = search.match(text, found.indexes, found.score);
    return found;
}

TEST(RegexSearch, TakesTermsWithASign) {
    struct Case {
        const char16_t* searchString;
        size_t positive, negative;
        bool excludingOnly;
    };
    const Case cases[] = {
        {u"", 0, 0, false},       {u"+ - a \\+b \\-c \\t", 0, 0, false},
        {u"-a", 0, 1, true},      {u"+a -b -c x", 1, 2, false},
        {u"+a\\ b", 1, 0, false}, {u"+( -[ -x", 0, 1, true},  // what does not compile is no term
    };
    for (const Case& c : cases) {
        const RegexSearch search(c.searchString);
        EXPECT_EQ(search.inLen(), c.positive) << toUtf8(c.searchString);
        EXPECT_EQ(search.exLen(), c.negative) << toUtf8(c.searchString);
        EXPECT_EQ(search.numberOfSearchTerms(), c.positive + c.negative);
        EXPECT_EQ(search.didExcludingSearchOnly(), c.excludingOnly) << toUtf8(c.searchString);
    }
}

TEST(RegexSearch, FindsAnywhereWithoutRegardToCase) {
    struct Case {
        const char16_t *searchString, *text;
        bool match;
    };
    const Case cases[] = {
        {u"+MAIN", u"src/main.c", true},
        {u"+main$", u"main.c", false},
        {u"-main", u"src/Main.c", false},
        {u"-main", u"other", true},
        {u"+a -a", u"a", false},
        {u"+a +b", u"ab", true},
        {u"+a +b", u"a", false},
        {u"+a\\ b", u"xa by", true},
        {u"+k", u"\u212A", true},  // the Kelvin sign
        {u"+ss", u"stra\u00DFe", true},
        {u"+u\u0308", u"\u00FC", true},
        {u"+\u6771", u"x\u6771y", true},
        {u"+\xD83D", u"\xD83D\xDE00", false},
        {u"+x*", u"", true},
    };
    for (const Case& c : cases)
        EXPECT_EQ(find(c.searchString, c.text).match, c.match)
            << toUtf8(c.searchString) << " in " << toUtf8(c.text);
    RegexSearch search(u"+x*");
    IndexSet indexes;
    double score = 0;
    EXPECT_TRUE(search.match({}, indexes, score)) << "a view that points nowhere";
}

TEST(RegexSearch, ScoresTheFirstMatchByItsLength) {
    EXPECT_EQ(find(u"+MAIN", u"main").score, 1.0);
    EXPECT_EQ(find(u"+x*", u"main").score, 0.0);
    const Found found = find(u"+a. +b", u"xxabxab");
    EXPECT_EQ(found.indexes.items(), (Indexes{2, 3}));
    EXPECT_EQ(found.score, find(u"+a.", u"xxabxab").score + find(u"+b", u"xxabxab").score);
    EXPECT_EQ(find(u"+a.", u"xxabxab").score, find(u"+b.", u"0123bc6").score) << "not by its place";
}

TEST(RegexSearch, ScoresAPartAsTheRankerDoes) {
    std::mt19937 random(7);
    const std::u16string units = u"aB.1\u00E9\u6771\xD83D\xDE00 \u017F_";
    for (int round = 0; round < 20'000; round++) {
        std::u16string text;
        for (size_t n = 1 + random() % 12; n > 0; n--) text += units[random() % units.size()];
        if (round % 2) text = toUtf16Lenient(toUtf8(text) + "😀");  // proper text
        if (round % 50 == 0) text[random() % text.size()] = u'\0';
        const size_t length = 1 + random() % 3;
        const Found found = find(length == 1   ? u"+[B1\u6771.]"
                                 : length == 2 ? u"+a."
                                               : u"+.\xD83D\xDE00",
                                 text);
        if (!found.match) continue;
        const Indexes& places = found.indexes.items();
        const auto part = std::u16string_view(text).substr(places.front(), places.size());
        ASSERT_EQ(
            found.score,
            StringRanker::rankString(
                text, {.usingFilter = part, .usingLcFilter = part, .unifyCase = false}, nullptr))
            << toUtf8(text);
    }
}

TEST(RegexSearch, TermsForAnythingAreNotRun) {
    for (const char16_t* term : {u"+.*", u"+^.*", u"+.*$", u"+^.*$"}) {
        const Found found = find(term, u"a\nb");
        EXPECT_TRUE(found.match);
        EXPECT_EQ(found.score, 3 * -0.001 + 1.0);
    }
    for (const char16_t* term : {u"+^", u"+$"}) {
        const Found found = find(term, u"abc");
        EXPECT_EQ(found.score, 3 * -0.001 + 1.0);
        EXPECT_TRUE(found.indexes.empty());
    }
    EXPECT_EQ(find(u"+.*", std::u16string(2000, u'a')).score, 2000 * -0.001 + 1.0);
}

TEST(RegexSearch, KeepsTheLastUnitUnmarkedWhereAnythingMatches) {
    EXPECT_EQ(find(u"+.*", u"abc").indexes.items(), (Indexes{0, 1}));
    for (const char16_t* text : {u"a", u""}) EXPECT_TRUE(find(u"+.*", text).indexes.empty());
    EXPECT_EQ(find(u"+.*", u"a").score, 1 * -0.001 + 1.0);
}

TEST(RegexSearch, KeepsReadingTermsBesideTheirExpressions) {
    // The expressions are ".*" and "x", the first two terms "+(" and "+.*".
    const Found found = find(u"+( +.* +x", u"abc");
    EXPECT_TRUE(found.match) << "x is not looked for";
    EXPECT_EQ(found.indexes.items(), (Indexes{0, 1, 2}));
    EXPECT_EQ(found.score, 1.0 + (3 * -0.001 + 1.0));
}

TEST(RegexSearch, OddPatternsDoNoHarm) {
    std::u16string odd[] = {
        u"+\\",
        u"-\\",
        u"+\\\\",
        u"+[",
        u"-]",
        u"+{",
        u"+a{",
        u"+(?",
        u"+(?i",
        u"+(?<",
        u"+*",
        u"++",
        u"+-",
        u"--",
        u"+\\Q",
        u"+\\E",
        u"+\\x{",
        u"+\\N{",
        u"+\\p{",
        u"+[[:",
        u"+[a-",
        u"+a{9999999999}",
        u"+a{3,2}",
        u"+\\1",
        u"+(?<=a*)",
        u"+\xDC00",
        u"+a\xD800\u00FC",
        u"+\xD800\xD800",
    };
    for (const std::u16string& term : odd)
        for (const char16_t* text : {u"", u"a", u"\xD83D", u"a\xDC00\xD83D\xDE00"})
            find(term, text);
    for (const std::u16string_view part :
         {u"a", u"(", u"(a", u"[", u"a|", u"(?=", u"\\", u"a*", u"{", u"[a-z]"}) {
        std::u16string term = u"+";
        while (term.size() < 10'000) term += part;
        find(term, u"aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa");
    }
    using namespace std::string_literals;
    EXPECT_FALSE(find(u"+\0"s, u"abc").match);
    EXPECT_TRUE(find(u"-\0"s, u"abc").match);
    EXPECT_TRUE(find(u"+b"s, u"a\0b"s).match);
}

TEST(RegexSearch, WhatTheMatcherCannotDoIsLoggedOnceAndCountsAsFound) {
    LogLines log;
    RegexSearch positive(u"+(((((a|b|c)+)+)+)+)+x"), negative(u"-(((((a|b|c)+)+)+)+)+x");
    const std::u16string text(65'000, u'a');
    IndexSet indexes;
    double score = 0;
    for (int i = 0; i < 2; i++) {
        EXPECT_TRUE(positive.match(text, indexes, score));
        EXPECT_TRUE(negative.match(text, indexes, score));
    }
    EXPECT_EQ(score, 0);
    EXPECT_TRUE(indexes.empty());
    EXPECT_EQ(log.count("Failed to find regex: U_REGEX_STACK_OVERFLOW"), 2u);
}

/// How long a match on another queue goes on once it is stale.
std::chrono::milliseconds staleFor(std::u16string_view searchString, std::u16string_view text) {
    World world;
    Relaxed<bool> stale{false}, running{false}, ended{false};
    bool match = true;
    OperationQueue queue("searchWorkerQ", 1, Qos::userInteractive);
    queue.addBlock([&, make = RegexSearch::maker(searchString, &stale)] {
        const auto search = make(searchString);
        IndexSet indexes;
        double score = 0;
        running = true;
        match = search->match(text, indexes, score);
        ended = true;
    });
    EXPECT_TRUE(comesTrue([&] { return bool(running); }));
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_FALSE(bool(ended)) << "it takes no time";
    const auto begin = std::chrono::steady_clock::now();
    stale = true;
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_FALSE(match);
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                 begin);
}

TEST(RegexSearch, AStaleMatchEndsAtOnce) {
    LogLines log;
    struct Case {
        const char16_t* searchString;
        std::u16string text;
    };
    const Case cases[] = {
        {u"+(a+)+$", std::u16string(250, u'a') + u"!"},
        {u"-(a+)+$", std::u16string(250, u'a') + u"!"},
        {u"+(.*)*x +b", std::u16string(4000, u'y')},
        {u"+^(\\w+\\s?)+$", std::u16string(4000, u'y') + u"!"},
    };
    for (const Case& c : cases) {
        auto best = staleFor(c.searchString, c.text);
        for (int again = 0; again < 3 && best.count() >= 50; again++)  // the machine has a say too
            best = std::min(best, staleFor(c.searchString, c.text));
        EXPECT_LT(best.count(), 50) << toUtf8(c.searchString);
    }
    EXPECT_TRUE(log.lines().empty()) << log.lines().front();
}

TEST(RegexSearch, NeedsTheLettersOfAllLiteralsInAsciiText) {
    struct Case {
        const char16_t *searchString, *letters;
    };
    const Case cases[] = {
        {u"+Main\\.c$ x", u"main.c"}, {u"+ab +.* +^ +c*d", u"abd"}, {u"-abc", u""},
        {u"+a|b +(c)", u""},          {u"+( +.* +x", u""},  // kept: x is not looked for
    };
    for (const Case& c : cases) {
        NameMask mask = 0;
        for (const char16_t letter : std::u16string_view(c.letters)) mask |= presenceOf(letter);
        EXPECT_EQ(RegexSearch(c.searchString).needOfAscii(), mask) << toUtf8(c.searchString);
    }
}

TEST(RegexSearch, TheCircumflexIsNoAccentInAnExpression) {
    struct Case {
        const char16_t *typed, *left;
    };
    const Case cases[] = {
        {u"", u""},
        {u"+^\u00E9[^\u00FC`]$  a^\u00E9\\ ^ -\\^x ", u"+^e[^u]$  ae\\  -\\^x "},
        {u"\u00B4+^a \\^", u"+a \\"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(toUtf8(searchStringByRemovingDiacritics(c.typed)), toUtf8(c.left));
}

TEST(RegexSearch, CopiesMatchSideBySide) {
    World world;
    const auto make = RegexSearch::maker(u"+( +a+ +.* -q", nullptr);
    OperationQueue queue("searchWorkerQ", 4, Qos::userInteractive);
    std::vector<int> right(8);
    for (int& each : right)
        queue.addBlock([&make, &each] {
            const auto search = make(u"+( +a+ +.* -q");
            for (size_t n = 1; n < 2000; n++) {
                IndexSet indexes;
                double score = 0;
                const std::u16string text = u"b" + std::u16string(n % 30, u'a') + u"q";
                each += search->match(std::u16string_view(text).substr(0, 1 + n % 30), indexes,
                                      score) == (n % 30 > 0);
                each += !search->match(text, indexes, score);
            }
        });
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_EQ(std::count(right.begin(), right.end(), 2 * 1999), 8);
    EXPECT_TRUE(make(u"-x")->didExcludingSearchOnly()) << "another string than that of the model";
}

TEST(RegexSearch, WhatTheFuzzerFoundHolds) {
    int count = 0;
    for (const std::string& bytes : contentsOfFolder(TROVAST_FUZZ_CORPUS "/regex_term")) {
        count++;
        const auto [pattern, text] = lineAndRest(textFromBytes(bytes));
        EXPECT_EQ(troubleWithPattern(pattern, text), "") << bytes;
    }
    EXPECT_GT(count, 10);
}

TEST(RegexPattern, ErrorsAreReadable) {
    struct Case {
        const char16_t* pattern;
        const char* text;
    };
    const Case cases[] = {
        {u"(", "Incorrectly nested parentheses in regexp pattern."},
        {u"*", "Syntax error in regexp pattern."},
        {u"[", "Missing closing bracket on a bracket expression."},
        {u"[b-a]", "In a character range [x-y], x is greater than y."},
        {u"\\", "Unrecognized backslash escape sequence in pattern."},
        {u"\\p{Zork}", "Incorrect Unicode property."},
        {u"a{2,1}", "In {min,max}, max is less than min."},
        {u"a{99999999999}", "Decimal number is too large."},
        {u"\\1", "Back-reference to a non-existent capture group."},
        {u"(?<=a*)", "Look-Behind pattern matches must have a bounded maximum length."},
        {u"\\k<a>", "Invalid capture group name."},
        {u"", "U_ILLEGAL_ARGUMENT_ERROR"},
    };
    for (const Case& c : cases) {
        PatternBudget budget;
        EXPECT_EQ(regexErrorText(compilePattern(c.pattern, budget).error), c.text)
            << toUtf8(c.pattern);
    }
    EXPECT_EQ(regexErrorText(static_cast<UErrorCode>(66304)),
              "An internal error (ICU bug) was detected.");
    EXPECT_EQ(regexErrorText(static_cast<UErrorCode>(66318)),
              u_errorName(static_cast<UErrorCode>(66318)));
    EXPECT_EQ(regexErrorText(static_cast<UErrorCode>(66325)), "Invalid capture group name.");
    EXPECT_EQ(regexErrorText(U_ZERO_ERROR), "U_ZERO_ERROR");
}

TEST(RegexPattern, RequiresOnlyWhatEveryMatchHas) {
    struct Case {
        const char16_t* pattern;
        const char* literal;
    };
    const Case cases[] = {
        {u"Main", "main"},
        {u"\\.cpp$", ".cpp"},
        {u"^foo.*bars", "bars"},
        {u"abc?", "ab"},
        {u"ab+cdef*", "cde"},
        {u"a|b", ""},
        {u"(ab)?", ""},
        {u"ab{0,1}", ""},
        {u"ab[xy]+cde", "cde"},
        {u"abc\\d", "abc"},
        {u"\\Qa*\\E", ""},
        {u"x\u00E9?yz", "yz"},
        {u".*", ""},
        {u"a\\ b", "a b"},
        {u"ab\\+c", "ab+c"},
        {u"\\.?x", "x"},
        {u"[^\\]a-]*\\w+main", "main"},
        {u"ab[]c]def", "ab"},
        {u"ab[[c]]def", "ab"},
        {u"ab[\\x41]def", "ab"},
        {u"\\bfoo\\B", "foo"},
        {u"ab[:L:]def", "ab"},
        {u"ab[cdef", "ab"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(requiredLiteral(c.pattern), c.literal) << toUtf8(c.pattern);
}

TEST(RegexPattern, ALiteralNeverHidesAMatch) {
    std::mt19937 random(3);
    const std::u16string_view pieces[] = {u"a",   u"B", u"c.",   u"*",    u"+",   u"?",      u".",
                                          u"\\.", u"^", u"$",    u"[ab]", u"\\d", u"\u017F", u"s",
                                          u"\\-", u"]", u"[^b]", u"\\w",  u"\\b", u"[\\s-",  u"[",
                                          u"&&",  u"}", u"\\Q",  u"\\E",  u" ",   u"#"};
    const std::u16string units = u"aAbBcCs.- #1]}\u017F\u00E9";
    int found = 0;
    for (int round = 0; round < 40'000; round++) {
        std::u16string pattern, text;
        for (size_t n = 1 + random() % 5; n > 0; n--)
            pattern += pieces[random() % std::size(pieces)];
        for (size_t n = random() % 10; n > 0; n--) text += units[random() % units.size()];
        PatternBudget budget;
        const CompiledPattern compiled = compilePattern(pattern, budget);
        const std::string literal = requiredLiteral(pattern);
        if (!compiled.regexp || literal.empty()) continue;
        UErrorCode status = U_ZERO_ERROR;
        uregex_setText(compiled.regexp.get(), text.c_str(), static_cast<int32_t>(text.size()),
                       &status);
        if (!uregex_find(compiled.regexp.get(), 0, &status)) continue;
        found++;
        ASSERT_FALSE(isAsciiWithout(literal, text)) << toUtf8(pattern) << " in " << toUtf8(text);
    }
    EXPECT_GT(found, 500);
}

}  // namespace
