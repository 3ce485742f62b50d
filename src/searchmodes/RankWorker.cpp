#include "searchmodes/RankWorker.h"

#include <array>
#include <limits>

#include "searchmodes/AsciiText.h"
#include "searchmodes/WideText.h"
#include "searchmodes/itemComparators.h"

namespace {

constexpr double kDepthPenalty = -0.03;
constexpr double kBaseDepthPenalty = -0.05;
constexpr double kBaseLengthPenalty = -0.01;
constexpr double kRoughSlack = 1e-9;  // more than a rough score can be off
constexpr size_t kBlock = 1024;
constexpr size_t kPrefetchRecords = 16, kPrefetchNames = 8;
constexpr size_t kMaxTermsByPositions = 8;

/// What an item gets whose text had no say, or could only be refused.
double baseScore(const fs_item_t& item, uint16_t depth) {
    return depth * kBaseDepthPenalty + 1.0 + item.name_length * kBaseLengthPenalty;
}

/// Units that removing diacritics takes out of ASCII text.
bool hasAsciiDiacritic(std::string_view name) {
    return name.find_first_of("^`") != std::string_view::npos;
}

bool isTypeShown(unsigned type, const RankRequest& request) {
    switch (type) {
        case ITEM_BUNDLE:
            return request.bundlesAsFiles ? request.showFiles : request.showDirectories;
        case ITEM_DIRECTORY:
            return request.showDirectories;
        case ITEM_FILE:
            return request.showFiles;
        default:
            return true;  // links are always shown
    }
}

}  // namespace

RankWorker::RankWorker(const RankRequest& request, std::span<fs_item_t* const> items,
                       std::span<const NameMask> masks)
    : request_(request),
      items_(items),
      masks_(masks),
      fuzzy_(request.searchString),
      regex_(request.makeRegexEngine ? request.makeRegexEngine(request.searchString) : nullptr),
      metadata_(request.makeMetadataEngine ? request.makeMetadataEngine(request.searchString)
                                           : nullptr),
      hasFilters_(request.extensionFilter || (request.processMetadata && metadata_) ||
                  (request.pathFilter && request.pathFilter->hasRules())),
      // The letters of folders matter to whole paths alone.
      folder_(fuzzy_, request.filenameOnly ? std::span<const NameMask>() : masks),
      text_(request),
      best_(request.limit, order()) {
    for (unsigned type = 0; type < isShown_.size(); type++)
        isShown_[type] = isTypeShown(type, request);
    const bool hasRegex = regex_ && regex_->numberOfSearchTerms() > 0;
    const bool hasMetadata = metadata_ && metadata_->numberOfSearchTerms() > 0;
    if (hasRegex) asciiNeed_ = regex_->needOfAscii();
    textTerms_ = fuzzy_.numberOfSearchTerms() > 0 || hasRegex;
    thorough_ = hasRegex || hasMetadata || fuzzy_.numberOfSearchTerms() == 0 ||
                fuzzy_.terms().size() > kMaxTermsByPositions;
    shortest_ = ~size_t{0};
    for (const RankTerm& term : fuzzy_.terms()) {
        need_ |= term.need();
        shortest_ = std::min(shortest_, term.length());
        longest_ = std::max(longest_, term.length());
        plain_ = plain_ && term.isPlain();
    }
    refuses_ = thorough_ && plain_ && fuzzy_.numberOfSearchTerms() > 0 &&
               fuzzy_.terms().size() <= kMaxTermsByPositions;
}

