#pragma once
#include <algorithm>
#include <vector>

#include "index/Cache.h"
#include "searchmodes/FuzzySearch.h"
#include "searchmodes/RankRequest.h"
#include "searchmodes/StringRanker.h"
#include "searchmodes/itemComparators.h"
#include "searchmodes/match_t.h"
#include "util/Unicode.h"

/// Ranking in the plainest way: every item's whole text through StringRanker, every match inserted
/// into the sorted list by binary search. What the program does faster must come to this.
struct LiteralRanking {
    struct Row {
        const fs_item_t* item;
        IndexSet indexes;
        double score;
        int depth;
    };
    std::vector<Row> rows;
    int64_t total = 0;

    LiteralRanking(const ReadSection& section, const Cache& cache, const RankRequest& request) {
        const FuzzySearch search(request.searchString);
        for (const fs_item_t* item : cache.items(section)) {
            Row row{item, {}, 0, fs_item_depth(item)};
            if (!isShown(item->type, request) || !scored(row, search, request)) continue;
            total++;
            row.score = row.score + row.depth * -0.03;
            insert(std::move(row), request.limit);
        }
    }

  private:
    static bool isShown(uint8_t type, const RankRequest& request) {
        if (type == ITEM_FILE) return request.showFiles;
        if (type == ITEM_DIRECTORY) return request.showDirectories;
        if (type == ITEM_BUNDLE)
            return request.bundlesAsFiles ? request.showFiles : request.showDirectories;
        return true;
    }
    static bool scored(Row& row, const FuzzySearch& search, const RankRequest& request) {
        const FileURL path = fs_item_url(row.item);
        const auto text = toUtf16(request.filenameOnly ? row.item->nameView() : path.path());
        if (!text) return false;
        const std::u16string composed =
            request.ignoreDiacritics ? stringByRemovingDiacritics(nfc(*text)) : nfc(*text);
        if (composed.empty()) return false;
        for (const RankTerm& term : search.terms()) {
            const double score = StringRanker::rankString(
                composed, {.usingFilter = term.text(), .usingLcFilter = term.lower()},
                &row.indexes);
            if (!(score > 0)) return false;
            row.score += score;
        }
        return row.score > 0;
    }
    static bool before(const Row& x, const Row& m) {
        if (x.score != m.score) return x.score > m.score;
        if (x.depth != m.depth) return x.depth < m.depth;
        return fs_item_path_compare(x.item, m.item) == -1;
    }
    void insert(Row row, uint64_t limit) {
        size_t low = 0, high = rows.size();
        while (low < high) {
            const size_t middle = low + (high - low) / 2;
            if (before(row, rows[middle]))
                high = middle;
            else
                low = middle + 1;
        }
        if (rows.size() == limit) {
            if (low == rows.size()) return;
            rows.pop_back();
        }
        rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(low), std::move(row));
    }
};

/// What of two rankings differs, in words; empty: nothing.
inline std::string differenceOf(const LiteralRanking& literal, const match_array_t& rows,
                                int64_t total) {
    if (literal.total != total)
        return "total " + std::to_string(total) + ", not " + std::to_string(literal.total);
    if (literal.rows.size() != rows.size()) return "number of rows";
    for (size_t i = 0; i < rows.size(); i++) {
        const std::string at = "row " + std::to_string(i) + ": ";
        const auto& expected = literal.rows[i];
        if (expected.item != rows[i]->item)
            return at + fs_item_url(rows[i]->item).path() + ", not " +
                   fs_item_url(expected.item).path();
        if (expected.score != rows[i]->score) return at + "score";
        if (expected.depth != rows[i]->depth) return at + "depth";
        if (!(expected.indexes == rows[i]->matchedIndexes)) return at + "positions";
    }
    return {};
}
