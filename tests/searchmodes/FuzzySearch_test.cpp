#include "searchmodes/FuzzySearch.h"

#include <gtest/gtest.h>

#include "searchmodes/SearchTerms.h"

namespace {

using Terms = std::vector<std::u16string>;

TEST(SearchTerms, OnlyBlanksWithoutABackslashPartTerms) {
    struct Case {
        const char16_t* text;
        Terms terms;
    };
    const Case cases[] = {
        {u"", {}},
        {u"   ", {}},
        {u"a b", {u"a", u"b"}},
        {u"  a   b ", {u"a", u"b"}},
        {u"a\\ b", {u"a\\ b"}},
        {u"a\\ b c", {u"a\\ b", u"c"}},
        {u"a\\\\ b", {u"a\\\\ b"}},  // a second backslash escapes too
        {u"\\", {u"\\"}},
        {u"a \\", {u"a", u"\\"}},
        {u"a\\", {u"a\\"}},
        {u"\\\\ \\ ", {}},  // backslashes and escaped blanks are no content
        {u"a\tb", {u"a\tb"}},
        {u"\\+x -y", {u"\\+x", u"-y"}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(componentsSeparatedByUnescapedWhitespace(c.text), c.terms)
            << std::string(c.text, c.text + std::u16string(c.text).size());
    EXPECT_EQ(indexesOfComponentsSeparatedByUnescapedWhitespace(u" a\\ b  c"),
              (std::vector<TextRange>{{1, 4}, {7, 1}}));
}

TEST(FuzzySearch, TakesPlainTermsAloneAndTheirMarkOff) {
    const FuzzySearch search(u"foo +re -ex \\-x \\\\y \\+z \\>3 \\ Ab");
    Terms terms;
    for (const RankTerm& term : search.terms()) terms.push_back(term.text());
    EXPECT_EQ(terms, (Terms{u"foo", u"-x", u"\\y", u"+z"}));
    EXPECT_EQ(search.nonRegexSearchTerms()[1], u"\\-x");
}

TEST(FuzzySearch, ComposesItsTerms) {
    const FuzzySearch search(u"u\u0308");
    ASSERT_EQ(search.numberOfSearchTerms(), 1);
    EXPECT_EQ(search.terms()[0].text(), u"\u00FC");
}

TEST(FuzzySearch, AllTermsMustMatchAndTheirScoresAddUp) {
    double one = 0, other = 0, both = 0;
    IndexSet indexes, positions;
    EXPECT_TRUE(FuzzySearch(u"main").match(u"src/main.c", indexes, one));
    EXPECT_TRUE(FuzzySearch(u"sr").match(u"src/main.c", indexes, other));
    EXPECT_TRUE(FuzzySearch(u"main sr").match(u"src/main.c", positions, both));
    EXPECT_EQ(both, one + other);
    EXPECT_EQ(positions.items(), (std::vector<uint64_t>{0, 1, 4, 5, 6, 7}));
    EXPECT_FALSE(FuzzySearch(u"main zz").match(u"src/main.c", positions, both));
    double none = 5;
    EXPECT_TRUE(FuzzySearch(u"+re").match(u"x", positions, none));
    EXPECT_EQ(none, 5);
}

}  // namespace
