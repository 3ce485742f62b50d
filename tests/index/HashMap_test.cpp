#include "index/HashMap.h"

#include <gtest/gtest.h>

#include <cstring>
#include <deque>
#include <set>
#include <string>

namespace {

struct HashMapTest : testing::Test {
    bool insert(const std::string& name, fs_item_t* value) {
        return hashmap_insert(lane, map, names.emplace_back(name).c_str(), value);
    }
    std::deque<std::string> names;
    ItemPool pool;
    ItemPool::Lane& lane = pool.writer();
    HashMap* map = hashmap_create(lane);
    fs_item_t items[200] = {};
};

TEST_F(HashMapTest, ThirteenthEntryDoublesSixteenBuckets) {
    for (size_t i = 0; i < 12; i++) insert("n" + std::to_string(i), &items[i]);
    EXPECT_EQ(map->capacity, 16u);
    insert("n12", &items[12]);
    EXPECT_EQ(map->capacity, 32u);
    for (size_t i = 0; i < 13; i++)
        EXPECT_EQ(hashmap_find(map, "n" + std::to_string(i)), &items[i]);
    for (uint64_t count : {0u, 12u, 13u, 24u, 25u, 97u}) {
        HashMap reserved;
        hashmap_init(reserved);
        hashmap_reserve(lane, &reserved, count);
        HashMap grown;
        hashmap_init(grown);
        for (size_t i = 0; i < count; i++)
            hashmap_insert(lane, &grown, names.emplace_back(std::to_string(i)).c_str(), items);
        EXPECT_EQ(reserved.capacity, grown.capacity) << count;
    }
}

TEST_F(HashMapTest, FirstValueOfANameStays) {
    EXPECT_TRUE(insert("same", &items[0]));
    EXPECT_FALSE(insert("same", &items[1]));
    EXPECT_EQ(map->count, 1u);
    EXPECT_EQ(hashmap_find(map, "same"), &items[0]);
    EXPECT_FALSE(hashmap_insert(lane, nullptr, "x", &items[0]));
    EXPECT_FALSE(hashmap_insert(lane, map, nullptr, &items[0]));
    EXPECT_EQ(hashmap_find(nullptr, "same"), nullptr);
}

TEST_F(HashMapTest, NamesAreBytes) {
    const char* different[] = {"a", "A", "a\u0308", "\u00E4", "\xFF", "\xFE", "a\xFF", "ab", "abc"};
    for (size_t i = 0; i < std::size(different); i++) EXPECT_TRUE(insert(different[i], &items[i]));
    for (size_t i = 0; i < std::size(different); i++)
        EXPECT_EQ(hashmap_find(map, different[i]), &items[i]) << different[i];
    hashmap_remove(lane, map, "ab");
    hashmap_remove(lane, map, "nobody");
    EXPECT_EQ(hashmap_find(map, "ab"), nullptr);
    EXPECT_EQ(hashmap_find(map, "abc"), &items[8]);
    EXPECT_EQ(map->count, std::size(different) - 1);
}

// Not-UTF-8 names must spread like others, or one folder of them stops the program.
TEST_F(HashMapTest, NamesOfAnyBytesSpread) {
    std::set<uint64_t> low;
    for (int i = 0; i < 4096; i++)
        low.insert(hashOfName("\xFF\xFE" + std::to_string(i) + "\x80") % 4096);
    EXPECT_GT(low.size(), 2300u) << "4096 (1 - 1/e) is 2589";
    for (size_t length = 0; length < 64; length++) {  // every byte counts
        const std::string name(length, 'x');
        for (size_t at = 0; at < length; at++) {
            std::string other = name;
            other[at] = 'y';
            EXPECT_NE(hashOfName(name), hashOfName(other)) << length << " " << at;
        }
    }
}

TEST(ItemPool, FreedMemoryServesAgainForTheSameSize) {
    ItemPool pool;
    const auto round = [&](ItemPool::Lane& lane) {
        std::vector<std::pair<const char*, size_t>> names;
        std::vector<std::pair<void*, size_t>> blocks;
        for (size_t i = 0; i < 30'000; i++) {
            const std::string name(1 + i * 7 % 255, 'n');
            names.emplace_back(lane.allocateName(name), name.size());
            blocks.emplace_back(lane.allocate(8 + i % 140 * 8), 8 + i % 140 * 8);
            ASSERT_EQ(names.back().first, name);
            std::memset(blocks.back().first, 0xAA, blocks.back().second);
        }
        for (const auto& [name, length] : names) {
            ASSERT_EQ(std::strlen(name), length) << "another block lies over it";
            pool.writer().freeName(name, length);
        }
        for (const auto& [block, size] : blocks) pool.writer().free(block, size);
    };
    round(pool.writer());
    const size_t bytes = pool.slabBytes();
    for (int i = 0; i < 3; i++) round(pool.writer());
    EXPECT_EQ(pool.slabBytes(), bytes);
    for (int i = 0; i < 3; i++) {
        const ItemPool::Borrowed lane = pool.take();
        round(*lane);
    }
    EXPECT_LE(pool.slabBytes(), bytes + (2 << 20)) << "other lanes find what was freed";
}

}  // namespace
