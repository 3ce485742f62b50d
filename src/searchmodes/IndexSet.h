#pragma once
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

/// Ascending indexes without duplicates: matched positions of a text, matched criteria. A value.
class IndexSet {
  public:
    IndexSet() = default;
    explicit IndexSet(size_t capacity) { items_.reserve(capacity); }

    void add(uint64_t index) {
        if (items_.empty() || items_.back() < index) {
            items_.push_back(index);
            return;
        }
        const auto at = std::lower_bound(items_.begin(), items_.end(), index);
        if (*at != index) items_.insert(at, index);
    }
    void addRange(uint64_t location, uint64_t length) {
        for (uint64_t i = 0; i < length; i++) add(location + i);
    }
    bool contains(uint64_t index) const {
        return std::binary_search(items_.begin(), items_.end(), index);
    }
    void clear() { items_.clear(); }
    bool empty() const { return items_.empty(); }
    uint64_t count() const { return items_.size(); }
    const std::vector<uint64_t>& items() const { return items_; }
    friend bool operator==(const IndexSet&, const IndexSet&) = default;

  private:
    std::vector<uint64_t> items_;
};
