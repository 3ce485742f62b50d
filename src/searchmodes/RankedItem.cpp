#include "searchmodes/RankedItem.h"

#include <algorithm>

#include "index/fs_item.h"
#include "searchmodes/itemComparators.h"

bool ranksBefore(const RankedItem& a, const RankedItem& b) {
    if (a.score != b.score) return a.score > b.score;
    if (a.depth != b.depth) return a.depth < b.depth;
    const bool first = fs_item_path_compare(a.item, b.item) == -1;
    if (first && fs_item_path_compare(b.item, a.item) == -1) return a.item->index > b.item->index;
    return first;
}

void BestItems::add(const RankedItem& item) {
    if (items_.size() < limit_) {
        items_.push_back(item);
        if (items_.size() == limit_) std::make_heap(items_.begin(), items_.end(), ranksBefore);
        return;
    }
    if (!ranksBefore(item, items_.front())) return;
    std::pop_heap(items_.begin(), items_.end(), ranksBefore);
    items_.back() = item;
    std::push_heap(items_.begin(), items_.end(), ranksBefore);
}
