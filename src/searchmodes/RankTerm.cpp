#include "searchmodes/RankTerm.h"

#include <unicode/uchar.h>
#include <unicode/utf16.h>

#include <optional>

#include "searchmodes/StringRanker.h"
#include "searchmodes/WideText.h"
#include "searchmodes/wordStarts.h"
#include "util/Unicode.h"

namespace {

constexpr char16_t kLongS = 0x17F;  // folds to ASCII, but is no capital of it

template <class Text>
std::optional<double> rankWith(const RankTerm& term, const Text& text, IndexSet& indexes) {
    using Bits = typename Text::BitsType;
    RankTerm::Rows<Text> rows;
    if (!term.findRows(text, rows)) return std::nullopt;
    const Bits wordStarts = text.wordStarts();
    RankCounts counts;
    Bits chosen;
    if (!term.chooseRuns(rows, wordStarts, counts, chosen)) return std::nullopt;
    for (; bool(chosen); unitBits::clearLowest(chosen)) indexes.add(unitBits::lowest(chosen));
    counts.wordStarts = unitBits::count(wordStarts);
    return rankScore(term.length(), text.length(), counts);
}

}  // namespace

RankTerm::RankTerm(std::u16string text) : cased_(std::move(text)), lower_(lowerCasedUnits(cased_)) {
    const size_t length = cased_.size();
    bool longS = false;
    for (size_t i = 0; i < length; i++) {
        const char16_t unit = lower_[i];
        if (U16_IS_SURROGATE(unit)) plain_ = false;
        longS |= cased_[i] == kLongS;
        need_ |= unit < 128 ? presenceOf(unit) : kNotAscii;
        if (i < kMaxUnits && isUpperCaseUnit(cased_[i])) upper_ |= uint64_t{1} << i;
    }
    // Of the same length, a name in ASCII equals a term with a long s where it has an s.
    if (longS) need_ = 0;
    if (length > kMaxUnits || length == 0) plain_ = false;
    if (!plain_) need_ = 0;
    usesWordStarts_ = upper_ != 0 || length == 2 || length == 3;
    const auto l = static_cast<double>(length);
    d_ = l * l + l + 1;
    inverseD_ = 1 / d_;
}

double RankTerm::rank(std::u16string_view candidate, IndexSet* indexes) const {
    if (indexes && plain_ && candidate.size() > length() && candidate.size() <= kMaxCandidate) {
        std::optional<double> score;
        if (candidate.size() <= 64) {
            const WideText<uint64_t> wide(candidate);
            score = rankWith(*this, wide, *indexes);
        } else {
            const WideText<UnitBits256> wide(candidate);
            score = rankWith(*this, wide, *indexes);
        }
        return score.value_or(-1);
    }
    return StringRanker::rankString(
        candidate, {.usingFilter = cased_, .usingLcFilter = lower_, .unifyCase = true}, indexes);
}
