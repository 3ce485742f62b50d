#include "index/ScanBatch.h"

#include <utility>

namespace {
constexpr uint64_t kMaxBatches = 256;
constexpr uint64_t kMaxItems = 50'000;
}  // namespace

fs_item_t* ScanBatch::add(ItemPool::Lane& lane, const ItemTree::NewItem& properties) {
    fs_item_t* item = ItemTree::make(lane, properties);
    if (!item) return nullptr;
    items.push_back(item);
    nameMasks.push_back(presenceOfName(properties.name));
    return item;
}

void ScanBatch::makeMap(ItemPool::Lane& lane) {
    hashmap_init(children);
    bool all = hashmap_reserve(lane, &children, items.size());
    for (size_t i = 0; all && i < items.size(); i++)
        all = hashmap_insert(lane, &children, items[i]->name, items[i]);
    if (!all) hashmap_clear(lane, &children);
}

bool PendingBatches::push(ScanBatch batch) {
    std::lock_guard lock(mutex_);
    items_ += batch.items.size();
    batches_.push_back(std::move(batch));
    waiting_ = batches_.size();
    return batches_.size() >= kMaxBatches || items_ >= kMaxItems;
}

std::vector<ScanBatch> PendingBatches::takeAll() {
    std::lock_guard lock(mutex_);
    items_ = 0;
    waiting_ = 0;
    return std::exchange(batches_, {});
}
