#include "util/Unicode.h"

#include <gtest/gtest.h>

#include <random>

TEST(Unicode, BadBytesAreNoText) {
    for (const char* bad :
         {"\xff", "a\xC3", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\x80"})
        EXPECT_FALSE(toUtf16(bad)) << testing::PrintToString(bad);
    EXPECT_EQ(toUtf16("a\u00e9\u20ac\U0001F600"), u"a\u00e9\u20ac\U0001F600");
    EXPECT_EQ(toUtf16Lenient("a\xffz\xC3"), u"a\uFFFDz\uFFFD");
    EXPECT_EQ(toUtf16(std::string_view("a\0b", 3)), std::u16string(u"a\0b", 3));
}

TEST(Unicode, LoneSurrogatesDoNotBecomeBadBytes) {
    const char16_t text[] = {0xD800, 'a', 0xDC00, 0xD83D, 0xDE00, 0xD83D};
    EXPECT_EQ(toUtf8({text, 6}), "\uFFFDa\uFFFD\U0001F600\uFFFD");
}

TEST(Unicode, ComposesAndDecomposes) {
    EXPECT_EQ(nfc(u"e\u0301"), u"\u00e9");
    EXPECT_EQ(nfd(u"\u00e9"), u"e\u0301");
    EXPECT_EQ(nfd(u"\uAC01"), u"\u1100\u1161\u11A8");
    EXPECT_EQ(nfc(u"plain"), u"plain");
    EXPECT_EQ(nfd(std::u16string(1000, u'\u1E17')).size(), 3000u) << "grows beyond twice";
    EXPECT_EQ(ruleText("e\xCC\x81\xff"), u"\u00e9\uFFFD");
}

TEST(Unicode, DiacriticsGoAndLettersStay) {
    EXPECT_EQ(stringByRemovingDiacritics(u"Cr\u00e8me br\u00fbl\u00e9e"), u"Creme brulee");
    EXPECT_EQ(stringByRemovingDiacritics(u"a^b`c"), u"abc") << "these have the property too";
    EXPECT_EQ(stringByRemovingDiacritics(u"\uAC01\u00df\u00f8"), u"\uAC01\u00df\u00f8");
}

TEST(Unicode, LowerCaseKeepsPositions) {
    EXPECT_EQ(lowerCasedUnits(u"\u00c4B\u0130\u1E9E"), u"\u00e4b\u0069\u00df");
    EXPECT_EQ(lowerCasedUnits(u"\U00010400x").size(), 3u);
}

TEST(Unicode, DisplayTextShowsWhatWouldSteer) {
    EXPECT_EQ(displayText("a\nb\x7f"), "a\u240Ab\u2421");
    EXPECT_EQ(displayText("x\u202Etxt\u0085\u2028\xff"), "x\uFFFDtxt\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(displayText("h\u00e9llo \U0001F600"), "h\u00e9llo \U0001F600");
}

TEST(Unicode, LogTextIsOneLineOfValidText) {
    EXPECT_EQ(logText("a\tb\r\n\x1b[31m\x7f"), "a\\x09b\\x0D\\x0A\\x1B[31m\\x7F");
    EXPECT_EQ(logText("\u0085\u2028\u2029\u202E"),
              "\\xC2\\x85\\xE2\\x80\\xA8\\xE2\\x80\\xA9\\xE2\\x80\\xAE");
    EXPECT_EQ(logText("\xff\u00e9\xC3"), "\\xFF\u00e9\\xC3");
    EXPECT_EQ(logText(std::string_view("\0", 1)), "\\x00");
}

TEST(Unicode, EveryPathSurvivesAsText) {
    std::mt19937 random(7);
    std::uniform_int_distribution<int> byte(1, 255), length(0, 24), kind(0, 9);
    for (int i = 0; i < 20'000; i++) {
        std::string path;
        for (int n = length(random); n > 0; n--) {
            if (kind(random) == 0)
                path += "\U0010FF80";  // what stands for bad bytes
            else if (kind(random) == 1)
                path += "\u00e9";
            else
                path += static_cast<char>(byte(random));
        }
        const std::string text = pathToText(path);
        ASSERT_TRUE(toUtf16(text)) << testing::PrintToString(path);
        ASSERT_EQ(textToPath(text), path) << testing::PrintToString(path);
    }
    EXPECT_EQ(pathToText("/h\u00e9"), "/h\u00e9");
    EXPECT_EQ(pathToText("/\xff"), "/\U0010FFFF");
}
