#include "searchmodes/RankedItem.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <random>

#include "index/fs_item.h"
#include "searchmodes/RankRequest.h"
#include "searchmodes/itemComparators.h"

namespace {

/// Orders by one comparator, or the other way round.
struct SortedBy : MetadataEngine {
    using Comparator = int (*)(const fs_item_t*, const fs_item_t*);
    SortedBy(Comparator by, int sign) : by_(by), sign_(sign) {}
    size_t numberOfSearchTerms() const override { return 1; }
    bool match(const fs_item_metadata*, IndexSet&) override { return true; }
    bool hasSortOrder() const override { return by_ != nullptr; }
    int compare(const RankedItem& a, const RankedItem& b) const override {
        return sign_ * by_(a.item, b.item);
    }

  private:
    Comparator by_;
    int sign_;
};

/// A sorted list into which items go one by one: before the first that they come before.
std::vector<RankedItem> inserted(const std::vector<RankedItem>& items, uint64_t limit,
                                 const SortedBy& engine) {
    const auto comesBefore = [&](const RankedItem& x, const RankedItem& m) {
        const int sorted = engine.hasSortOrder() ? engine.compare(x, m) : 0;
        if (sorted != 0) return sorted < 0;
        if (x.score != m.score) return x.score > m.score;
        if (x.depth != m.depth) return x.depth < m.depth;
        return fs_item_path_compare(x.item, m.item) == -1;
    };
    std::vector<RankedItem> rows;
    for (const RankedItem& x : items) {
        const auto at = std::partition_point(
            rows.begin(), rows.end(), [&](const RankedItem& m) { return !comesBefore(x, m); });
        rows.insert(at, x);
        if (rows.size() > limit) rows.pop_back();
    }
    return rows;
}

class RankedItems : public testing::Test {
  protected:
    RankedItems() {
        std::mt19937 random(11);
        const std::string parts[] = {"a", "A", "b", ".", "é", "É"};
        names_.push_back("/");
        records_.push_back({names_[0].c_str(), 1, ITEM_DIRECTORY, nullptr, nullptr, 0, 0, nullptr});
        for (uint64_t i = 1; i <= 3000; i++) {
            std::string name;
            for (size_t n = 1 + random() % 3; n > 0; n--) name += parts[random() % 6];
            names_.push_back(name);
            fs_item_t* parent = &records_[random() % std::min<uint64_t>(i, 20)];
            records_.push_back({names_[i].c_str(), static_cast<uint16_t>(name.size()), ITEM_FILE,
                                nullptr, parent, i, 0, nullptr});
            items_.push_back({.item = &records_[i],
                              .score = static_cast<double>(random() % 4) * 0.25,
                              .depth = fs_item_depth(&records_[i])});
        }
    }
    std::deque<std::string> names_;
    std::deque<fs_item_t> records_;
    std::vector<RankedItem> items_;
};

TEST_F(RankedItems, TheBestOfThemAreThoseOfASortedList) {
    const SortedBy engines[] = {{nullptr, 1},
                                {lastPathComponentComperator, 1},
                                {lastPathComponentComperator, -1},
                                {filenameExtensionComperator, 1},
                                {filenameExtensionComperator, -1},
                                {fs_item_path_compare, -1}};
    for (const SortedBy& engine : engines)
        for (const uint64_t limit : {uint64_t{10}, uint64_t{1300}, kNoResultLimit}) {
            BestItems best(limit, RowOrder(&engine));
            for (const RankedItem& item : items_) best.add(item);
            ASSERT_TRUE(best.sort([] { return false; }));
            const auto expected = inserted(items_, limit, engine);
            ASSERT_EQ(best.items().size(), expected.size());
            for (size_t i = 0; i < expected.size(); i++)
                ASSERT_EQ(best.items()[i].item->index, expected[i].item->index)
                    << "row " << i << " engine " << &engine - engines << " limit " << limit;
        }
}

TEST_F(RankedItems, SortingEndsSoonAfterAnAbort) {
    BestItems best(kNoResultLimit, RowOrder(nullptr));
    for (const RankedItem& item : items_) best.add(item);
    for (int allowed = 0; allowed < 100; allowed++) {
        int asked = 0;
        if (best.sort([&] { return asked++ == allowed; })) {
            EXPECT_GT(allowed, 10);  // a step of some hundred items each
            return;
        }
        ASSERT_EQ(asked, allowed + 1);
    }
    FAIL() << "it never came to its end";
}

}  // namespace
