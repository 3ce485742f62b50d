#include "index/fs_item_array.h"

#include <cstdlib>

#include "index/fs_item.h"

namespace {
constexpr uint64_t kFirstCapacity = 1024;

bool resize(fs_item_array_t& array, uint64_t capacity) {
    void* items = std::realloc(array.items, capacity * sizeof(void*));
    if (!items) return false;
    array.items = static_cast<fs_item_t**>(items);
    array.capacity = capacity;
    return true;
}
}  // namespace

bool fs_item_array_init(fs_item_array_t& array) {
    array = {nullptr, 0, 0};
    return resize(array, kFirstCapacity);
}

void fs_item_array_free(fs_item_array_t& array) {
    std::free(array.items);
    array = {nullptr, 0, 0};
}

bool fs_item_array_reserve(fs_item_array_t& array, uint64_t more) {
    uint64_t capacity = array.capacity ? array.capacity : kFirstCapacity;
    while (capacity < array.count + more) capacity *= 2;
    return capacity == array.capacity || resize(array, capacity);
}

uint64_t fs_item_array_add(fs_item_array_t& array, fs_item_t* item) {
    if (!fs_item_array_reserve(array, 1)) return kNotInArray;
    array.items[array.count] = item;
    return array.count++;
}

void fs_item_array_remove(fs_item_array_t& array, uint64_t index) {
    if (index == 0 || index >= array.count) return;
    fs_item_t* last = array.items[--array.count];
    array.items[index] = last;
    last->index = index;
}
