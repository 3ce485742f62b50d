#pragma once
#include <cstdint>
#include <optional>
#include <set>
#include <variant>
#include <vector>

#include "screen/Geometry.h"
#include "util/FileURL.h"

/// What was selected in the result table and how far it was scrolled, so that both come back after
/// a search or a change of mode. A value.
/// Owner:   each mode has its own. Threads: main.
/// Units:   rows from 0; the scroll offset in the table's units.
struct Selection {
    /// A row by what stays the same about it: its path in file modes, else a number of the mode.
    using Item = std::variant<FileURL, uint64_t>;

    bool clearSelection = false;  // the next restore must select nothing
    std::vector<Item> selectedItems = {};
    std::set<size_t> selectedRowIndexes = {};
    std::optional<FileURL> pathSelection = {};  // a folder of the path, selected inside the row
    int64_t mostRecentlySelectedRow = 0;        // where nothing selected is found again
    Point clipOrigin = {};

    /// Brings the paths up to date after a rename.
    void renamePath(const FileURL& from, const FileURL& to);

    friend bool operator==(const Selection&, const Selection&) = default;
};
