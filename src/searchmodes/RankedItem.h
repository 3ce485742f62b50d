#pragma once
#include <cstdint>
#include <limits>
#include <vector>

#include "searchmodes/match_t.h"

/// A match while it is still one of many: no more than its order needs.
struct RankedItem {
    const fs_item_t* item;
    double score;
    uint16_t depth;
};

/// The order of the rows without a sort order: higher scores, shallower items, paths; of two whose
/// paths differ in case alone, the one with the higher position. Total, so that the best are the
/// same whatever the order in which they come.
bool ranksBefore(const RankedItem& a, const RankedItem& b);

/// The best of all items that it is given, as many as its limit. A heap, the worst on top.
class BestItems {
  public:
    explicit BestItems(uint64_t limit) : limit_(limit) {}

    void add(const RankedItem& item);
    /// What an item's final score must reach to be kept.
    double worstKept() const {
        return items_.size() < limit_ ? -std::numeric_limits<double>::infinity()
                                      : items_.front().score;
    }
    std::vector<RankedItem>& items() { return items_; }

  private:
    const uint64_t limit_;
    std::vector<RankedItem> items_;
};
