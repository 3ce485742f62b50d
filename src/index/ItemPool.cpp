#include "index/ItemPool.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
#else
#define ASAN_POISON_MEMORY_REGION(address, size) ((void)(address), (void)(size))
#define ASAN_UNPOISON_MEMORY_REGION(address, size) ((void)(address), (void)(size))
#endif

namespace {

constexpr size_t kSlabSize = 1 << 20;
constexpr size_t kMaxBlock = 1024;               // larger ones come from the heap
constexpr size_t kShortestName = sizeof(void*);  // so that a freed one can be linked
constexpr size_t kMaxPackedName = 512;           // longer ones are rounded up
constexpr size_t kFreedAtOnce = 32;

// Lists of freed blocks: 1 to 128 for blocks by size / 8, from 256 for names by size, and from 768
// for long names by size / 8.
size_t listOfBlock(size_t size) {
    return size / 8;
}
size_t listOfName(size_t size) {
    return size < kMaxPackedName ? 256 + size : 768 + size / 8;
}

size_t sizeOfName(size_t length) {
    const size_t size = std::max(length + 1, kShortestName);
    return size < kMaxPackedName ? size : (size + 7) & ~size_t{7};
}

// Names lie on any byte.
void* nextOf(const void* block) {
    void* next;
    std::memcpy(&next, block, sizeof next);
    return next;
}
void setNext(void* block, void* next) {
    std::memcpy(block, &next, sizeof next);
}

}  // namespace

char* ItemPool::Lane::cut(Slab& slab, size_t size, size_t behind) {
    if (!slab.at || slab.at + size + behind > slab.end) {
        char* memory = pool_.newSlab();
        if (!memory) return nullptr;
        slab = {memory, memory + kSlabSize};
    }
    char* block = slab.at;
    slab.at += size;
    return block;
}

/// A freed block of the lane, which fetches some from the pool when it has none.
void* ItemPool::Lane::takeFreed(size_t list) {
    void*& head = freed_[list];
    if (!head) {
        std::atomic<void*>& shared = pool_.freed_[list];
        if (!shared.load(std::memory_order_relaxed)) return nullptr;
        std::lock_guard lock(pool_.mutex_);
        head = shared.load(std::memory_order_relaxed);
        void* last = head;
        for (size_t i = 1; last && i < kFreedAtOnce; i++) {
            if (void* next = nextOf(last))
                last = next;
            else
                break;
        }
        if (last) {
            shared.store(nextOf(last), std::memory_order_relaxed);
            setNext(last, nullptr);
        }
    }
    void* block = head;
    if (block) head = nextOf(block);
    return block;
}

void* ItemPool::Lane::allocate(size_t size) {
    if (size > kMaxBlock) return pool_.allocateLarge(size);
    void* block = takeFreed(listOfBlock(size));
    if (!block) return cut(blocks_, size, 0);
    ASAN_UNPOISON_MEMORY_REGION(block, size);
    return block;
}

void ItemPool::Lane::free(void* block, size_t size) {
    if (!block) return;
    if (size > kMaxBlock) return pool_.freeLarge(block);
    // The link stays readable for the lists. Another lane may have the block at once.
    ASAN_POISON_MEMORY_REGION(static_cast<char*>(block) + 8, size - 8);
    pool_.addFreed(listOfBlock(size), block);
}

char* ItemPool::Lane::allocateName(std::string_view name) {
    const size_t size = sizeOfName(name.size());
    char* copy = static_cast<char*>(takeFreed(listOfName(size)));
    if (!copy) copy = cut(names_, size, kReadableBehind);
    if (!copy) return nullptr;
    std::memcpy(copy, name.data(), name.size());
    copy[name.size()] = '\0';
    return copy;
}

void ItemPool::Lane::freeName(const char* name, size_t length) {
    pool_.addFreed(listOfName(sizeOfName(length)), const_cast<char*>(name));
}

ItemPool::~ItemPool() {
    for (Large* block = large_.next; block != &large_;) {
        Large* next = block->next;
        std::free(block);
        block = next;
    }
    for (char* slab : slabs_) {
        ASAN_UNPOISON_MEMORY_REGION(slab, kSlabSize);
        munmap(slab, kSlabSize);
    }
}

ItemPool::Borrowed ItemPool::take() {
    {
        std::lock_guard lock(mutex_);
        if (!idle_.empty()) {
            std::unique_ptr<Lane> lane = std::move(idle_.back());
            idle_.pop_back();
            return {*this, std::move(lane)};
        }
    }
    return {*this, std::make_unique<Lane>(*this)};
}

void ItemPool::giveBack(std::unique_ptr<Lane> lane) {
    std::lock_guard lock(mutex_);
    idle_.push_back(std::move(lane));
}

size_t ItemPool::slabBytes() const {
    std::lock_guard lock(mutex_);
    return slabs_.size() * kSlabSize;
}

char* ItemPool::newSlab() {
    void* slab =
        mmap(nullptr, kSlabSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (slab == MAP_FAILED) return nullptr;
    std::lock_guard lock(mutex_);
    slabs_.push_back(static_cast<char*>(slab));
    return slabs_.back();
}

void ItemPool::addFreed(size_t list, void* block) {
    std::lock_guard lock(mutex_);
    setNext(block, freed_[list].load(std::memory_order_relaxed));
    freed_[list].store(block, std::memory_order_relaxed);
}

void* ItemPool::allocateLarge(size_t size) {
    auto* block = static_cast<Large*>(std::malloc(sizeof(Large) + size));
    if (!block) return nullptr;
    std::lock_guard lock(mutex_);
    *block = {&large_, large_.next};
    large_.next->previous = block;
    large_.next = block;
    return block + 1;
}

void ItemPool::freeLarge(void* memory) {
    Large* block = static_cast<Large*>(memory) - 1;
    {
        std::lock_guard lock(mutex_);
        block->previous->next = block->next;
        block->next->previous = block->previous;
    }
    std::free(block);
}
