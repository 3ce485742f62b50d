#include "searchmodes/RankedItem.h"

#include <algorithm>

#include "index/fs_item.h"
#include "searchmodes/RankRequest.h"
#include "searchmodes/itemComparators.h"

RowOrder::RowOrder(const MetadataEngine* engine)
    : sort_(engine && engine->hasSortOrder() ? engine : nullptr) {}

bool RowOrder::operator()(const RankedItem& a, const RankedItem& b) const {
    if (sort_) {
        const int forth = sort_->compare(a, b), back = sort_->compare(b, a);
        if (forth != 0 && forth == back)
            return forth < 0 ? a.item->index > b.item->index : a.item->index < b.item->index;
        if (forth != 0) return forth < 0;
    }
    if (a.score != b.score) return a.score > b.score;
    if (a.depth != b.depth) return a.depth < b.depth;
    const int paths = comparePathsOfItems(a.item, b.item);
    return paths != 0 ? paths < 0 : a.item->index > b.item->index;
}

void BestItems::add(const RankedItem& item) {
    if (items_.size() < limit_) {
        items_.push_back(item);
        if (limit_ != kNoResultLimit) std::push_heap(items_.begin(), items_.end(), order_);
        return;
    }
    if (!order_(item, items_.front())) return;
    std::pop_heap(items_.begin(), items_.end(), order_);
    items_.back() = item;
    std::push_heap(items_.begin(), items_.end(), order_);
}

/// By merging, which can be left between any two steps: without a limit there can be millions.
bool BestItems::sort(FunctionRef<bool()> isAborted) {
    constexpr size_t kStep = 512;
    const size_t count = items_.size();
    for (size_t at = 0; at < count; at += kStep) {
        if (isAborted()) return false;
        std::sort(&items_[at], items_.data() + std::min(at + kStep, count), order_);
    }
    std::vector<RankedItem> merged;
    merged.reserve(count > kStep ? count : 0);
    for (size_t width = kStep; width < count; width *= 2) {
        merged.clear();
        for (size_t begin = 0; begin < count; begin += 2 * width) {
            size_t left = begin, right = std::min(begin + width, count);
            const size_t middle = right, end = std::min(begin + 2 * width, count);
            while (left < middle || right < end) {
                if (merged.size() % kStep == 0 && isAborted()) return false;
                const bool takeRight =
                    left == middle || (right < end && order_(items_[right], items_[left]));
                merged.push_back(items_[takeRight ? right++ : left++]);
            }
        }
        items_.swap(merged);
    }
    return true;
}
