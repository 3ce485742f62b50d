#pragma once
#include <cstdint>
#include <span>

#include "index/CacheArguments.h"
#include "index/IndexObserver.h"
#include "index/ItemTree.h"
#include "index/RecentItems.h"
#include "index/ScanBatch.h"
#include "util/FunctionRef.h"
#include "util/Observable.h"
#include "util/Relaxed.h"
#include "util/Result.h"
#include "util/Section.h"

class FileTypes;

/// The index of one project: the tree of its items, the same items as a flat array, and
/// what changed lately. Rooted at "/" whatever the project.
/// Owner:   TRVSearchMode, one per project in use. Owns every fs_item_t; lends pointers
///          only inside a section.
/// Threads: any. Calls with a section token are made inside one; all others enter one, so
///          not from inside. Order: a section first, then the recent-items lock. The observer is
///          called inside exclusive sections; only currentCache() is asked outside.
/// Units:   whole seconds; names are bytes as on disk; fsEventId 0: no event caused it.
/// Fails:   by value (null, status) and a log line; nothing throws.
///
/// Three things differ from taking each step at its word, because memory would be freed that is
/// still in use: a folder's item that has no map gets one with its first child; an item that stands
/// where another one is moved to makes way; the root stays, whatever is removed or moved.
class Cache {
  public:
    Cache(IndexObserver& observer, const FileTypes& fileTypes);
    /// Tells the observer of every item, then gives all memory back at once.
    ~Cache();
    Cache(const Cache&) = delete;
    Cache& operator=(const Cache&) = delete;

    // The tree, changed: exclusive.
    AddPathResult addPath(const FileURL& url, AddPath with);
    MoveStatus movePath(const FileURL& from, const FileURL& to, const MovePath& with);
    void removePath(const FileURL& url, uint64_t fsEventId, Marks marks = Marks::follow);
    void removePath(const WriteSection&, const FileURL& url, uint64_t fsEventId);
    void removeFsItem(const WriteSection&, fs_item_t* item, uint64_t fsEventId,
                      Marks marks = Marks::follow);
    /// Null when it is not in the tree.
    fs_item_t* fsItemWithURL(const ReadSection&, const FileURL& url) const;
    /// With Create the components that are missing are made, as far as they exist on disk.
    fs_item_t* fsItemWithURL(const WriteSection&, const FileURL& url, Create create);
    bool existsFsItemWithPath(const ReadSection& section, const FileURL& url) const {
        return fsItemWithURL(section, url) != nullptr;
    }

    const FileTypes& fileTypes() const { return fileTypes_; }

    // What a scan adds. Batches get in as soon as the section is free; at once when many wait.
    ItemPool& pool() { return tree_.pool(); }
    uint64_t structureVersion() const { return tree_.structureVersion(); }
    void addBatch(ScanBatch batch);
    /// After it everything that was added stands in the tree.
    void takeInBatches();

    // Sections.
    template <class F>
    decltype(auto) performBlockReadOnly(F&& f) {
        return section_.read(std::forward<F>(f));
    }
    template <class F>
    decltype(auto) performBlockExclusive(F&& f) {
        return section_.write([&](const WriteSection& section) -> decltype(auto) {
            takeInBatches(section);
            return f(section);
        });
    }
    /// Calls f with each item of the positions in order, null past the end; ends when f answers
    /// false. True unless it ended early.
    bool performBlockWithItemsInRange(const ReadSection&, IndexRange range,
                                      FunctionRef<bool(fs_item_t*)> f) const;
    /// All items by position, and the masks of their names by the same positions.
    std::span<fs_item_t* const> items(const ReadSection&) const;
    std::span<const NameMask> nameMasks(const ReadSection&) const;
    fs_item_t* root(const ReadSection&) const { return tree_.root(); }
    /// The root included: an empty cache gives 1. Without a section.
    uint64_t count() const { return tree_.count(); }
    void waitUntilAllOperationsAreFinished() {}

    // Recent items.
    void addRecentItem(const FileURL& url, const RecentItemChange& with);
    bool renameRecentItemsFrom(const FileURL& from, const FileURL& to);
    void removeRecentItemsBelowURL(const FileURL& url);
    /// Of the first record with the path. The name has no say.
    std::optional<size_t> indexOfRecentItemExistsWithName(std::string_view name,
                                                          const FileURL& path) const;
    std::vector<RecentItem> recentItems() const;

    // When the result list should be refreshed. Any thread, no lock.
    void setNextResultListUpdateDue() { cacheModifiedByFsEventUpdate_ = 1; }
    bool resultListUpdateDue() const;
    void resultListUpdated();
    /// The id to resume events from; 0 when none was seen.
    uint64_t nextFsEventId() const;
    uint64_t lastEventStreamEventId() const { return lastEventStreamEventId_; }
    /// From the start of a first scan until its end.
    Observable<bool>& scanInProgress() { return scanInProgress_; }

    // For diagnosis. A null item means the root.
    void dumpItem(const fs_item_t* item, uint64_t fsEventId);
    void dumpItem(const ReadSection&, const fs_item_t* item, uint64_t fsEventId) const;
    /// The paths of all items by position, one a line.
    Result<void> dumpTo(const FileURL& url);

  private:
    static constexpr uint64_t kNoEvent = ~uint64_t{0};

    // CacheTree.cpp
    AddPathResult addBelow(const WriteSection&, fs_item_t* parent, const FileURL& url,
                           AddPath with);
    fs_item_t* createPathComponent(fs_item_t* parent, const FileURL& path, const FileURL& whole);
    fs_item_t* createItem(fs_item_t* parent, const ItemTree::NewItem& properties,
                          metadata_ptr metadata);
    void setMetadata(fs_item_t* item, metadata_ptr metadata);
    static bool checkName(std::string_view name, const FileURL& url);
    // CacheBatches.cpp
    void takeInBatches(const WriteSection&);
    void takeIn(const WriteSection&, ScanBatch& batch);
    bool attachAll(fs_item_t* folder, ScanBatch& batch);
    void attachOneByOne(fs_item_t* folder, ScanBatch& batch);
    void drop(ItemPool::Lane& lane, fs_item_t* item);
    void discard(ItemPool::Lane& lane, ScanBatch& batch);
    // CacheChanges.cpp
    void tellOfRemoval(const fs_item_t* item, uint64_t fsEventId, Marks marks);
    void removeFromTree(const WriteSection&, const FileURL& url, uint64_t fsEventId, Marks marks);
    MoveStatus movePath(const WriteSection&, const FileURL& from, const FileURL& to,
                        const MovePath& with);
    bool relocate(const WriteSection&, fs_item_t* item, fs_item_t* parent, const FileURL& to,
                  uint64_t fsEventId);

    void noteEvent(uint64_t fsEventId);
    bool isCurrent() const { return observer_.currentCache() == this; }

    IndexObserver& observer_;
    const FileTypes& fileTypes_;
    Section section_{"cacheAccessQueue"};
    ItemTree tree_;
    PendingBatches pending_;
    RecentItems recentItems_;
    Observable<bool> scanInProgress_;
    Relaxed<uint64_t> lastEventStreamEventId_ = kNoEvent;
    Relaxed<int64_t> cacheModifiedByFsEventUpdate_ = 0;  // 0: nothing awaits a refresh; 1: forced
    Relaxed<int64_t> resultListReloadTime_ = 0;
};
