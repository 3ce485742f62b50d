#pragma once
#include <cstdint>
#include <mutex>
#include <vector>

#include "index/ItemTree.h"
#include "util/FileURL.h"

/// What a scan found in one folder (or a part of a large one): records that are complete but stand
/// in no tree yet. Building them costs no lock; taking them in costs one for all of them. The
/// result is the same as if each had been added by its path.
struct ScanBatch {
    FileURL folder;
    /// The folder's item, good as long as the tree's structure has that version; else it is looked
    /// up by its path.
    fs_item_t* folderItem = nullptr;
    uint64_t structureVersion = 0;
    uint64_t fsEventId = 0;
    std::vector<fs_item_t*> items = {};  // owned
    std::vector<NameMask> nameMasks = {};
    HashMap children = {};  // of just these items; without buckets they go in one by one

    /// Adds a record of the lane's. Null without memory.
    fs_item_t* add(ItemPool::Lane& lane, const ItemTree::NewItem& properties);
    /// Makes the map, for a folder that has no children so far. There is none for items that share
    /// a name: a folder that changes while it is read can tell one twice.
    void makeMap(ItemPool::Lane& lane);
};

/// Batches that wait for the Cache's section, in the order in which they came: nobody who fills
/// them waits behind a search that reads, unless there are many.
/// Threads: any.
class PendingBatches {
  public:
    /// Whether so much waits that the caller should wait to have it taken in.
    [[nodiscard]] bool push(ScanBatch batch);
    std::vector<ScanBatch> takeAll();
    bool empty() const { return waiting_ == 0; }

  private:
    std::mutex mutex_;
    std::vector<ScanBatch> batches_;
    uint64_t items_ = 0;
    Relaxed<uint64_t> waiting_ = 0;
};
