#pragma once
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "searchmodes/IndexSet.h"

struct fs_item_t;

/// The ranking result of one item.
/// Owner:   the list that holds it: a worker's, the merged one, then the rows on show.
/// Threads: the item, borrowed, may be looked at in a read section of its Cache alone.
struct match_t {
    const fs_item_t* item = nullptr;
    IndexSet matchedIndexes = {};  // positions in the name, or in the whole path
    double score = 0;
    bool indexesInFilename = true;
    uint16_t depth = 0;                               // ancestors, the root included
    std::optional<IndexSet> matchingCriterions = {};  // the metadata criteria that matched
    uint64_t fingerprint = 0;                         // see fingerprintOf; 0 until it is asked for
    bool updateMatchIndicators = false;               // the row keeps its place, its marks change
};
using match_ptr = std::unique_ptr<match_t>;

/// Matches in the order of the rows.
using match_array_t = std::vector<match_ptr>;

/// Changes when the item's identity, its place in the tree or its metadata does. Good within one
/// run of the program. In a read section.
uint64_t fingerprintOf(const match_t& match);
