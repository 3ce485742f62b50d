#pragma once
#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "index/NameMask.h"
#include "searchmodes/IndexSet.h"
#include "searchmodes/UnitBits.h"
#include "searchmodes/rankScore.h"

/// One term of a search, prepared for being ranked against millions of texts. Gives what
/// StringRanker gives, to the last bit: instead of a matrix it keeps one set of positions a filter
/// unit, and reads the lengths of runs off their diagonals.
/// Owner:   FuzzySearch. Threads: any, to read.
class RankTerm {
  public:
    static constexpr size_t kMaxUnits = 60;  // longer terms go the long way
    static constexpr size_t kMaxCandidate = kInverses.size() - 1;

    /// text: precomposed, in the case in which it was typed.
    explicit RankTerm(std::u16string text);

    const std::u16string& text() const { return cased_; }
    const std::u16string& lower() const { return lower_; }
    size_t length() const { return cased_.size(); }
    /// Bits that the mask of a candidate must have.
    NameMask need() const { return need_; }
    /// Whether it can be ranked by positions.
    bool isPlain() const { return plain_; }
    /// Whether the choice of runs looks at word starts.
    bool usesWordStarts() const { return usesWordStarts_; }

    /// Ranks by StringRanker's rules, whatever the text; adds positions to indexes.
    double rank(std::u16string_view candidate, IndexSet* indexes) const;

    /// One set of positions for each unit, of those that lie behind the first places of the units
    /// before. False: the units do not occur in order.
    template <class Text>
    using Rows = std::array<typename Text::BitsType, kMaxUnits>;
    template <class Text>
    bool findRows(const Text& text, Rows<Text>& rows) const;
    /// Picks the runs as StringRanker does. The rows come from findRows, and are changed. False:
    /// refused.
    template <class Bits>
    bool chooseRuns(std::array<Bits, kMaxUnits>& rows, Bits wordStarts, RankCounts& counts,
                    Bits& chosen) const;
    /// The score without its divisions, right to about 1e-15: enough to see that a candidate cannot
    /// be among the best.
    double roughScore(unsigned candidateLength, const RankCounts& counts) const;

  private:
    static constexpr unsigned kNoPlace = ~0u;

    const std::u16string cased_, lower_;
    NameMask need_ = 0;
    bool plain_ = true;
    bool usesWordStarts_ = false;
    uint64_t upper_ = 0;  // bit i: unit i was typed in upper case
    double d_ = 0, inverseD_ = 0;
};

template <class Text>
bool RankTerm::findRows(const Text& text, Rows<Text>& rows) const {
    using Bits = typename Text::BitsType;
    Bits open = ~Bits(0);
    for (size_t i = 0; i < lower_.size(); i++) {
        rows[i] = text.equal(lower_[i]) & open;
        if (!bool(rows[i])) return false;
        open = unitBits::aboveLowest(rows[i]);
    }
    return true;
}

template <class Bits>
bool RankTerm::chooseRuns(std::array<Bits, kMaxUnits>& rows, Bits wordStarts, RankCounts& counts,
                          Bits& chosen) const {
    namespace ub = unitBits;
    const size_t length = lower_.size();
    if (length == 1 && !upper_) {  // half of what is typed first: the first place, and that is it
        const unsigned first = ub::lowest(rows[0]);
        counts.runs = 1;
        counts.wordHits = 0;
        counts.firstStart = first;
        chosen = Bits(1) << first;
        return true;
    }
    std::array<unsigned, 3> lower;
    for (size_t i = 0; i < length && length < 4; i++) lower[i] = ub::lowest(rows[i]);
    unsigned end = ub::highest(rows[length - 1]) + 1;
    for (size_t i = length - 1; i-- > 0;) {  // cut each row behind what the next one can use
        rows[i] &= ub::below<Bits>(end - 1);
        end = bool(rows[i]) ? ub::highest(rows[i]) + 1 : end - 1;
    }
    chosen = Bits(0);
    counts.runs = counts.wordHits = counts.firstStart = 0;
    for (size_t i = 0; i < length; counts.runs++) {
        // Places from which run units match on, and those that a run would share with the chosen.
        Bits open = rows[i], taken = chosen;
        unsigned bestStart = 0, bestLength = 0, startOnWord = kNoPlace, lengthOnWord = 0;
        for (unsigned run = 1; bool(open); run++) {
            const Bits longer = i + run < length ? open & (rows[i + run] >> run) : Bits(0);
            if (const Bits exact = open & ~longer & ~taken; bool(exact)) {
                bestStart = ub::lowest(exact);
                bestLength = run;
                if (upper_ >> i & 1) {
                    const Bits onWord = exact & wordStarts;
                    if (bool(onWord) && ub::lowest(onWord) < startOnWord) {
                        startOnWord = ub::lowest(onWord);
                        lengthOnWord = run;
                    }
                }
            }
            open = longer;
            taken |= chosen >> run;
        }
        if (startOnWord != kNoPlace) {  // what was typed in upper case takes the first word start
            bestStart = startOnWord;
            bestLength = lengthOnWord;
            counts.wordHits += ub::count(wordStarts & (ub::below<Bits>(bestLength) << bestStart));
        }
        if (i == 0) counts.firstStart = bestStart;
        unsigned used = std::max(bestLength, 1u);
        if (length < 4) {
            for (unsigned k = 0;; k++) {
                const unsigned pos = std::max(bestStart + k, lower[i + k]);
                lower[i + k] = pos;
                const bool other = k < bestLength && !ub::test(wordStarts, pos) &&
                                   bool(rows[i + k] & wordStarts & ~ub::below<Bits>(pos));
                used = k + 1;
                if (used >= bestLength || other) break;
            }
        }
        i += used;
        if (bestLength > 0) {
            if (bool(chosen) && bestStart < ub::lowest(chosen)) return false;
            chosen |= ub::below<Bits>(used) << bestStart;
        }
    }
    return true;
}

inline double RankTerm::roughScore(unsigned candidateLength, const RankCounts& counts) const {
    const auto l = static_cast<double>(length());
    const auto w = static_cast<double>(counts.wordHits);
    const double inverse = kInverses[candidateLength];
    const double a = counts.wordHits == length()
                         ? d_ - 1
                         : d_ - ((l - w) + static_cast<double>(counts.runs) * l);
    const double start = static_cast<double>(candidateLength - counts.firstStart) * inverse * 0.5;
    const double words = counts.wordHits ? w / static_cast<double>(counts.wordStarts) * 0.25 : 0;
    return (a + start + words + l * inverse * 0.125) * inverseD_;
}
