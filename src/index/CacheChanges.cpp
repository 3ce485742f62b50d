// The operations of Cache that remove and move what stands in it.
#include <utility>
#include <vector>

#include "index/Cache.h"
#include "index/Metadata.h"
#include "index/trace.h"
#include "util/log.h"

namespace {

constexpr uint8_t kRenamed = 4;

bool isAtOrBelow(const fs_item_t* item, const fs_item_t* folder) {
    while (item && item != folder) item = item->parent;
    return item != nullptr;
}

}  // namespace

void Cache::tellOfRemoval(const fs_item_t* item, uint64_t fsEventId, Marks marks) {
    traceCache("%llu     - Removing item from cache: %s", EventId{fsEventId},
               fs_item_url(item).c_str());
    if (marks == Marks::follow && observer_.hasMarkedPaths())
        observer_.updatePathCachesAfterRemovePath(fs_item_url(item));
    observer_.removeFilteredItem(item);
}

void Cache::removeFsItem(const WriteSection&, fs_item_t* item, uint64_t fsEventId, Marks marks) {
    if (!item) return;
    struct Level {
        fs_item_t* item;
        uint64_t bucket = 0;
        HashMapEntry* entry = nullptr;
    };
    const auto nextChild = [](Level& level) -> fs_item_t* {
        const HashMap* map = level.item->dircontent;
        if (!map || !map->buckets) return nullptr;
        while (!level.entry && level.bucket < map->capacity)
            level.entry = map->buckets[level.bucket++];
        return level.entry ? std::exchange(level.entry, level.entry->next)->value : nullptr;
    };
    ItemPool::Lane& lane = tree_.pool().writer();
    std::vector<Level> levels;
    const auto enter = [&](fs_item_t* entered) {
        tellOfRemoval(entered, fsEventId, marks);
        tree_.removeFromArray(entered);
        if (entered->dircontent) tree_.structureChanged();
        levels.push_back({entered});
    };
    enter(item);
    while (!levels.empty()) {
        if (fs_item_t* child = nextChild(levels.back())) {
            enter(child);
            continue;
        }
        fs_item_t* done = levels.back().item;
        levels.pop_back();
        if (done == tree_.root())
            tree_.clearRoot();
        else
            ItemTree::free(lane, done);
    }
}

void Cache::removePath(const FileURL& url, uint64_t fsEventId, Marks marks) {
    removeRecentItemsBelowURL(url);
    performBlockExclusive(
        [&](const WriteSection& section) { removeFromTree(section, url, fsEventId, marks); });
}

void Cache::removePath(const WriteSection& section, const FileURL& url, uint64_t fsEventId) {
    removeRecentItemsBelowURL(url);
    removeFromTree(section, url, fsEventId, Marks::follow);
}

void Cache::removeFromTree(const WriteSection& section, const FileURL& url, uint64_t fsEventId,
                           Marks marks) {
    traceCache("%llu     -> Removing path from cache: %s", EventId{fsEventId}, url.c_str());
    fs_item_t* item = fsItemWithURL(section, url, Create::no);
    if (!item) return;
    tree_.removeFromMap(item);
    removeFsItem(section, item, fsEventId, marks);
    observer_.consolidateFilteredList();
    noteEvent(fsEventId);
}

MoveStatus Cache::movePath(const FileURL& from, const FileURL& to, const MovePath& with) {
    return performBlockExclusive(
        [&](const WriteSection& section) { return movePath(section, from, to, with); });
}

MoveStatus Cache::movePath(const WriteSection& section, const FileURL& from, const FileURL& to,
                           const MovePath& with) {
    const EventId id = with.forFsEventId;
    traceCache("%llu     Moving %s (%llu) -> %s (%llu); Include in Recent Items: %d", id,
               from.c_str(), EventId{with.fromInode}, to.c_str(), EventId{with.toInode},
               with.includeInRecentItems);
    fs_item_t* parent = fsItemWithURL(section, to.deletingLastPathComponent(), Create::no);
    if (!parent) {
        traceCache("%llu     Destination is out of scope. Removing source.", id);
        removePath(section, from, with.forFsEventId);
        return MoveStatus::sourceRemoved;
    }
    fs_item_t* item = fsItemWithURL(section, from, Create::no);
    if (!item) {
        traceCache("%llu     Source not found in cache. Aborting.", id);
        if (!existsFsItemWithPath(section, to)) {
            traceCache("%llu     Move destination is not in cache either.", id);
            return MoveStatus::unknown;
        }
        traceCache("%llu     Move destination is in cache already. Ignoring event.", id);
        return MoveStatus::destinationExists;
    }
    if (!relocate(section, item, parent, to, with.forFsEventId))
        return MoveStatus::destinationExists;
    struct statx found;
    if (processFlags.processMetadata && with.forFsEventId == 0 && statItem(to.c_str(), found))
        setMetadata(item, metadataFromStatBuf(&found));
    traceCache("%llu     New absolute path: %s", id, fs_item_url(item).c_str());
    noteEvent(with.forFsEventId);
    observer_.updatePathCachesAfterRename(from, to);
    // Kept: the records that the renaming would find have just been removed, so whatever was moved
    // comes back as a fresh record.
    removeRecentItemsBelowURL(from);
    if (with.includeInRecentItems && !renameRecentItemsFrom(from, to))
        addRecentItem(to, {.inode = with.toInode, .ofType = with.ofType, .change = kRenamed});
    return MoveStatus::moved;
}

bool Cache::relocate(const WriteSection& section, fs_item_t* item, fs_item_t* parent,
                     const FileURL& to, uint64_t fsEventId) {
    const EventId id = fsEventId;
    const std::string_view name = to.lastPathComponent();
    if (!item->parent) {
        logError("Cannot move root item");
        return false;
    }
    if (!checkName(name, to) || isAtOrBelow(parent, item)) return false;
    if (name != item->nameView())
        traceCache("%llu     Item names differ. Assigning name of destination to name of source",
                   id);
    if (parent != item->parent) traceCache("%llu     Performing move.", id);
    if (name == item->nameView() && parent == item->parent) return true;
    if (fs_item_t* replaced = hashmap_find(parent->dircontent, name)) {
        if (isAtOrBelow(item, replaced)) return false;  // it cannot make way for what it holds
        tree_.removeFromMap(replaced);
        removeFsItem(section, replaced, fsEventId);
        observer_.consolidateFilteredList();
    }
    return tree_.relocate(item, parent, name);
}