bool RankWorker::rank(IndexRange range) {
    std::array<uint32_t, kBlock> open;
    const uint64_t end = range.location + range.length;
    // A name of other letters may hold any of ASCII's once its diacritics are gone; and for whole
    // paths the folders' letters count too.
    const NameMask always = request_.ignoreDiacritics ? ~NameMask{0} : 0;
    const NameMask need = request_.filenameOnly ? need_ : 0;
    const NameMask asciiNeed = request_.filenameOnly ? asciiNeed_ : 0;
    for (uint64_t at = range.location; at < end; at += kBlock) {
        const NameMask* masks = &masks_[at];
        fs_item_t* const* items = &items_[at];
        const auto length = static_cast<uint32_t>(std::min<uint64_t>(kBlock, end - at));
        size_t count = 0;
        for (uint32_t i = 0; i < length; i++) {  // without a branch an item
            open[count] = i;
            const NameMask mask = masks[i], any = mask & kNotAscii ? ~NameMask{0} : 0;
            count += ((need & ~(mask | (any & always))) | (asciiNeed & ~(mask | any))) == 0;
        }
        for (size_t i = 0; i < count; i++) {
            if (request_.isAborted()) return false;
            if (i + kPrefetchRecords < count) __builtin_prefetch(items[open[i + kPrefetchRecords]]);
            if (i + kPrefetchNames < count)
                __builtin_prefetch(items[open[i + kPrefetchNames]]->name);
            judge(*items[open[i]], masks[open[i]]);
        }
    }
    return true;
}

bool RankWorker::finish() {
    return best_.sort([this] { return request_.isAborted(); });
}

bool RankWorker::passesFilters(const fs_item_t& item) {
    if (request_.extensionFilter &&
        !request_.extensionFilter->contains(std::string(extensionOfName(item.nameView()))))
        return false;
    if (request_.processMetadata && metadata_) {
        criterions_.clear();
        if (!metadata_->match(item.metadata, criterions_)) return false;
    }
    return !request_.pathFilter || !request_.pathFilter->hasRules() ||
           !request_.pathFilter->isPathExcluded(fs_item_url(&item));
}

void RankWorker::judge(const fs_item_t& item, NameMask mask) {
    if (!isShown_[item.type] || (hasFilters_ && !passesFilters(item))) return;
    folder_.enter(item.parent);
    const uint16_t depth = folder_.depth();
    // What the terms must reach here; what rounding can do is below the slack.
    const double bar = best_.worstKept() - depth * kDepthPenalty;
    Verdict verdict;
    if (thorough_) {
        const NameMask path = folder_.mask() | mask;
        if ((asciiNeed_ & ~path) && !(path & kNotAscii)) return;
        constexpr double kAnyScore = -std::numeric_limits<double>::infinity();
        if (refuses_ && judgeText(item, mask, kAnyScore).refused) return;
        scratch_.clear();
        verdict = judgeThoroughly(item, scratch_);
    } else {
        verdict = judgeText(item, mask, bar);
    }
    if (!verdict.matches) return;
    total_++;
    if (verdict.hopeless) return;
    uint64_t criterions = 0;
    for (const uint64_t criterion : criterions_.items()) criterions |= criterion;
    best_.add({.item = &item,
               .score = verdict.score + depth * kDepthPenalty,
               .depth = depth,
               .criterions = static_cast<uint16_t>(criterions)});
}

bool RankWorker::isAsciiName(const fs_item_t& item, NameMask mask) const {
    if (mask & kNotAscii) return false;
    return !request_.ignoreDiacritics || !hasAsciiDiacritic(item.nameView());
}

RankWorker::Verdict RankWorker::judgeName(const fs_item_t& item, NameMask mask, double bar) {
    const unsigned length = item.name_length;
    if (!isAsciiName(item, mask)) return judgeWideText(item, bar);
    if (length < shortest_) return {.refused = true};
    if (plain_ && length > longest_ && length <= RankTerm::kMaxCandidate) {
        if (length <= 64) return judgeText(AsciiText<uint64_t>(item.name, length), bar);
        return judgeText(AsciiText<UnitBits256>(item.name, length), bar);
    }
    scratch_.clear();
    return judgeThoroughly(item, scratch_);
}

RankWorker::Verdict RankWorker::judgePath(const fs_item_t& item, NameMask mask, double bar) {
    if (request_.ignoreDiacritics) return judgeWideText(item, bar);
    if (need_ & ~(folder_.mask() | mask)) return {.refused = true};
    if (plain_ && item.name_length <= 64)
        if (const auto folderLength = folder_.length()) {
            if (!(mask & kNotAscii))
                return judgePathText(item, *folderLength,
                                     AsciiText<uint64_t>(item.name, item.name_length), bar);
            if (!text_.setName(item)) return {};
            return judgePathText(item, *folderLength, WideText<uint64_t>(text_.text()), bar);
        }
    return judgeWideText(item, bar);
}

