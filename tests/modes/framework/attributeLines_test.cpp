#include "modes/framework/attributeLines.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/stat.h>

#include "index/fs_item.h"
#include "util/Unicode.h"

namespace {

AttributeDisplay displayOf(int64_t showMetadata, std::initializer_list<uint64_t> attributes) {
    AttributeDisplay display{.showMetadata = showMetadata};
    for (const uint64_t attribute : attributes) display.visibleAttributes.add(attribute);
    return display;
}

std::vector<std::string> highlightedTexts(const RowLine& line) {
    std::vector<std::string> texts;
    const std::u16string text = *toUtf16(line.text);
    for (const TextRange& range : line.highlights)
        texts.push_back(toUtf8(std::u16string_view(text).substr(range.location, range.length)));
    return texts;
}

const fs_item_metadata kFile{.mtime = 1'000'000'000,
                             .ctime = 1'100'000'000,
                             .btime = 900'000'000,
                             .atime = 1'200'000'000,
                             .uid = 0,
                             .gid = 4294967294,
                             .mode = S_IFREG | 0640,
                             .size = 5,
                             .nlink = 1234,
                             .attributes = nullptr};

TEST(AttributeLines, AsManyAsTheQueriesHaveKinds) {
    struct Case {
        uint64_t mode;
        int64_t show;
        std::initializer_list<uint64_t> attributes;
        unsigned rows;
    };
    const Case cases[] = {
        {1, 0, {1, 16}, 0},         {1, 1, {}, 2},           {1, 2, {}, 0},
        {1, 2, {1, 2, 15}, 1},      {1, 2, {16, 128}, 1},    {8, 2, {4, 64}, 2},
        {2, 2, {32, 1024, 512}, 0}, {4, 2, {8, 256, 32}, 2}, {16, 1, {1}, 0},
        {32, 2, {1, 16}, 0},        {1, 3, {1}, 0},
    };
    for (const Case& c : cases)
        EXPECT_EQ(requiredNumberOfRows(c.mode, displayOf(c.show, c.attributes)), c.rows)
            << c.mode << ' ' << c.show;
}

TEST(AttributeLines, TheSettingDecidesUnlessItIsIgnored) {
    for (const int64_t show : {0, 1, 2, 3}) {
        const AttributeDisplay display = displayOf(show, {16});
        EXPECT_EQ(shouldDisplayAttribute(display, 16), show == 1 || show == 2);
        EXPECT_EQ(shouldDisplayAttribute(display, 64), show == 1);
        EXPECT_TRUE(shouldDisplayAttribute(display, 16, IgnoreSettings::yes));
        EXPECT_FALSE(shouldDisplayAttribute(display, 64, IgnoreSettings::yes));
    }
}

TEST(AttributeLines, WhatIsQueriedIsHighlighted) {
    const RowLine plain = sizeAndOwnerLine(kFile, displayOf(1, {1}));
    const passwd* user = getpwuid(0);
    const std::string name = user ? user->pw_name : "(unknown)";
    EXPECT_EQ(plain.text, "⚖️ 5 Bytes 👤 " + name + " 👥 (unknown) 🔒 rw- r-- --- 🔗 1234");
    EXPECT_TRUE(plain.highlights.empty());
    const RowLine all = sizeAndOwnerLine(kFile, displayOf(2, {16, 32, 64, 128, 256}));
    EXPECT_EQ(highlightedTexts(all),
              (std::vector<std::string>{"5 Bytes", name, "(unknown)", "1234"}));
}

TEST(AttributeLines, DatesStandInOneOrder) {
    const RowLine line = timestampsLine(kFile, displayOf(2, {1, 8}), nullptr);
    const auto texts = highlightedTexts(line);
    ASSERT_EQ(texts.size(), 2u);
    EXPECT_TRUE(line.text.starts_with("✨ " + texts[0] + " ✏️ ")) << line.text;
    EXPECT_TRUE(line.text.ends_with(" 👁️ " + texts[1])) << line.text;
    EXPECT_NE(line.text.find(" 📎 "), std::string::npos);
    EXPECT_NE(texts[0].find("98"), std::string::npos) << "of July 1998";
    EXPECT_NE(texts[1].find("08"), std::string::npos) << "of January 2008";
}

TEST(AttributeLines, OfAnyDateThoseThatMatchedAreHighlighted) {
    IndexSet matched;
    matched.add(2);
    matched.add(4);
    const auto texts = highlightedTexts(timestampsLine(kFile, displayOf(2, {15}), &matched));
    ASSERT_EQ(texts.size(), 2u);
    EXPECT_NE(texts[0].find("01"), std::string::npos) << "of September 2001";
    EXPECT_NE(texts[1].find("04"), std::string::npos) << "of November 2004";
    EXPECT_TRUE(timestampsLine(kFile, displayOf(2, {15}), nullptr).highlights.empty());
    EXPECT_TRUE(timestampsLine(kFile, displayOf(2, {16}), &matched).highlights.empty());
}

}  // namespace
