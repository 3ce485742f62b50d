#pragma once
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "index/Cache.h"
#include "searchmodes/FolderText.h"
#include "searchmodes/FuzzySearch.h"
#include "searchmodes/RankRequest.h"
#include "searchmodes/RankedItem.h"

/// Ranks one range of a Cache's items and keeps the best of it.
/// Most items are passed over by their name masks, without their records being touched. What is
/// left is judged by sets of positions, first roughly: only what can be among the best is scored to
/// the last digit. Texts or terms that do not fit there, and everything while another engine has
/// terms, go through the engines one by one. The outcome is the same. Owner:
/// rankStringInSearchMode, one a range. Threads: one, inside the caller's read section.
class RankWorker {
  public:
    RankWorker(const RankRequest& request, std::span<fs_item_t* const> items,
               std::span<const NameMask> masks);

    /// Ends early when the search is aborted.
    void rank(IndexRange range);
    uint64_t total() const { return total_; }
    std::vector<RankedItem>& best() { return best_.items(); }
    /// Positions and criteria for a row that is kept.
    match_ptr makeMatch(const RankedItem& ranked);

  private:
    struct Verdict {
        bool matches = false;
        double score = 0;
        bool hopeless = false;  // matches, but cannot be among the best
    };

    void judge(const fs_item_t& item);
    bool passesFilters(const fs_item_t& item);
    Verdict judgeName(const fs_item_t& item, double bar);
    Verdict judgePath(const fs_item_t& item, double bar);
    template <class Text>
    Verdict judgeText(const Text& text, double bar) const;
    Verdict judgeThoroughly(const fs_item_t& item, IndexSet& indexes);
    bool textOf(const fs_item_t& item, std::u16string& text);
    bool baseScoreCounts(double score) const;
    bool isAsciiName(const fs_item_t& item) const;

    const RankRequest& request_;
    const std::span<fs_item_t* const> items_;
    const std::span<const NameMask> masks_;
    const FuzzySearch fuzzy_;
    const std::unique_ptr<RegexEngine> regex_;
    const std::unique_ptr<MetadataEngine> metadata_;
    // What all terms need together.
    NameMask need_ = 0;
    size_t shortest_ = 0, longest_ = 0;
    bool ascii_ = true;       // terms can be found by positions in ASCII texts
    bool plain_ = true;       // and in others
    bool textTerms_ = false;  // the text of an item has a say
    bool thorough_ = false;   // other engines have a say too

    FolderText folder_;
    BestItems best_;
    uint64_t total_ = 0;
    IndexSet criterions_, scratch_;
    std::u16string text_;
};
