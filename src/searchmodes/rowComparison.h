#pragma once
#include <cstddef>
#include <vector>

#include "searchmodes/match_t.h"

/// What of the rows on show differs from a new result.
struct RowComparison {
    bool didChange = false;                // else the old rows stay, with new marks at most
    std::vector<size_t> changedRows = {};  // ascending; all that differ, where both are as long
};

/// Compares row by row: the same item with the same fingerprint is the same row. With
/// searchStringChanged such rows are listed too, and their new records want their marks drawn
/// again. filteredCountChanged: the old rows were changed outside a search.
/// In a read section; the records of newRows have their fingerprints.
RowComparison compareRows(const match_array_t& oldRows, match_array_t& newRows,
                          bool searchStringChanged, bool filteredCountChanged);
