#pragma once
#include <unicode/uchar.h>

#include <cctype>
#include <set>
#include <string_view>
#include <vector>

/// A second opinion on how a candidate ranks against a term without surrogates, positions wanted:
/// said by sets and by counting, without a table of cells, and as slow as that is.
class NaiveRanker {
  public:
    double score = -1;
    std::set<size_t> positions;

    NaiveRanker(std::u16string_view candidate, std::u16string_view term)
        : text_(candidate), term_(term), n_(candidate.size()), l_(term.size()) {
        if (l_ >= n_ || !isSubsequence()) return;
        findStarts();
        findHits();
        narrow();
        if (!choose()) {
            positions.clear();
            return;
        }
        const auto l = static_cast<double>(l_), n = static_cast<double>(n_);
        const auto w = static_cast<double>(wordHits_), t = static_cast<double>(starts_.size());
        const double d = l * l + l + 1;
        score = (wordHits_ == l_ ? d - 1 : d - ((l - w) + static_cast<double>(runs_) * l)) / d;
        score = ((n - static_cast<double>(firstStart_)) / n) / (d + d) + score;
        if (!starts_.empty()) score = (w / t) / (d * 4) + score;
        score = (l / n) / (d * 8) + score;
    }

  private:
    static char16_t lower(char16_t unit) { return static_cast<char16_t>(u_tolower(unit)); }

    bool isSubsequence() const {
        size_t i = 0;
        for (const char16_t unit : text_)
            if (i < l_ && lower(unit) == lower(term_[i])) i++;
        return i == l_;
    }
    void findStarts() {
        for (size_t p = 0; p < n_; p++) {
            const bool behindWord =
                p > 0 && (u_isalnum(text_[p - 1]) || text_[p - 1] == '.' || text_[p - 1] == '\'');
            if (u_isupper(text_[p]) || (u_isalnum(text_[p]) && !behindWord)) starts_.insert(p);
        }
    }
    /// Each unit counts only behind the first place of the unit before it.
    void findHits() {
        const size_t none = n_ % 256 == 0 ? 0 : SIZE_MAX;  // the bound's fill, the low byte of n
        hits_.resize(l_);
        lower_.assign(l_, none);
        for (size_t i = 0; i < l_; i++)
            for (size_t p = i ? lower_[i - 1] + 1 : 0; p < n_; p++)
                if (lower(text_[p]) == lower(term_[i])) {
                    hits_[i].insert(p);
                    lower_[i] = std::min(lower_[i], p);
                }
        for (const auto& hits : hits_) upper_.push_back(*hits.rbegin() + 1);
    }
    /// The last place of a unit lies before the end of the next one's.
    void narrow() {
        for (size_t i = l_ - 1; i-- > 0;) {
            const size_t bound = upper_[i + 1] - 1;
            if (bound >= upper_[i]) continue;
            size_t end = bound;
            if (lower_[i] < bound)
                while (end > lower_[i] && !hits_[i].contains(end - 1)) end--;
            upper_[i] = end;
        }
    }
    size_t runFrom(size_t i, size_t p) const {
        return i < l_ && hits_[i].contains(p) ? 1 + runFrom(i + 1, p + 1) : 0;
    }
    bool overlapsChosen(size_t p, size_t length) const {
        const auto next = positions.lower_bound(p);
        return next != positions.end() && *next < p + length;
    }
    bool isTypedUpper(size_t i) const {
        return term_[i] < 128 ? std::isupper(term_[i]) : u_isupper(term_[i]);
    }
    size_t startsWithin(size_t begin, size_t end) const {
        size_t count = 0;
        for (size_t p = begin; p < end; p++) count += starts_.count(p);
        return count;
    }
    /// A short term is cut behind a unit inside a word that could begin a word further on.
    size_t cutRun(size_t i, size_t start, size_t length) {
        for (size_t k = 0;; k++) {
            const size_t p = lower_[i + k] = std::max(start + k, lower_[i + k]);
            bool couldBegin = false;
            if (k < length && !starts_.contains(p))
                for (size_t q = p; q < upper_[i + k]; q++)
                    couldBegin |= hits_[i + k].contains(q) && starts_.contains(q);
            if (k + 1 >= length || couldBegin) return k + 1;
        }
    }
    bool choose() {
        for (size_t i = 0; i < l_; runs_++) {
            size_t start = 0, length = 0;
            for (size_t p = lower_[i]; p < upper_[i]; p++) {
                const size_t run = runFrom(i, p);
                if (run == 0 || overlapsChosen(p, run)) continue;
                if (starts_.contains(p) && isTypedUpper(i)) {
                    start = p;
                    length = run;
                    wordHits_ += startsWithin(p, p + run);
                    break;
                }
                if (run > length) {
                    start = p;
                    length = run;
                }
            }
            if (i == 0) firstStart_ = start;
            const size_t used = l_ >= 4 ? std::max<size_t>(length, 1) : cutRun(i, start, length);
            i += used;
            if (length == 0) continue;
            if (!positions.empty() && start < *positions.begin()) return false;
            for (size_t p = start; p < start + used; p++) positions.insert(p);
        }
        return true;
    }

    const std::u16string_view text_, term_;
    const size_t n_, l_;
    std::set<size_t> starts_;
    std::vector<std::set<size_t>> hits_;
    std::vector<size_t> lower_, upper_;
    size_t runs_ = 0, wordHits_ = 0, firstStart_ = 0;
};
