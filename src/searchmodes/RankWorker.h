#pragma once
#include <array>
#include <cstdint>
#include <memory>
#include <span>

#include "index/Cache.h"
#include "searchmodes/FolderText.h"
#include "searchmodes/FuzzySearch.h"
#include "searchmodes/ItemText.h"
#include "searchmodes/RankRequest.h"
#include "searchmodes/RankedItem.h"
#include "searchmodes/match_t.h"

/// Ranks ranges of a Cache's items and keeps the best of them.
/// Most items are passed over by their name masks, without their records being touched. What is
/// left is judged by sets of positions, first roughly: only what can be among the best is scored to
/// the last digit. Texts or terms that do not fit there, and everything while another engine has
/// terms, go through the engines one by one. The outcome is the same.
/// Owner:   rankStringInSearchMode. Threads: one, inside the caller's read section.
class RankWorker {
  public:
    RankWorker(const RankRequest& request, std::span<fs_item_t* const> items,
               std::span<const NameMask> masks);

    /// False, here and below: the search was aborted.
    [[nodiscard]] bool rank(IndexRange range);
    /// After the last range.
    [[nodiscard]] bool finish();
    uint64_t total() const { return total_; }
    /// In the order of the rows.
    const std::vector<RankedItem>& best() const { return best_.items(); }
    /// What is not read orders nothing.
    RowOrder order() const {
        return RowOrder(request_.processMetadata ? metadata_.get() : nullptr);
    }
    /// Positions and criteria for a row that is kept.
    match_ptr makeMatch(const RankedItem& ranked);

  private:
    struct Verdict {
        bool matches = false;
        bool hopeless = false;  // matches, but cannot be among the best
        bool refused = false;   // a fuzzy term does not match
        double score = 0;
    };

    void judge(const fs_item_t& item, NameMask mask);
    bool passesFilters(const fs_item_t& item);
    /// By the fuzzy terms alone.
    Verdict judgeText(const fs_item_t& item, NameMask mask, double bar) {
        return request_.filenameOnly ? judgeName(item, mask, bar) : judgePath(item, mask, bar);
    }
    Verdict judgeName(const fs_item_t& item, NameMask mask, double bar);
    Verdict judgePath(const fs_item_t& item, NameMask mask, double bar);
    template <class Name>
    Verdict judgePathText(const fs_item_t& item, unsigned folderLength, const Name& name,
                          double bar);
    template <class Text>
    Verdict judgeText(const Text& text, double bar) const;
    Verdict judgeWideText(const fs_item_t& item, double bar);
    Verdict judgeThoroughly(const fs_item_t& item, IndexSet& indexes);
    bool baseScoreCounts(double score) const;
    bool isAsciiName(const fs_item_t& item, NameMask mask) const;

    const RankRequest& request_;
    const std::span<fs_item_t* const> items_;
    const std::span<const NameMask> masks_;
    const FuzzySearch fuzzy_;
    const std::unique_ptr<RegexEngine> regex_;
    const std::unique_ptr<MetadataEngine> metadata_;
    std::array<bool, 256> isShown_;  // by the item's type
    bool hasFilters_;                // besides the type
    // What all terms need together.
    NameMask need_ = 0;
    NameMask asciiNeed_ = 0;  // the same of the regular expressions, where all text is ASCII
    size_t shortest_ = 0, longest_ = 0;
    bool plain_ = true;       // all terms can be ranked by positions
    bool textTerms_ = false;  // the text of an item has a say
    bool thorough_ = false;   // other engines have a say too
    bool refuses_ = false;    // and yet the fuzzy terms are asked first

    FolderText folder_;
    ItemText text_;
    BestItems best_;
    uint64_t total_ = 0;
    IndexSet criterions_, scratch_;
};
