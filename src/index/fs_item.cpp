#include "index/fs_item.h"

#include <cstdlib>

void MetadataDeleter::operator()(fs_item_metadata* metadata) const {
    if (!metadata) return;
    std::free(metadata->attributes);
    std::free(metadata);
}

FileURL fs_item_url(const fs_item_t* item, bool includeItself) {
    size_t length = 1 + (includeItself ? item->name_length : 0);
    for (const fs_item_t* above = item->parent; above && above->parent; above = above->parent)
        length += above->name_length + 1u;
    // One slash too many where the item itself is left out below another one; cut at the end.
    std::string path(length, '/');
    size_t end = length;
    const auto prepend = [&](const fs_item_t* part) {
        end -= part->name_length;
        part->nameView().copy(path.data() + end, part->name_length);
        end--;  // the slash stands there already
    };
    if (includeItself)
        prepend(item);
    else
        end--;
    for (const fs_item_t* above = item->parent; above && above->parent; above = above->parent)
        prepend(above);
    if (!includeItself && length > 1) path.pop_back();
    return FileURL(std::move(path));
}

uint16_t fs_item_depth(const fs_item_t* item) {
    uint16_t depth = 0;
    for (const fs_item_t* above = item->parent; above; above = above->parent) depth++;
    return depth;
}
