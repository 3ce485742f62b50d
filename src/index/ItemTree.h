#pragma once
#include <span>
#include <string_view>

#include "index/HashMap.h"
#include "index/ItemPool.h"
#include "index/NameMask.h"
#include "index/fs_item.h"
#include "util/Relaxed.h"

/// The items of one Cache and their memory: the tree from "/" down by names, the flat array, and
/// beside it the masks of the names. Only the bare steps, each of which keeps what must hold:
///   1. an item but the root is in its parent's map under its own name;
///   2. all.items[i->index] == i, and the root has position 0;
///   3. nameMasks()[i->index] is the mask of i's name.
/// Owner:   Cache. Threads: as the Cache; count() and structureVersion() from any.
/// Fails:   without memory by null or false.
class ItemTree {
  public:
    struct NewItem {
        std::string_view name;  // one component, at most ItemPool::kMaxName bytes
        uint8_t type;
        uint64_t inode;
        bool withMap;
    };

    ItemTree();
    ~ItemTree();
    ItemTree(const ItemTree&) = delete;
    ItemTree& operator=(const ItemTree&) = delete;

    fs_item_t* root() const { return root_; }
    const fs_item_array_t& all() const { return all_; }
    const NameMask* nameMasks() const { return nameMasks_; }
    ItemPool& pool() { return pool_; }
    uint64_t count() const { return count_; }
    /// Changes whenever a pointer to a folder may have become bad or may mean another path.
    uint64_t structureVersion() const { return structureVersion_; }

    /// A record that is in no tree yet. Any thread, with a lane of its own.
    static fs_item_t* make(ItemPool::Lane& lane, const NewItem& properties);
    /// Frees a record that is in no tree and has no children.
    static void free(ItemPool::Lane& lane, fs_item_t* item);
    static void setMetadata(ItemPool::Lane& lane, fs_item_t* item,
                            const fs_item_metadata* metadata);

    /// Puts a record below a parent, which gets a map if it has none. False when an equal name is
    /// there already or memory is short: the record is still the caller's then.
    bool attach(fs_item_t* parent, fs_item_t* item, NameMask mask);
    /// Puts records below a folder that has no children, with a map ready made of just them. False
    /// without memory.
    bool attachAll(fs_item_t* parent, const HashMap& children, std::span<fs_item_t* const> items,
                   std::span<const NameMask> masks);
    /// Out of the array, but for the root.
    void removeFromArray(fs_item_t* item);
    void removeFromMap(fs_item_t* item);
    /// Another name, or another parent, or both, for an item that stands in the tree. False without
    /// memory, or when the name is taken: nothing has changed then.
    bool relocate(fs_item_t* item, fs_item_t* parent, std::string_view name);
    /// After removeFsItem of the root: it is empty.
    void clearRoot();
    void structureChanged() { structureVersion_.add(1); }

  private:
    bool append(fs_item_t* item, NameMask mask);
    bool ensureMap(fs_item_t* item);
    bool reserve(uint64_t more);

    ItemPool pool_;
    fs_item_array_t all_{};
    NameMask* nameMasks_ = nullptr;  // all_.capacity of them
    fs_item_t* root_ = nullptr;
    Relaxed<uint64_t> count_ = 0;
    Relaxed<uint64_t> structureVersion_ = 0;
};

/// Whether a name can be an item's: one component of a size that a file system can have.
bool isItemName(std::string_view name);
