#include "index/HashMap.h"

#include <sys/auxv.h>

#include <cstring>

namespace {

constexpr uint64_t kFirstCapacity = 16;
constexpr double kMaxLoad = 0.75;

__extension__ typedef unsigned __int128 Product;

uint64_t fold(uint64_t a, uint64_t b) {
    const Product product = static_cast<Product>(a) * b;
    return static_cast<uint64_t>(product) ^ static_cast<uint64_t>(product >> 64);
}

template <class T>
T load(const char* bytes) {
    T word;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

struct Seed {
    uint64_t first = 0, second = 0;
};

/// The random bytes that the kernel gives each process. Both words stay unknown: whoever knew one
/// could choose words that make a product zero, and so names that collide.
const Seed& seed() {
    thread_local constinit Seed ofProcess;
    if (ofProcess.first == 0) {
        if (const auto* random = reinterpret_cast<const char*>(getauxval(AT_RANDOM)))
            ofProcess = {load<uint64_t>(random), load<uint64_t>(random + 8)};
        ofProcess.first |= 1;
    }
    return ofProcess;
}

bool equalName(const char* key, std::string_view name) {
    return std::strncmp(key, name.data(), name.size()) == 0 && key[name.size()] == '\0';
}

size_t bucketBytes(uint64_t capacity) {
    return capacity * sizeof(void*);
}

HashMapEntry** newBuckets(ItemPool::Lane& lane, uint64_t capacity) {
    void* buckets = lane.allocate(bucketBytes(capacity));
    if (buckets) std::memset(buckets, 0, bucketBytes(capacity));
    return static_cast<HashMapEntry**>(buckets);
}

void freeBuckets(ItemPool::Lane& lane, HashMap* map) {
    lane.free(map->buckets, bucketBytes(map->capacity));
    map->buckets = nullptr;
}

/// The capacity is a power of two, so this is hash modulo capacity.
HashMapEntry** bucketOf(const HashMap* map, std::string_view name) {
    return &map->buckets[map->hash(name) & (map->capacity - 1)];
}

void growTo(ItemPool::Lane& lane, HashMap* map, uint64_t capacity) {
    HashMapEntry** buckets = newBuckets(lane, capacity);
    if (!buckets) return;
    hashmap_walk(map, [&](HashMapEntry* entry) {
        HashMapEntry** head = &buckets[map->hash(entry->key) & (capacity - 1)];
        entry->next = *head;
        *head = entry;
    });
    freeBuckets(lane, map);
    map->buckets = buckets;
    map->capacity = capacity;
}

bool isOverfull(uint64_t count, uint64_t capacity) {
    return static_cast<double>(count) / static_cast<double>(capacity) > kMaxLoad;
}

}  // namespace

uint64_t hashOfName(std::string_view name) {
    constexpr uint64_t kEnd = 0xBF58476D1CE4E5B9;
    const auto [start, secret] = seed();
    const char* at = name.data();
    size_t left = name.size();
    uint64_t hash = start ^ left;
    for (; left > 16; at += 16, left -= 16)
        hash = fold(load<uint64_t>(at) ^ secret, load<uint64_t>(at + 8) ^ hash);
    uint64_t a = 0, b = 0;
    if (left >= 8) {
        a = load<uint64_t>(at);
        b = load<uint64_t>(at + left - 8);
    } else if (left >= 4) {
        a = load<uint32_t>(at);
        b = load<uint32_t>(at + left - 4);
    } else if (left > 0) {
        a = static_cast<uint64_t>(static_cast<uint8_t>(at[0])) << 16 |
            static_cast<uint64_t>(static_cast<uint8_t>(at[left / 2])) << 8 |
            static_cast<uint8_t>(at[left - 1]);
    }
    return fold(fold(a ^ secret, b ^ hash) ^ start, kEnd);
}

void hashmap_init(HashMap& map) {
    map = {nullptr, kFirstCapacity, 0, hashOfName, equalName};
}

HashMap* hashmap_create(ItemPool::Lane& lane) {
    auto* map = static_cast<HashMap*>(lane.allocate(sizeof(HashMap)));
    if (map) hashmap_init(*map);
    return map;
}

void hashmap_clear(ItemPool::Lane& lane, HashMap* map) {
    hashmap_walk(map, [&](HashMapEntry* entry) { lane.free(entry, sizeof *entry); });
    freeBuckets(lane, map);
    hashmap_init(*map);
}

void hashmap_free(ItemPool::Lane& lane, HashMap* map) {
    if (!map) return;
    hashmap_clear(lane, map);
    lane.free(map, sizeof *map);
}

bool hashmap_reserve(ItemPool::Lane& lane, HashMap* map, uint64_t count) {
    uint64_t capacity = kFirstCapacity;
    while (isOverfull(count, capacity)) capacity *= 2;
    freeBuckets(lane, map);
    map->buckets = newBuckets(lane, capacity);
    if (map->buckets) map->capacity = capacity;
    return map->buckets != nullptr;
}

bool hashmap_insert(ItemPool::Lane& lane, HashMap* map, const char* key, fs_item_t* value) {
    if (!map || !key) return false;
    if (!map->buckets && !(map->buckets = newBuckets(lane, map->capacity))) return false;
    const std::string_view name = key;
    HashMapEntry** head = bucketOf(map, name);
    for (HashMapEntry* entry = *head; entry; entry = entry->next)
        if (map->equal(entry->key, name)) return false;
    auto* entry = static_cast<HashMapEntry*>(lane.allocate(sizeof(HashMapEntry)));
    if (!entry) return false;
    *entry = {key, value, *head};
    *head = entry;
    if (isOverfull(++map->count, map->capacity)) growTo(lane, map, map->capacity * 2);
    return true;
}

fs_item_t* hashmap_find(const HashMap* map, std::string_view name) {
    if (!map || map->count == 0 || name.data() == nullptr) return nullptr;
    for (HashMapEntry* entry = *bucketOf(map, name); entry; entry = entry->next)
        if (map->equal(entry->key, name)) return entry->value;
    return nullptr;
}

void hashmap_remove(ItemPool::Lane& lane, HashMap* map, std::string_view name) {
    if (!map || map->count == 0) return;
    for (HashMapEntry** link = bucketOf(map, name); *link; link = &(*link)->next) {
        if (!map->equal((*link)->key, name)) continue;
        HashMapEntry* entry = *link;
        *link = entry->next;
        lane.free(entry, sizeof *entry);
        map->count--;
        return;
    }
}
