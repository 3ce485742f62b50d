#include "searchmodes/RankWorker.h"

#include <array>

#include "util/Unicode.h"

namespace {

constexpr double kDepthPenalty = -0.03;
constexpr double kBaseDepthPenalty = -0.05;
constexpr double kBaseLengthPenalty = -0.01;
constexpr double kRoughSlack = 1e-9;  // more than a rough score can be off
constexpr size_t kBlock = 1024;       // items between two looks at the abort flag
constexpr size_t kPrefetchRecords = 16, kPrefetchNames = 8;
constexpr size_t kMaxTermsByPositions = 8;

/// What an item gets whose text nobody looked at, or was only refused by none.
double baseScore(const fs_item_t& item, uint16_t depth) {
    return depth * kBaseDepthPenalty + 1.0 + item.name_length * kBaseLengthPenalty;
}

/// Units that removing diacritics takes out of ASCII text.
bool hasAsciiDiacritic(std::string_view name) {
    return name.find_first_of("^`") != std::string_view::npos;
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
      folder_(fuzzy_),
      best_(request.limit) {
    const bool hasRegex = regex_ && regex_->numberOfSearchTerms() > 0;
    const bool hasMetadata = metadata_ && metadata_->numberOfSearchTerms() > 0;
    textTerms_ = fuzzy_.numberOfSearchTerms() > 0 || hasRegex;
    thorough_ = hasRegex || hasMetadata || fuzzy_.numberOfSearchTerms() == 0 ||
                fuzzy_.terms().size() > kMaxTermsByPositions;
    shortest_ = ~size_t{0};
    for (const RankTerm& term : fuzzy_.terms()) {
        need_ |= term.need();
        shortest_ = std::min(shortest_, term.length());
        longest_ = std::max(longest_, term.length());
        ascii_ = ascii_ && term.isAscii();
        plain_ = plain_ && term.isPlain();
    }
}

void RankWorker::rank(IndexRange range) {
    std::array<uint32_t, kBlock> open;
    const uint64_t end = range.location + range.length;
    // A name of other letters may hold any of ASCII's once its diacritics are gone; and for whole
    // paths the folders' letters count too.
    const NameMask always = request_.ignoreDiacritics ? kNotAscii : 0;
    const NameMask need = request_.filenameOnly ? need_ : 0;
    for (uint64_t at = range.location; at < end && !request_.isAborted();) {
        const uint64_t blockBegin = at, blockEnd = std::min(end, at + kBlock);
        size_t count = 0;
        for (; at < blockEnd; at++) {  // without a branch an item
            open[count] = static_cast<uint32_t>(at - blockBegin);
            count += (need & ~masks_[at]) == 0 || (masks_[at] & always);
        }
        for (size_t i = 0; i < count; i++) {
            if (i + kPrefetchRecords < count)
                __builtin_prefetch(items_[blockBegin + open[i + kPrefetchRecords]]);
            if (i + kPrefetchNames < count)
                __builtin_prefetch(items_[blockBegin + open[i + kPrefetchNames]]->name);
            judge(*items_[blockBegin + open[i]]);
        }
    }
}

bool RankWorker::passesFilters(const fs_item_t& item) {
    switch (item.type) {
        case ITEM_BUNDLE:
            if (request_.bundlesAsFiles ? !request_.showFiles : !request_.showDirectories)
                return false;
            break;
        case ITEM_DIRECTORY:
            if (!request_.showDirectories) return false;
            break;
        case ITEM_FILE:
            if (!request_.showFiles) return false;
            break;
        default:
            break;  // links are always shown
    }
    if (request_.extensionFilter) {
        const std::string_view name = item.nameView();
        const size_t dot = name.rfind('.');
        const bool has = dot != std::string_view::npos && dot != 0 && dot + 1 < name.size();
        if (!request_.extensionFilter->contains(std::string(has ? name.substr(dot + 1) : "")))
            return false;
    }
    if (request_.processMetadata && metadata_) {
        criterions_.clear();
        if (!metadata_->match(item.metadata, criterions_)) return false;
    }
    return !request_.pathFilter || !request_.pathFilter->hasRules() ||
           !request_.pathFilter->isPathExcluded(fs_item_url(&item));
}

void RankWorker::judge(const fs_item_t& item) {
    if (!passesFilters(item)) return;
    folder_.enter(item.parent);
    const uint16_t depth = folder_.depth();
    // What the terms must reach here; what rounding can do is below the slack.
    const double bar = best_.worstKept() - depth * kDepthPenalty;
    Verdict verdict;
    if (thorough_) {
        scratch_.clear();
        verdict = judgeThoroughly(item, scratch_);
    } else {
        verdict = request_.filenameOnly ? judgeName(item, bar) : judgePath(item, bar);
    }
    if (!verdict.matches) return;
    total_++;
    if (!verdict.hopeless) best_.add({&item, verdict.score + depth * kDepthPenalty, depth});
}

bool RankWorker::isAsciiName(const fs_item_t& item) const {
    if (masks_[item.index] & kNotAscii) return false;
    return !request_.ignoreDiacritics || !hasAsciiDiacritic(item.nameView());
}

RankWorker::Verdict RankWorker::judgeName(const fs_item_t& item, double bar) {
    const unsigned length = item.name_length;
    if (isAsciiName(item)) {
        if (length < shortest_) return {};
        if (ascii_ && length > longest_ && length <= RankTerm::kMaxCandidate) {
            if (length <= 64) {
                const AsciiText<uint64_t> text(item.name, length);
                return judgeText(text, bar);
            }
            const AsciiText<UnitBits256> text(item.name, length);
            return judgeText(text, bar);
        }
    } else if (plain_) {
        if (!textOf(item, text_)) return {};
        if (text_.size() > longest_ && text_.size() <= 64) {
            const WideText<uint64_t> text(text_);
            return judgeText(text, bar);
        }
    }
    scratch_.clear();
    return judgeThoroughly(item, scratch_);
}

RankWorker::Verdict RankWorker::judgePath(const fs_item_t& item, double bar) {
    const bool ascii = isAsciiName(item) && folder_.isAscii() && !request_.ignoreDiacritics;
    if (!request_.ignoreDiacritics && (need_ & ~(folder_.mask() | masks_[item.index]))) return {};
    const size_t length = folder_.bytes().size() + item.name_length;
    if (ascii && ascii_ && item.name_length <= 64 &&
        folder_.bytes().size() <= FolderText::kMaxUnits && length > longest_ &&
        length <= RankTerm::kMaxCandidate) {
        const AsciiText<uint64_t> name(item.name, item.name_length);
        if (length <= 64) return judgeText(PathText<uint64_t>(folder_, name), bar);
        if (length <= 128) return judgeText(PathText<UnitBits128>(folder_, name), bar);
        return judgeText(PathText<UnitBits256>(folder_, name), bar);
    }
    if (plain_) {
        if (!textOf(item, text_)) return {};
        if (text_.size() > longest_ && text_.size() <= RankTerm::kMaxCandidate) {
            const WideText<UnitBits256> text(text_);
            return judgeText(text, bar);
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
            if (!term.findRows(text, rows)) return {};
    std::array<RankCounts, kMaxTermsByPositions> counts;
    Bits wordStarts(0);
    uint64_t wordStartCount = 0;
    bool haveStarts = false;
    double rough = 0;
    for (size_t k = 0; k < terms.size(); k++) {
        const RankTerm& term = terms[k];
        if (!term.findRows(text, rows)) return {};
        if (term.usesWordStarts() && !haveStarts) {
            wordStarts = text.wordStarts();
            wordStartCount = unitBits::count(wordStarts);
            haveStarts = true;
        }
        Bits chosen;
        if (!term.chooseRuns(rows, wordStarts, counts[k], chosen)) return {};
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

bool RankWorker::textOf(const fs_item_t& item, std::u16string& text) {
    const bool ascii = !(masks_[item.index] & kNotAscii);
    std::optional<std::u16string> name;
    if (ascii) {
        const std::string_view bytes = item.nameView();
        name.emplace(bytes.begin(), bytes.end());
    } else {
        name = toUtf16(item.nameView());
        if (!name) return false;
        name = nfc(*name);
    }
    if (request_.filenameOnly) {
        text = std::move(*name);
    } else {
        if (!folder_.text()) return false;
        text = *folder_.text() + *name;
    }
    if (request_.ignoreDiacritics) text = stringByRemovingDiacritics(text);
    return !text.empty();
}

bool RankWorker::baseScoreCounts(double score) const {
    if (metadata_ && metadata_->numberOfSearchTerms() > 0 && score == 0.0) return true;
    return fuzzy_.numberOfSearchTerms() == 0 && regex_ && regex_->didExcludingSearchOnly();
}

RankWorker::Verdict RankWorker::judgeThoroughly(const fs_item_t& item, IndexSet& indexes) {
    double score = 0;
    if (textTerms_) {
        if (!textOf(item, text_)) return {};
        if (regex_ && !regex_->match(text_, indexes, score)) return {};
        if (!fuzzy_.match(text_, indexes, score)) return {};
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
