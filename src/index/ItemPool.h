#pragma once
#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

/// The memory of one Cache: records, names, maps and metadata, cut from slabs and packed, because
/// the heap's own 16 bytes a block would be a quarter of the index.
/// Owner:   ItemTree. The end gives all slabs back at once, without visiting the blocks.
/// Threads: a lane is used by one thread at a time; take() and what it hands out: any thread. The
///          writer's lane belongs to whoever is alone in the Cache's section.
/// Units:   bytes. Blocks are zero or garbage: who takes one fills it.
/// Fails:   null when the system has no memory.
class ItemPool {
  public:
    static constexpr size_t kMaxName = 1023;       // without the NUL
    static constexpr size_t kReadableBehind = 64;  // after every name, for wide loads

    class Lane {
      public:
        explicit Lane(ItemPool& pool) : pool_(pool) {}
        /// A multiple of 8 bytes, aligned to 8. Give it back with the same size.
        void* allocate(size_t size);
        void free(void* block, size_t size);
        /// A copy with a NUL behind it, packed to the byte.
        char* allocateName(std::string_view name);
        void freeName(const char* name, size_t length);

      private:
        friend class ItemPool;
        struct Slab {
            char* at = nullptr;
            char* end = nullptr;
        };
        void* takeFreed(size_t list);
        char* cut(Slab& slab, size_t size, size_t behind);

        ItemPool& pool_;
        Slab blocks_, names_;
        std::array<void*, 1024> freed_{};  // some of the pool's, by list
    };
    /// A lane for the length of a batch.
    class Borrowed {
      public:
        Borrowed(ItemPool& pool, std::unique_ptr<Lane> lane)
            : pool_(pool), lane_(std::move(lane)) {}
        ~Borrowed() { pool_.giveBack(std::move(lane_)); }
        Borrowed(const Borrowed&) = delete;
        Borrowed& operator=(const Borrowed&) = delete;
        Lane& operator*() const { return *lane_; }

      private:
        ItemPool& pool_;
        std::unique_ptr<Lane> lane_;
    };

    ItemPool() : writer_(*this) {}
    ~ItemPool();
    ItemPool(const ItemPool&) = delete;
    ItemPool& operator=(const ItemPool&) = delete;

    Lane& writer() { return writer_; }
    Borrowed take();
    /// Memory taken from the system for small blocks, used or not.
    size_t slabBytes() const;

  private:
    struct Large {  // in front of a block that is too big for slabs
        Large* previous;
        Large* next;
    };
    void giveBack(std::unique_ptr<Lane> lane);
    char* newSlab();
    void addFreed(size_t list, void* block);
    void* allocateLarge(size_t size);
    void freeLarge(void* block);

    mutable std::mutex mutex_;
    std::array<std::atomic<void*>, 1024> freed_{};  // heads by list; changed under the mutex
    std::vector<char*> slabs_;
    std::vector<std::unique_ptr<Lane>> idle_;
    Large large_{&large_, &large_};
    Lane writer_;
};
