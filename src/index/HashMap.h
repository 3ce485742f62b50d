#pragma once
#include <cstdint>
#include <string_view>

#include "index/ItemPool.h"
#include "index/fs_item.h"

struct HashMapEntry {
    const char* key;  // the child's own name, not a copy
    fs_item_t* value;
    HashMapEntry* next;
};

/// The children of a folder by name: a chained table. Byte for byte: two spellings of a letter are
/// two names. A plain record; its memory is the pool's.
/// Threads: as the Cache it belongs to.
/// Units:   capacity: buckets, 16 at first, doubled as soon as more than 0.75 entries come on one;
///          never less again. The bucket array of an empty map may be missing still.
/// Fails:   without memory the table stays as it is; an entry that finds none is not inserted.
struct HashMap {
    HashMapEntry** buckets;
    uint64_t capacity;
    uint64_t count;
    uint64_t (*hash)(std::string_view key);
    bool (*equal)(const char* key, std::string_view name);
};
static_assert(sizeof(HashMap) == 40 && sizeof(HashMapEntry) == 24, "millions of these are kept");

/// An empty map, without memory of its own.
void hashmap_init(HashMap& map);
/// Null without memory.
HashMap* hashmap_create(ItemPool::Lane& lane);
/// Empty again as at first. The items stay.
void hashmap_clear(ItemPool::Lane& lane, HashMap* map);
/// The map and its entries; the items stay. Null is ignored.
void hashmap_free(ItemPool::Lane& lane, HashMap* map);
/// False when an equal key stands in it already, which stays; or without map, key or memory.
bool hashmap_insert(ItemPool::Lane& lane, HashMap* map, const char* key, fs_item_t* value);
/// Makes an empty map as large as inserting that many one by one would.
bool hashmap_reserve(ItemPool::Lane& lane, HashMap* map, uint64_t count);
fs_item_t* hashmap_find(const HashMap* map, std::string_view name);
/// Takes the entry out. The item stays. A missing key is no error.
void hashmap_remove(ItemPool::Lane& lane, HashMap* map, std::string_view name);

/// Calls f with each entry, bucket by bucket, from the head of each chain.
template <class F>
void hashmap_walk(const HashMap* map, F&& f) {
    if (!map || !map->buckets) return;
    for (uint64_t bucket = 0; bucket < map->capacity; bucket++)
        for (HashMapEntry* entry = map->buckets[bucket]; entry;) {
            HashMapEntry* next = entry->next;  // f may free it
            f(entry);
            entry = next;
        }
}

/// A 64-bit hash of any bytes, with a seed of this process: names cannot be chosen to collide.
/// After the multiply-and-fold hashes of Wang Yi (wyhash, public domain).
uint64_t hashOfName(std::string_view name);
