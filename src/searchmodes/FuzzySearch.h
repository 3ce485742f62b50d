#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "searchmodes/IndexSet.h"
#include "searchmodes/RankTerm.h"

/// The plain terms of a search string, those that are neither regular expressions nor queries of
/// metadata. All of them must match.
/// Owner:   each ranking worker has its own. Threads: set up once, then read.
class FuzzySearch {
  public:
    explicit FuzzySearch(std::u16string_view searchString) { setupForSearchString(searchString); }

    void setupForSearchString(std::u16string_view searchString);
    uint16_t numberOfSearchTerms() const { return static_cast<uint16_t>(terms_.size()); }
    /// Without the leading backslash that marks them as plain, precomposed.
    const std::vector<RankTerm>& terms() const { return terms_; }
    /// As they were split off, with it.
    const std::vector<std::u16string>& nonRegexSearchTerms() const { return nonRegexSearchTerms_; }

    /// Adds the scores of the terms to totalScore and their positions to indexes; true without
    /// terms. After false both hold what earlier terms added: the caller drops them.
    bool match(std::u16string_view candidate, IndexSet& indexes, double& totalScore) const;

  private:
    std::vector<std::u16string> nonRegexSearchTerms_;
    std::vector<RankTerm> terms_;
};
