#pragma once
#include <cstdint>

#include "searchmodes/IndexSet.h"
#include "searchmodes/MetaDataQuery.h"

struct MetaDataContext;
struct fs_item_metadata;

/// A query made ready for millions of items: numbers alone, ages as a point in time.
/// Owner: MetaDataSearch. Threads: any. Units: seconds since 1970, bytes. Fails: never.
class MetaDataTest {
  public:
    MetaDataTest(const MetaDataQuery& query, const MetaDataContext& context);

    /// The query only orders the rows.
    bool isForSortingOnly() const { return operator_ == MetaDataQuery::kNoOperator; }
    bool isNegative() const { return isNegative_; }
    /// Adds its criterion; those of the four dates each by itself.
    void record(IndexSet& matchingCriterions) const;
    /// Whether the item passes, not regarding isNegative; if it does, the criterion is added.
    bool match(const fs_item_metadata& metadata, IndexSet& matchingCriterions) const;
    bool matchEpoch(int64_t epoch) const;

  private:
    bool compareValues(int64_t value, int64_t with) const;
    bool compareSize(const fs_item_metadata& metadata) const;
    int64_t fieldOf(int64_t epoch) const;

    bool isNegative_;
    uint16_t criterion_;
    uint8_t operator_;
    uint8_t valueType_;
    int firstWeekday_;
    // The value; of an age the point in time; of a range its first second and its last.
    int64_t from_, to_;
};
