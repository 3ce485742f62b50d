#pragma once
#include <cstdint>
#include <limits>
#include <vector>

#include "util/FunctionRef.h"

struct fs_item_t;
class MetadataEngine;

/// A match while it is still one of many: no more than its order needs.
struct RankedItem {
    const fs_item_t* item;
    double score;
    uint16_t depth;
    uint16_t criterions = 0;  // values of the metadata criteria that matched, united
};

/// The order of the rows: the one that the engine's queries ask for, if any; then higher scores,
/// shallower items, paths. It is the order that comes about when items are put into a sorted list
/// one after another, each before the first that it comes before: of two that come before each
/// other the later one is first, of two that do not the earlier one. So the best are the same
/// whatever the order in which they come.
class RowOrder {
  public:
    /// Null: no sort order.
    explicit RowOrder(const MetadataEngine* engine);
    bool operator()(const RankedItem& a, const RankedItem& b) const;

  private:
    const MetadataEngine* sort_;
};

/// The best of all items that it is given, as many as its limit. A heap, the worst on top.
class BestItems {
  public:
    BestItems(uint64_t limit, RowOrder order) : limit_(limit), order_(order) {}

    void add(const RankedItem& item);
    /// What an item's final score must reach to be kept, where scores decide.
    double worstKept() const {
        return items_.size() < limit_ ? -std::numeric_limits<double>::infinity()
                                      : items_.front().score;
    }
    /// Into the order of the rows. False: isAborted, which is asked every now and then, said yes.
    bool sort(FunctionRef<bool()> isAborted);
    const std::vector<RankedItem>& items() const { return items_; }

  private:
    const uint64_t limit_;
    const RowOrder order_;
    std::vector<RankedItem> items_;
};
