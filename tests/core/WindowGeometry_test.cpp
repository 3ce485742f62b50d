#include "core/WindowGeometry.h"

#include <gtest/gtest.h>

namespace {

constexpr Rect kScreen{0, 0, 1440, 900};

TEST(WindowGeometry, HeightFollowsFromTheRows) {
    EXPECT_EQ(WindowGeometry::heightForRows(0, 0), 64);
    EXPECT_EQ(WindowGeometry::heightForRows(3, 47), 212);
    EXPECT_EQ(WindowGeometry::heightForRows(10, 47), 470 + 63 + 22);
    EXPECT_EQ(WindowGeometry::heightForRows(1, 67), 67 + 63 + 4);
}

TEST(WindowGeometry, ShowsTenRowsUnlessMaximised) {
    EXPECT_EQ(WindowGeometry::rowLimit(false, kScreen, 47), 10);
    EXPECT_EQ(WindowGeometry::rowLimit(true, kScreen, 47), 17);  // (900 - 65) / 49
    EXPECT_EQ(WindowGeometry::rowLimit(true, kScreen, 0), 10);
    EXPECT_EQ(WindowGeometry::rowLimit(true, {0, 0, 100, 20}, 47), 0);
}

TEST(WindowGeometry, GrowsDownwardFromItsTopEdge) {
    const Rect grown = WindowGeometry::withHeight({100, 500, 638, 64}, 212);
    EXPECT_EQ(grown, (Rect{100, 352, 638, 212}));
}

TEST(WindowGeometry, FirstPlaceIsCentredWithItsTopAtAThirdOfTheRest) {
    const Rect frame = WindowGeometry::defaultFrame(kScreen, 638, 64);
    EXPECT_DOUBLE_EQ(frame.x, 401);
    EXPECT_DOUBLE_EQ(frame.y + frame.height, 900 - (900.0 - 515) / 3);
}

TEST(WindowGeometry, KeepsTheOriginForTheFirstPlaceWhereThatIsOnTheScreen) {
    EXPECT_EQ(WindowGeometry::defaultFrame({100, 0, 1440, 900}, 640, 64).x, 400);
    // Beside the primary screen, at its left and reaching higher than it.
    const Rect left{-1280, 280, 1280, 800};
    EXPECT_EQ(WindowGeometry::defaultFrame(left, 640, 65), (Rect{-960, 280 + 705 - 65, 640, 65}));
}

TEST(WindowGeometry, AWindowOffTheScreenComesBackOnIt) {
    EXPECT_EQ(WindowGeometry::onScreen({5000, -900, 638, 64}, kScreen), (Rect{802, 0, 638, 64}));
    // Larger than the screen: its left edge and its top... stay reachable from the origin.
    EXPECT_EQ(WindowGeometry::onScreen({-50, 10, 2000, 64}, kScreen).x, 0);
}

}  // namespace
