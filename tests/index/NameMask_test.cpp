#include "index/NameMask.h"

#include <gtest/gtest.h>

#include "util/Unicode.h"

TEST(NameMask, LettersOfBothCasesHaveOneBit) {
    EXPECT_EQ(presenceOfName("abZ"), presenceOfName("zBA"));
    EXPECT_EQ(presenceOfName("a"), presenceOf(u'a'));
    EXPECT_NE(presenceOf(u'a'), presenceOf(u'b'));
    EXPECT_EQ(presenceOf(u'A'), 0u) << "units are asked for in lower case";
    EXPECT_EQ(presenceOf(u'_'), presenceOf(u' '));
    EXPECT_EQ(presenceOf(u'0'), presenceOf(u'1'));
    EXPECT_NE(presenceOf(u'1'), presenceOf(u'2'));
    EXPECT_EQ(presenceOfName("+=~/"), 0u);
    EXPECT_EQ(presenceOf(u'\u00E4'), 0u);
    EXPECT_EQ(presenceOfName("abcdefghijklmnopqrstuvwxyz._0259"), ~kNotAscii);
}

// Ranking passes over a name whose mask lacks a letter, so a letter that lower-casing or folding
// makes must be in it.
TEST(NameMask, HoldsEveryLetterThatFoldingCanMake) {
    const struct {
        const char* name;
        const char* letters;
    } cases[] = {
        {"5\u212A.txt", "k"},  // the sign for Kelvin composes to K
        {"\u017Fun", "s"},     // the long s
        {"stra\u00DFe", "s"}, {"\uFB01le", "fi"},  {"\u0130x", "i"},
        {"A\u0308", ""},      {"e\u0301.c", "c."},
    };
    for (const auto& c : cases) {
        const NameMask mask = presenceOfName(c.name);
        EXPECT_TRUE(mask & kNotAscii) << c.name;
        for (const char* letter = c.letters; *letter; letter++)
            EXPECT_TRUE(mask & presenceOf(static_cast<char16_t>(*letter))) << c.name << *letter;
    }
    EXPECT_FALSE(presenceOfName("e\u0301") & presenceOf(u'e'))
        << "it is one letter after composing";
}

TEST(NameMask, BytesThatAreNoTextCountAsTheirAscii) {
    EXPECT_EQ(presenceOfName("x\xFFy"), presenceOfName("xy") | kNotAscii);
}
