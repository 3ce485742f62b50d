#include "searchmodes/rowComparison.h"

#include "util/log.h"

RowComparison compareRows(const match_array_t& oldRows, match_array_t& newRows,
                          bool searchStringChanged, bool filteredCountChanged) {
    logIf(processFlags.debugSearch, Debug, "Comparing previous result to new result");
    RowComparison out;
    out.didChange = filteredCountChanged || newRows.empty() || newRows.size() != oldRows.size();
    if (out.didChange) return out;
    for (size_t row = 0; row < newRows.size(); row++) {
        const match_t& old = *oldRows[row];
        match_t& now = *newRows[row];
        now.updateMatchIndicators = false;
        if (old.item == now.item && old.fingerprint == now.fingerprint) {
            if (!searchStringChanged) continue;
            logIf(processFlags.debugSearch, Verbose,
                  "Marking row %d for update of match indicators", static_cast<int>(row));
            now.updateMatchIndicators = true;
        } else {
            logIf(processFlags.debugSearch, Verbose, "Found change at row %d",
                  static_cast<int>(row));
            out.didChange = true;
        }
        out.changedRows.push_back(row);
    }
    return out;
}