template <class Name>
RankWorker::Verdict RankWorker::judgePathText(const fs_item_t& item, unsigned folderLength,
                                              const Name& name, double bar) {
    const size_t length = folderLength + name.length();
    if (length <= longest_ || length > RankTerm::kMaxCandidate) return judgeWideText(item, bar);
    if (length <= 64) return judgeText(PathText<uint64_t, Name>(folder_, folderLength, name), bar);
    if (length <= 128)
        return judgeText(PathText<UnitBits128, Name>(folder_, folderLength, name), bar);
    return judgeText(PathText<UnitBits256, Name>(folder_, folderLength, name), bar);
}

RankWorker::Verdict RankWorker::judgeWideText(const fs_item_t& item, double bar) {
    if (plain_) {
        if (!text_.set(item, folder_)) return {};
        const std::u16string& text = text_.text();
        if (text.size() > longest_ && text.size() <= RankTerm::kMaxCandidate) {
            if (text.size() <= 64) return judgeText(WideText<uint64_t>(text), bar);
            return judgeText(WideText<UnitBits256>(text), bar);
        }
    }
    scratch_.clear();
    return judgeThoroughly(item, scratch_);
}

template <class Text>
RankWorker::Verdict RankWorker::judgeText(const Text& text, double bar) const {
    using Bits = typename Text::BitsType;
    const std::vector<RankTerm>& terms = fuzzy_.terms();
    RankTerm::Rows<Text> rows;
    if (terms.size() > 1)  // the cheap refusals of all terms first
        for (const RankTerm& term : terms)
            if (!term.findRows(text, rows)) return {.refused = true};
    std::array<RankCounts, kMaxTermsByPositions> counts;
    Bits wordStarts(0);
    uint64_t wordStartCount = 0;
    bool haveStarts = false;
    double rough = 0;
    for (size_t k = 0; k < terms.size(); k++) {
        const RankTerm& term = terms[k];
        if (!term.findRows(text, rows)) return {.refused = true};
        if (term.usesWordStarts() && !haveStarts) {
            wordStarts = text.wordStarts();
            wordStartCount = unitBits::count(wordStarts);
            haveStarts = true;
        }
        Bits chosen;
        if (!term.chooseRuns(rows, wordStarts, counts[k], chosen)) return {.refused = true};
        // Without a hit the word starts do not enter the score.
        counts[k].wordStarts = counts[k].wordHits ? wordStartCount : 0;
        rough += term.roughScore(text.length(), counts[k]);
    }
    if (rough + kRoughSlack < bar) return {.matches = true, .hopeless = true};
    double score = 0;
    for (size_t k = 0; k < terms.size(); k++)
        score += rankScore(terms[k].length(), text.length(), counts[k]);
    return {.matches = score > 0, .score = score};
}

bool RankWorker::baseScoreCounts(double score) const {
    if (metadata_ && metadata_->numberOfSearchTerms() > 0 && score == 0.0) return true;
    return fuzzy_.numberOfSearchTerms() == 0 && regex_ && regex_->didExcludingSearchOnly();
}

RankWorker::Verdict RankWorker::judgeThoroughly(const fs_item_t& item, IndexSet& indexes) {
    double score = 0;
    if (textTerms_) {
        if (!text_.set(item, folder_)) return {};
        if (regex_ && !regex_->match(text_.text(), indexes, score)) return {};
        if (!fuzzy_.match(text_.text(), indexes, score)) return {};
    }
    if (baseScoreCounts(score)) score = baseScore(item, folder_.depth());
    return {.matches = score > 0, .score = score};
}

match_ptr RankWorker::makeMatch(const RankedItem& ranked) {
    auto match = std::make_unique<match_t>();
    match->item = ranked.item;
    match->score = ranked.score;
    match->depth = ranked.depth;
    match->indexesInFilename = request_.filenameOnly;
    folder_.enter(ranked.item->parent);
    judgeThoroughly(*ranked.item, match->matchedIndexes);
    if (request_.processMetadata && metadata_) {
        match->matchingCriterions.emplace();
        metadata_->match(ranked.item->metadata, *match->matchingCriterions);
    }
    return match;
}
