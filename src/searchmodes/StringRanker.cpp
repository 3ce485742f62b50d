#include "searchmodes/StringRanker.h"

#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <array>
#include <cstring>
#include <memory>

#include "searchmodes/rankScore.h"
#include "searchmodes/wordStarts.h"

namespace {

/// Zeroed words, on the stack as long as they are few.
template <class T, size_t kFew>
class Scratch {
  public:
    explicit Scratch(size_t count) {
        if (count > kFew)
            many_ = std::make_unique<T[]>(count);
        else
            std::memset(few_.data(), 0, count * sizeof(T));
    }
    T* data() { return many_ ? many_.get() : few_.data(); }
    T& operator[](size_t i) { return data()[i]; }

  private:
    std::array<T, kFew> few_;
    std::unique_ptr<T[]> many_;
};

/// Cheap reasons why a candidate cannot match, before any cell is looked at. candidate: as it is
/// compared, with a NUL behind it.
bool isRejected(const char16_t* candidate, size_t length, std::u16string_view filter) {
    const bool oddFirst = U16_IS_SURROGATE(filter.front());
    const bool oddLast = U16_IS_SURROGATE(filter.back());
    const char16_t* found = u_strchr(candidate, filter.front());
    size_t first = found ? static_cast<size_t>(found - candidate) : 0;
    size_t last = 0;
    bool lastFound = false;
    if (oddLast) {
        const char16_t unit = filter.back();
        const char16_t* at = u_strFindLast(candidate, -1, &unit, 1);
        lastFound = at != nullptr;
        if (at) last = static_cast<size_t>(at - candidate);
    } else {
        for (size_t i = length; i-- > 0 && !lastFound;)
            if (candidate[i] == filter.back()) {
                lastFound = true;
                last = i;
            }
    }
    // ICU does not find half of a pair, so a surrogate alone is no reason to refuse.
    if (!found) {
        if (!oddFirst) return true;
        first = 0;
        if (!lastFound) last = length - 1;
    } else if (!lastFound) {
        if (!oddLast) return true;
        last = length - 1;
    } else if (last + 1 < first + filter.size()) {
        return true;
    }
    size_t next = 1;
    for (size_t p = first + 1; p <= last && next < filter.size(); p++)
        if (candidate[p] == filter[next]) next++;
    return next != filter.size();
}

class Ranking {
  public:
    /// compared: the candidate as it is compared.
    Ranking(std::u16string_view candidate, const char16_t* compared, const RankFilter& filter)
        : candidate_(candidate),
          lc_(compared),
          filter_(filter),
          n_(candidate.size()),
          l_(filter.usingFilter.size()),
          lower_(l_),
          upper_(l_),
          cells_((l_ + 1) * n_ + 1),
          starts_(n_) {}

    double score(IndexSet* indexes) {
        counts_.wordStarts = markWordStarts(candidate_, starts_.data());
        fill();
        if (l_ > 1) {
            narrow();
            spreadRunLengths();
        }
        if (indexes && !chooseRuns(*indexes)) return -1;
        return rankScore(l_, n_, counts_);
    }

  private:
    /// A row of zeros stands in front, so that the cell before a row's first one can be read.
    uint64_t& cell(size_t i, size_t p) { return cells_[n_ + i * n_ + p]; }

    /// A cell is the length of the diagonal run that ends in it.
    void fill() {
        const std::u16string_view filter = filter_.usingLcFilter;
        // Kept: every byte of a lower bound starts as the low byte of n, which is beyond any
        // position unless n is a multiple of 256.
        std::memset(lower_.data(), static_cast<int>(n_ & 255), l_ * sizeof(uint64_t));
        for (size_t i = 0; i < l_; i++)
            for (size_t p = i ? lower_[i - 1] + 1 : 0; p < n_; p++) {
                if (lc_[p] != filter[i]) continue;
                cell(i, p) = i ? cell(i - 1, p - 1) + 1 : 1;
                lower_[i] = std::min<uint64_t>(lower_[i], p);
                upper_[i] = std::max<uint64_t>(upper_[i], p + 1);
            }
    }

    /// Cuts each row behind the last place from which the next row can still go on.
    void narrow() {
        uint64_t end = upper_[l_ - 1];
        for (size_t i = l_ - 1; i-- > 0;) {
            const uint64_t cut = end - 1;
            if (cut < upper_[i]) {
                uint64_t v = cut;
                if (lower_[i] < cut)
                    while (v > lower_[i] && cell(i, v - 1) == 0) v--;
                upper_[i] = v;
            }
            end = upper_[i];
        }
    }

