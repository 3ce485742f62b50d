// How Cache takes in what a scan found: the same as addPath for each of it, at the cost of one
// section for all.
#include <utility>

#include "index/Cache.h"
#include "index/trace.h"
#include "util/log.h"

void Cache::addBatch(ScanBatch batch) {
    if (batch.items.empty()) return;
    if (!isCurrent()) {
        const ItemPool::Borrowed lane = pool().take();
        discard(*lane, batch);
        return;
    }
    const bool crowded = pending_.push(std::move(batch));
    const bool done =
        section_.tryWrite([&](const WriteSection& section) { takeInBatches(section); });
    if (!done && crowded) takeInBatches();
}

void Cache::takeInBatches() {
    section_.write([&](const WriteSection& section) { takeInBatches(section); });
}

void Cache::takeInBatches(const WriteSection& section) {
    while (!pending_.empty())
        for (ScanBatch& batch : pending_.takeAll()) takeIn(section, batch);
}

void Cache::takeIn(const WriteSection& section, ScanBatch& batch) {
    fs_item_t* folder = nullptr;
    if (batch.structureVersion == tree_.structureVersion()) folder = batch.folderItem;
    if (!folder) folder = fsItemWithURL(section, batch.folder, Create::yes);
    if (!folder) return discard(tree_.pool().writer(), batch);
    if (!folder->dircontent)
        logError("Parent of %s (type %d) has NULL dircontent list",
                 batch.folder.appending(batch.items[0]->nameView()).c_str(), folder->type);
    if (!attachAll(folder, batch)) attachOneByOne(folder, batch);
    noteEvent(batch.fsEventId);
    if (processFlags.dumpCache) dumpItem(section, nullptr, batch.fsEventId);
}

/// Only for a folder that is empty so far.
bool Cache::attachAll(fs_item_t* folder, ScanBatch& batch) {
    if (!batch.children.buckets || (folder->dircontent && folder->dircontent->count > 0))
        return false;
    if (!tree_.attachAll(folder, batch.children, batch.items, batch.nameMasks)) return false;
    if (processFlags.debugCache)
        for (const fs_item_t* item : batch.items)
            traceCache("%llu     + Adding item to cache: %s", EventId{batch.fsEventId},
                       fs_item_url(item).c_str());
    return true;
}

void Cache::attachOneByOne(fs_item_t* folder, ScanBatch& batch) {
    const EventId id = batch.fsEventId;
    ItemPool::Lane& lane = tree_.pool().writer();
    hashmap_clear(lane, &batch.children);
    for (size_t i = 0; i < batch.items.size(); i++) {
        fs_item_t* item = batch.items[i];
        fs_item_t* present = hashmap_find(folder->dircontent, item->nameView());
        if (!present && tree_.attach(folder, item, batch.nameMasks[i])) {
            traceCache("%llu     + Adding item to cache: %s", id, fs_item_url(item).c_str());
            continue;
        }
        if (present && processFlags.processMetadata) {
            std::swap(present->metadata, item->metadata);
            traceCache("%llu     + Returning cached item with updated metadata: %s", id,
                       fs_item_url(present).c_str());
        } else if (present) {
            traceCache("%llu     + Returning cached item: %s", id, fs_item_url(present).c_str());
        }
        drop(lane, item);
    }
}

/// A job that reads the folder may have kept the pointer for what it will find.
void Cache::drop(ItemPool::Lane& lane, fs_item_t* item) {
    if (item->dircontent) tree_.structureChanged();
    ItemTree::free(lane, item);
}

void Cache::discard(ItemPool::Lane& lane, ScanBatch& batch) {
    hashmap_clear(lane, &batch.children);
    for (fs_item_t* item : batch.items) {
        traceCache("%llu     + Not adding path because scan was aborted: %s",
                   EventId{batch.fsEventId}, batch.folder.appending(item->nameView()).c_str());
        drop(lane, item);
    }
}
