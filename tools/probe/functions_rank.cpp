#include "Ops.h"
#include "PathItems.h"
#include "Surrogates.h"
#include "searchmodes/FuzzySearch.h"
#include "searchmodes/SearchTerms.h"
#include "searchmodes/StringRanker.h"
#include "searchmodes/itemComparators.h"
#include "util/Unicode.h"

/// Scores of texts, and the order of items.
namespace ops {

namespace {

/// The ranker's table has a cell for each unit of the filter and each of the candidate.
std::u16string candidateFor(const std::u16string& filter, const Fields& request) {
    constexpr size_t kMaxCells = size_t{1} << 26;
    std::u16string candidate = request.text("candidate");
    if (candidate.size() > kMaxCells / (filter.size() + 1))
        request.illTyped("candidate", "shorter for such a search");
    return candidate;
}

}  // namespace

json rank(const Fields& request, Session&) {
    const std::u16string filter = request.text("filter");
    const std::u16string candidate = candidateFor(filter, request);
    const std::u16string lower = lowerCasedUnits(filter);
    IndexSet indexes;
    const double score =
        StringRanker::rankString(candidate,
                                 {.usingFilter = filter,
                                  .usingLcFilter = lower,
                                  .unifyCase = request.boolean("unifyCase", true)},
                                 request.boolean("wantIndexes", true) ? &indexes : nullptr);
    return {{"score", score}, {"indexes", indexes.items()}};
}

json split(const Fields& request, Session&) {
    json ranges = json::array();
    for (const TextRange& range :
         indexesOfComponentsSeparatedByUnescapedWhitespace(request.text("text")))
        ranges.push_back({range.location, range.length});
    return {{"ranges", std::move(ranges)}};
}

json fuzzy(const Fields& request, Session&) {
    const std::u16string text = request.text("search");
    const FuzzySearch search(text);
    IndexSet indexes;
    double score = 0;
    const bool match = search.match(candidateFor(text, request), indexes, score);
    json terms = json::array();
    for (const RankTerm& term : search.terms()) terms.push_back(carriedFromUnits(term.text()));
    return {{"match", match},
            {"score", score},
            {"indexes", indexes.items()},
            {"terms", std::move(terms)}};
}

json compare(const Fields& request, Session&) {
    const std::string by = request.word("by");
    auto* const comparator = by == "path"        ? fs_item_path_compare
                             : by == "name"      ? lastPathComponentComperator
                             : by == "extension" ? filenameExtensionComperator
                                                 : nullptr;
    if (!comparator) request.illTyped("by", "\"path\", \"name\" or \"extension\"");
    PathItems items;
    const fs_item_t* a = items.item(request, "a");
    const fs_item_t* b = items.item(request, "b");
    return {{"result", comparator(a, b)}};
}

}  // namespace ops