    /// Back and forth: then a cell is how many units match on from there.
    void spreadRunLengths() {
        for (size_t i = l_ - 1; i > 0; i--)
            for (size_t p = lower_[i]; p < upper_[i]; p++)
                if (cell(i, p)) {
                    uint64_t& before = cells_[n_ + (i - 1) * n_ + p - 1];
                    if (before) before = cell(i, p);
                }
        for (size_t i = 0; i + 1 < l_; i++)
            for (size_t p = lower_[i]; p < upper_[i]; p++)
                if (cell(i, p) > 1 && p + 1 < n_) cell(i + 1, p + 1) = cell(i, p) - 1;
    }

    struct Run {
        uint64_t start = 0, length = 0;
        bool found = false;
    };

    Run bestRun(size_t i, const IndexSet& chosen) {
        Run best;
        for (uint64_t p = lower_[i]; p < upper_[i]; p++) {
            const uint64_t length = cell(i, p);
            if (!length) continue;
            bool used = false;
            for (uint64_t k = p; k < p + length && !used; k++) used = chosen.contains(k);
            if (used) continue;
            if (starts_[p] && isUpperCaseUnit(filter_.usingFilter[i])) {
                for (uint64_t k = p; k < p + length; k++) counts_.wordHits += starts_[k];
                return {p, length, true};
            }
            if (length > best.length) best = {p, length, true};
        }
        return best;
    }

    /// How many filter units a run uses up. Short terms are cut behind a unit inside a word that
    /// could also begin a word further on.
    uint64_t unitsUsed(size_t i, const Run& run) {
        if (l_ >= 4) return std::max<uint64_t>(run.length, 1);
        for (uint64_t k = 0;; k++) {
            const uint64_t pos = std::max(run.start + k, lower_[i + k]);
            lower_[i + k] = pos;
            bool other = false;
            if (k < run.length && !starts_[pos])
                for (uint64_t q = pos; q < upper_[i + k] && !other; q++)
                    other = cell(i + k, q) && starts_[q];
            if (k + 1 >= run.length || other) return k + 1;
        }
    }

    bool chooseRuns(IndexSet& indexes) {
        IndexSet chosen(l_);
        for (size_t i = 0; i < l_; counts_.runs++) {
            const Run run = bestRun(i, chosen);
            if (i == 0) counts_.firstStart = run.start;
            const uint64_t used = unitsUsed(i, run);
            i += used;
            if (!run.found) continue;
            if (!chosen.empty() && run.start < chosen.items().front()) return false;
            chosen.addRange(run.start, used);
        }
        for (const uint64_t index : chosen.items()) indexes.add(index);
        return true;
    }

    const std::u16string_view candidate_;
    const char16_t* const lc_;
    const RankFilter& filter_;
    const size_t n_, l_;
    Scratch<uint64_t, 64> lower_, upper_;
    Scratch<uint64_t, 2048> cells_;
    Scratch<uint8_t, 512> starts_;
    RankCounts counts_{};
};

}  // namespace

double StringRanker::rankString(std::u16string_view candidate, const RankFilter& filter,
                                IndexSet* indexesOfMatchedCharacters) {
    const size_t length = filter.usingFilter.size();
    if (length > candidate.size()) return -1;
    if (length == 0) return 0;
    if (length == candidate.size()) {
        UErrorCode status = U_ZERO_ERROR;
        const auto units = static_cast<int32_t>(length);
        if (u_strCaseCompare(candidate.data(), units, filter.usingFilter.data(), units, 0, &status))
            return -1;
        if (indexesOfMatchedCharacters) indexesOfMatchedCharacters->addRange(0, length);
        return 1;
    }
    Scratch<char16_t, 512> compared(candidate.size() + 1);
    for (size_t i = 0; i < candidate.size(); i++)
        compared[i] =
            filter.unifyCase ? static_cast<char16_t>(u_tolower(candidate[i])) : candidate[i];
    if (isRejected(compared.data(), candidate.size(), filter.usingLcFilter)) return -1;
    return Ranking(candidate, compared.data(), filter).score(indexesOfMatchedCharacters);
}
