#pragma once
#include <string_view>

#include "searchmodes/IndexSet.h"

struct RankFilter {
    std::u16string_view usingFilter;    // as typed
    std::u16string_view usingLcFilter;  // in lower case, unit by unit; of the same length
    bool unifyCase = true;              // false: the candidate's case counts
};

/// Scores one text against one filter term: whether the term's units occur in it in order, and how
/// well. Candidate and filter are precomposed UTF-16; positions count units. This is the whole
/// algorithm, step by step; RankTerm gives the same results faster for most texts.
/// Threads: any, no state. Works on any length; only long texts allocate.
class StringRanker {
  public:
    /// -1.0: no match. 0.0: the filter is empty. 1.0: the whole candidate. Else between 0 and 1.
    /// The matched positions are added to indexesOfMatchedCharacters, nothing on a refusal; null
    /// spares the choice of positions, and the score follows from the two lengths.
    static double rankString(std::u16string_view candidate, const RankFilter& filter,
                             IndexSet* indexesOfMatchedCharacters);
};
