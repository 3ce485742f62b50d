#include "modes/rowText.h"

#include <gtest/gtest.h>

namespace {

using Ranges = std::vector<TextRange>;

TEST(rowText, PositionsInTheNameBecomeRangesOfTheName) {
    const RowContent row = makeRowText("main.c", "/home/me/src", {0, 1, 4}, true);
    EXPECT_EQ(row.name, "main.c");
    EXPECT_EQ(row.path, "/home/me/src");
    EXPECT_EQ(row.nameHighlights, (Ranges{{0, 2}, {4, 1}}));
    EXPECT_TRUE(row.pathHighlights.empty());
}

TEST(rowText, PositionsInTheWholePathAreSharedBetweenBothLines) {
    // "/src/main.c": the slash between folder and name belongs to neither line.
    const RowContent row = makeRowText("main.c", "/src", {1, 2, 4, 5, 6}, false);
    EXPECT_EQ(row.pathHighlights, (Ranges{{1, 2}}));
    EXPECT_EQ(row.nameHighlights, (Ranges{{0, 2}}));
}

TEST(rowText, AnItemInTheRootHasTheRootAsItsFolder) {
    const RowContent row = makeRowText("bin", "/", {0, 1}, false);
    EXPECT_EQ(row.path, "/");
    EXPECT_EQ(row.pathHighlights, (Ranges{{0, 1}}));
    EXPECT_EQ(row.nameHighlights, (Ranges{{0, 1}}));
}

TEST(rowText, MarksStayInPlaceInDecomposedNamesAndBehindControlCharacters) {
    // U+0075 U+0308 is one unit once composed; a line break is shown as one visible mark.
    const RowContent row = makeRowText("u\xCC\x88x\ny", "/a", {1, 3}, true);
    EXPECT_EQ(row.name, "\xC3\xBCx\xE2\x90\x8Ay");
    EXPECT_EQ(row.nameHighlights, (Ranges{{1, 1}, {3, 1}}));
}

}  // namespace
