#include "modes/framework/Selection.h"

#include <gtest/gtest.h>

namespace {

Selection select(std::vector<Selection::Item> items, std::optional<FileURL> path = {}) {
    Selection selection;
    selection.selectedItems = std::move(items);
    selection.pathSelection = std::move(path);
    return selection;
}

Selection renamed(Selection selection) {
    selection.renamePath(FileURL("/a/b"), FileURL("/new"));
    return selection;
}

TEST(Selection, FollowsTheRenameOfThePathSelectionAndOfWhatIsAboveIt) {
    EXPECT_EQ(renamed(select({}, FileURL("/a/b"))), select({}, FileURL("/new")));
    EXPECT_EQ(renamed(select({}, FileURL("/a/b/c"))), select({}, FileURL("/new/c")));
    EXPECT_EQ(renamed(select({}, FileURL("/a/bc"))), select({}, FileURL("/a/bc")));
}

TEST(Selection, FollowsTheRenameOfASelectedItemAndKeepsTheOrder) {
    EXPECT_EQ(renamed(select({FileURL("/z"), FileURL("/a/b"), FileURL("/y")})),
              select({FileURL("/z"), FileURL("/new"), FileURL("/y")}));
}

TEST(Selection, KeepsItemsBelowUnlessThePathSelectionIsBelowToo) {
    const std::vector<Selection::Item> items = {FileURL("/a/b/x"), FileURL("/a/bc"), FileURL("/a")};
    const std::vector<Selection::Item> followed = {FileURL("/new/x"), FileURL("/a/bc"),
                                                   FileURL("/a")};
    EXPECT_EQ(renamed(select(items)), select(items));
    EXPECT_EQ(renamed(select(items, FileURL("/a/b"))), select(items, FileURL("/new")));
    EXPECT_EQ(renamed(select(items, FileURL("/a/b/c"))), select(followed, FileURL("/new/c")));
}

TEST(Selection, LeavesItemsThatAreNoPathsAlone) {
    const std::vector<Selection::Item> items = {uint64_t{7}, FileURL("/a/b")};
    EXPECT_EQ(renamed(select(items)), select(items));
}

}  // namespace
