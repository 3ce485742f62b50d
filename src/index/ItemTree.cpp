#include "index/ItemTree.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

bool isItemName(std::string_view name) {
    return !name.empty() && name.size() <= ItemPool::kMaxName &&
           name.find_first_of(std::string_view("\0/", 2)) == std::string_view::npos;
}

ItemTree::ItemTree() {
    root_ =
        make(pool_.writer(), {.name = "/", .type = ITEM_DIRECTORY, .inode = 0, .withMap = true});
    fs_item_array_init(all_);
    nameMasks_ = static_cast<NameMask*>(std::malloc(all_.capacity * sizeof(NameMask)));
    append(root_, presenceOfName("/"));
}

ItemTree::~ItemTree() {
    fs_item_array_free(all_);
    std::free(nameMasks_);
}

fs_item_t* ItemTree::make(ItemPool::Lane& lane, const NewItem& properties) {
    auto* item = static_cast<fs_item_t*>(lane.allocate(sizeof(fs_item_t)));
    if (!item) return nullptr;
    *item = {};
    item->name = lane.allocateName(properties.name);
    if (!item->name) {
        lane.free(item, sizeof *item);
        return nullptr;
    }
    item->name_length = static_cast<uint16_t>(properties.name.size());
    item->type = properties.type;
    item->index = kNotInArray;
    item->inode = properties.inode;
    if (properties.withMap) item->dircontent = hashmap_create(lane);
    return item;
}

void ItemTree::free(ItemPool::Lane& lane, fs_item_t* item) {
    hashmap_free(lane, item->dircontent);
    setMetadata(lane, item, nullptr);
    lane.freeName(item->name, item->name_length);
    lane.free(item, sizeof *item);
}

void ItemTree::setMetadata(ItemPool::Lane& lane, fs_item_t* item,
                           const fs_item_metadata* metadata) {
    if (item->metadata) std::free(item->metadata->attributes);
    if (!metadata) {
        lane.free(item->metadata, sizeof *item->metadata);
        item->metadata = nullptr;
        return;
    }
    if (!item->metadata)
        item->metadata = static_cast<fs_item_metadata*>(lane.allocate(sizeof *metadata));
    if (item->metadata) *item->metadata = *metadata;
}

bool ItemTree::reserve(uint64_t more) {
    const uint64_t capacity = all_.capacity;
    if (!fs_item_array_reserve(all_, more)) return false;
    if (all_.capacity == capacity) return true;
    void* masks = std::realloc(nameMasks_, all_.capacity * sizeof(NameMask));
    if (!masks) {
        all_.capacity = capacity;  // the larger block of pointers is no harm
        return false;
    }
    nameMasks_ = static_cast<NameMask*>(masks);
    return true;
}

bool ItemTree::append(fs_item_t* item, NameMask mask) {
    item->index = reserve(1) ? fs_item_array_add(all_, item) : kNotInArray;
    if (item->index == kNotInArray) return false;
    nameMasks_[item->index] = mask;
    count_ = all_.count;
    return true;
}

bool ItemTree::ensureMap(fs_item_t* item) {
    if (!item->dircontent) item->dircontent = hashmap_create(pool_.writer());
    return item->dircontent != nullptr;
}

bool ItemTree::attach(fs_item_t* parent, fs_item_t* item, NameMask mask) {
    if (!ensureMap(parent) || !hashmap_insert(pool_.writer(), parent->dircontent, item->name, item))
        return false;
    item->parent = parent;
    append(item, mask);
    return true;
}

bool ItemTree::attachAll(fs_item_t* parent, const HashMap& children,
                         std::span<fs_item_t* const> items, std::span<const NameMask> masks) {
    if (!ensureMap(parent)) return false;
    hashmap_clear(pool_.writer(), parent->dircontent);
    *parent->dircontent = children;
    const bool room = reserve(items.size());
    uint64_t index = all_.count;
    for (fs_item_t* item : items) {
        item->parent = parent;
        item->index = room ? index++ : kNotInArray;
    }
    if (!room) return true;
    std::copy(items.begin(), items.end(), all_.items + all_.count);
    std::copy(masks.begin(), masks.end(), nameMasks_ + all_.count);
    all_.count += items.size();
    count_ = all_.count;
    return true;
}

void ItemTree::removeFromArray(fs_item_t* item) {
    const uint64_t index = item->index;
    if (index == 0 || index >= all_.count) return;
    nameMasks_[index] = nameMasks_[all_.count - 1];
    fs_item_array_remove(all_, index);
    count_ = all_.count;
}

void ItemTree::removeFromMap(fs_item_t* item) {
    if (item->parent) hashmap_remove(pool_.writer(), item->parent->dircontent, item->nameView());
}

bool ItemTree::relocate(fs_item_t* item, fs_item_t* parent, std::string_view name) {
    ItemPool::Lane& lane = pool_.writer();
    if (!ensureMap(parent) || hashmap_find(parent->dircontent, name)) return false;
    const char* newName = item->name;
    if (name != item->nameView() && !(newName = lane.allocateName(name))) return false;
    removeFromMap(item);
    if (newName != item->name) {
        lane.freeName(item->name, item->name_length);
        item->name = newName;
        item->name_length = static_cast<uint16_t>(name.size());
        if (item->index < all_.count) nameMasks_[item->index] = presenceOfName(name);
    }
    item->parent = parent;
    // Cannot fail: the name is free, and the entry that has just been given back serves again.
    hashmap_insert(lane, parent->dircontent, item->name, item);
    structureChanged();
    return true;
}

void ItemTree::clearRoot() {
    hashmap_clear(pool_.writer(), root_->dircontent);
    setMetadata(pool_.writer(), root_, nullptr);
}
