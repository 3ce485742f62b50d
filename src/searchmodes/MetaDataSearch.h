#pragma once
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "searchmodes/MetaDataQuery.h"
#include "searchmodes/MetaDataTest.h"
#include "searchmodes/RankRequest.h"

/// What of the world the queries depend on; the same for all workers of one search.
struct MetaDataContext {
    int64_t now;           // seconds since 1970
    int firstWeekday = 1;  // 1 for Sunday

    /// Asks for the user's calendar.
    static MetaDataContext at(int64_t now);
};

struct MetaDataSortKey {
    uint64_t criterion;
    uint64_t valueType;
    uint64_t sortOrderType;
    friend bool operator==(const MetaDataSortKey&, const MetaDataSortKey&) = default;
};

/// The metadata terms of a search string: they choose items by their metadata and may order the
/// rows. A term in error is left out.
/// Owner:   a worker, which has one of its own; a copy costs less than to parse and to look up
///          users again.
/// Threads: any; nothing changes after the constructor.
/// Units:   seconds since 1970, bytes.
/// Fails:   never; what an item has no metadata for does not match.
class MetaDataSearch final : public MetadataEngine {
  public:
    MetaDataSearch(std::u16string_view searchString, const MetaDataContext& context);

    /// For RankRequest::makeMetadataEngine: parses once and copies for each worker.
    static std::function<std::unique_ptr<MetadataEngine>(std::u16string_view)> engineMaker(
        std::u16string_view searchString, int64_t now);

    /// The query of one term, or all that a user needs to make it one.
    static MetaDataParse parseWord(std::u16string_view word, int firstWeekday);

    size_t numberOfSearchTerms() const override { return queries_.size(); }
    const std::vector<MetaDataQuery>& queries() const { return queries_; }

    /// All queries; the criteria that had a say are added, also when it is false.
    bool match(const fs_item_metadata* metadata, IndexSet& matchingCriterions) override;

    /// In the order of the queries; empty: the rows are ordered by score.
    const std::vector<MetaDataSortKey>& sortOrderDescription() const { return sortKeys_; }
    bool hasSortOrder() const override { return !sortKeys_.empty(); }
    /// What has no metadata, and dates of items without any that matched, are told apart by the
    /// other keys alone.
    int compare(const RankedItem& a, const RankedItem& b) const override;

  private:
    std::vector<MetaDataQuery> queries_;
    std::vector<MetaDataTest> tests_;  // one a query
    std::vector<MetaDataSortKey> sortKeys_;
};
