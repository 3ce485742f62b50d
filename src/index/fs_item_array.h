#pragma once
#include <cstdint>

struct fs_item_t;

/// A growable array of every item of a Cache, the root first. Position i holds the item whose
/// index is i. Does not own the items.
/// Threads: as the Cache it belongs to.
/// Fails:   where it cannot grow an item is left out; its position is kNotInArray then.
struct fs_item_array_t {
    fs_item_t** items;
    uint64_t count;
    uint64_t capacity;
};

constexpr uint64_t kNotInArray = ~uint64_t{0};

bool fs_item_array_init(fs_item_array_t& array);
void fs_item_array_free(fs_item_array_t& array);
/// Room for that many more; the capacity is doubled as often as adding one by one would.
bool fs_item_array_reserve(fs_item_array_t& array, uint64_t more);
/// The position it took.
uint64_t fs_item_array_add(fs_item_array_t& array, fs_item_t* item);
/// The last one moves into the place. Position 0 is never given up; others beyond the end neither.
void fs_item_array_remove(fs_item_array_t& array, uint64_t index);
