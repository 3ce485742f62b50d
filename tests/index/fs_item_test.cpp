#include "index/fs_item.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

TEST(fs_item_array, DoublesItsCapacityAndKeepsPositions) {
    fs_item_array_t array;
    ASSERT_TRUE(fs_item_array_init(array));
    std::vector<fs_item_t> items(1025);
    for (fs_item_t& item : items) {
        EXPECT_EQ(array.capacity, 1024u);
        item.index = fs_item_array_add(array, &item);
    }
    EXPECT_EQ(array.capacity, 2048u);
    for (uint64_t i = 0; i < 1025; i++) EXPECT_EQ(array.items[items[i].index], &items[i]);

    fs_item_array_remove(array, 1024);
    EXPECT_EQ(array.count, 1024u);
    EXPECT_EQ(items[1023].index, 1023u);
    fs_item_array_remove(array, 5);
    EXPECT_EQ(items[1023].index, 5u);
    EXPECT_EQ(array.items[5], &items[1023]);
    for (uint64_t index : {uint64_t{0}, uint64_t{1023}, kNotInArray})
        fs_item_array_remove(array, index);
    EXPECT_EQ(array.count, 1023u) << "the root and what is not in it stay";
    fs_item_array_free(array);
}

namespace {
fs_item_t itemNamed(const char* name, fs_item_t* parent) {
    fs_item_t item = {};
    item.name = name;
    item.name_length = static_cast<uint16_t>(std::strlen(name));
    item.parent = parent;
    return item;
}
}  // namespace

TEST(fs_item_url, JoinsTheNamesBelowTheRoot) {
    fs_item_t root = itemNamed("/", nullptr), a = itemNamed("a", &root), b = itemNamed("b c", &a);
    EXPECT_EQ(fs_item_url(&a).path(), "/a");
    EXPECT_EQ(fs_item_url(&b).path(), "/a/b c");
    EXPECT_EQ(fs_item_url(&b, false).path(), "/a");
    EXPECT_EQ(fs_item_url(&a, false).path(), "/");
    EXPECT_EQ(fs_item_depth(&b), 2);
    EXPECT_EQ(fs_item_depth(&root), 0);
}

TEST(fs_item_url, KeepsTwoSlashesForTheRoot) {
    const fs_item_t root = itemNamed("/", nullptr);
    EXPECT_EQ(fs_item_url(&root).path(), "//");
}
