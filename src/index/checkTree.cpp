#include "index/checkTree.h"

#include <cstring>

#include "index/Cache.h"

namespace {

std::string checkItem(const fs_item_t* item, const fs_item_t* root) {
    if (item->name_length != std::strlen(item->name)) return "a wrong name length";
    if ((item == root) != (item->parent == nullptr)) return "no parent, or one of the root";
    const int kind = item->type & (ITEM_FILE | ITEM_DIRECTORY | ITEM_BUNDLE);
    if (kind != ITEM_FILE && kind != ITEM_DIRECTORY && kind != ITEM_BUNDLE) return "no single type";
    if (item != root && hashmap_find(item->parent->dircontent, item->nameView()) != item)
        return "no place in its parent's map";
    uint64_t steps = 0;
    for (const fs_item_t* above = item; above->parent; above = above->parent)
        if (++steps > 0xFFFF) return "a circle above it";
    return {};
}

std::string checkMap(const fs_item_t* folder) {
    const HashMap* map = folder->dircontent;
    if (!map) return {};
    uint64_t entries = 0;
    std::string wrong;
    hashmap_walk(map, [&](const HashMapEntry* entry) {
        entries++;
        if (entry->value->parent != folder) wrong = "a child with another parent";
        if (entry->key != entry->value->name) wrong = "a key that is not its child's name";
    });
    if (entries != map->count) wrong = "a wrong count of children";
    if (static_cast<double>(map->count) > 0.75 * static_cast<double>(map->capacity))
        wrong = "an overfull map";
    return wrong;
}

}  // namespace

std::string checkTree(Cache& cache) {
    return cache.performBlockReadOnly([&](const ReadSection& section) -> std::string {
        const auto items = cache.items(section);
        const auto masks = cache.nameMasks(section);
        const fs_item_t* root = cache.root(section);
        if (items.empty() || items[0] != root) return "The root is not first";
        if (cache.count() != items.size()) return "The count differs from the array";
        uint64_t children = 0;
        for (uint64_t i = 0; i < items.size(); i++) {
            std::string wrong = items[i]->index == i ? checkItem(items[i], root) : "another index";
            if (wrong.empty()) wrong = checkMap(items[i]);
            if (wrong.empty() && masks[i] != presenceOfName(items[i]->nameView()))
                wrong = "another mask";
            if (!wrong.empty()) return fs_item_url(items[i]).path() + " has " + wrong;
            if (items[i]->dircontent) children += items[i]->dircontent->count;
        }
        // Each item is in one map and each entry's child has this map's folder as its parent: equal
        // numbers say that no child is missing from the array.
        return children + 1 == items.size() ? "" : "The array differs from the tree";
    });
}
