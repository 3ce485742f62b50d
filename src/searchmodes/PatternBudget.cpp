#include "searchmodes/PatternBudget.h"

#include <unicode/uset.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <vector>

namespace {

constexpr int64_t kAPattern = 10, kAUnit = 2, kABrace = 40, kAClass = 100;
constexpr int64_t kCodePoints = 0x110000;
constexpr int64_t kWordCodePoints = 140'000;
constexpr int64_t kCodePointsAMicrosecond = 100;

int64_t costOfClosing(int64_t codePoints) {
    return std::min(codePoints, kCodePoints) / kCodePointsAMicrosecond;
}

int64_t costOfReading(std::u16string_view pattern) {
    return kAPattern + static_cast<int64_t>(pattern.size()) * kAUnit;
}

/// How many code points the class holds. Where it is none, the pattern may know it by another name.
int64_t sizeOfClass(std::u16string_view token) {
    UErrorCode status = U_ZERO_ERROR;
    USet* set = uset_openPattern(token.data(), static_cast<int32_t>(token.size()), &status);
    const int64_t size = U_SUCCESS(status) ? uset_size(set) : kCodePoints;
    uset_close(set);
    return size;
}

/// Whether comments or free spacing hide from a plain look at the units where sets begin and end.
bool isHardToRead(std::u16string_view pattern) {
    for (size_t at = 0; (at = pattern.find(u"(?", at)) != pattern.npos; at += 2) {
        const auto rest = pattern.substr(at + 2);
        const auto flags = rest.substr(0, rest.find_first_not_of(u"imsdwx-"));
        if (rest.starts_with(u'#') || flags.find(u'x') != flags.npos) return true;
    }
    return false;
}

/// Goes over a pattern once. What it is unsure of counts for more, never for less.
class CostOfPattern {
  public:
    CostOfPattern(std::u16string_view pattern, int64_t limit)
        : pattern_(pattern), limit_(limit), isHard_(isHardToRead(pattern)) {}

    /// As far as the limit at least.
    int64_t get() {
        cost_ = costOfReading(pattern_);
        while (at_ < pattern_.size() && cost_ <= limit_) step();
        while (!sets_.empty()) endOfSet();
        return cost_;
    }

  private:
    bool isInSet() const { return isHard_ || !sets_.empty(); }
    bool startsWith(std::u16string_view token) const {
        return pattern_.substr(at_).starts_with(token);
    }
    /// Up to the end of a class, which is passed over.
    std::u16string_view token(std::u16string_view end) {
        const size_t found = pattern_.find(end, at_ + 2);
        const size_t behind = found == pattern_.npos ? pattern_.size() : found + end.size();
        const auto text = pattern_.substr(at_, behind - at_);
        at_ = behind;
        return text;
    }

    void step() {
        const char16_t unit = pattern_[at_];
        if (unit == u'\\') return escape();
        if (unit == u'{') cost_ += kABrace;
        if (unit == u'[') return openSet();
        if (unit == u']' && !sets_.empty()) {
            at_++;
            last_ = 0;
            return endOfSet();
        }
        if (unit == u'-' && isInSet()) return range();
        last_ = next(pattern_, at_);
    }

    void openSet() {
        if (startsWith(u"[:") && pattern_.find(u":]", at_ + 2) != pattern_.npos) {
            const size_t begin = at_;
            const int64_t size = sizeOfClass(token(u":]"));
            cost_ += kAClass + costOfClosing(size);
            add(size);
            if (size < kCodePoints) return;
            at_ = begin;  // perhaps a set that begins with a colon
        }
        // What is cut out of a set makes it no larger.
        const bool cuts = at_ >= 2 && (pattern_.substr(at_ - 2, 2) == u"&&" ||
                                       pattern_.substr(at_ - 2, 2) == u"--");
        at_++;
        const bool isNegated = startsWith(u"^");
        if (isNegated) at_++;
        if (startsWith(u"]")) at_++;  // the first one stands for itself
        if (isNegated && isHard_) add(kCodePoints);
        sets_.push_back({.isNegated = isNegated, .cuts = cuts});
    }
    /// Each set is closed by itself, before it is negated and goes into the one around it.
    void endOfSet() {
        const Set set = sets_.back();
        sets_.pop_back();
        cost_ += costOfClosing(set.codePoints);
        if (!sets_.empty() && !set.cuts) add(set.isNegated ? kCodePoints : set.codePoints);
    }
    void add(int64_t codePoints) {
        if (isHard_ || sets_.empty())
            cost_ += costOfClosing(codePoints);
        else
            sets_.back().codePoints += codePoints;
    }

    void escape() {
        if (startsWith(u"\\p") || startsWith(u"\\P")) return property();
        const char16_t letter = at_ + 1 < pattern_.size() ? pattern_[at_ + 1] : 0;
        if (letter == u'Q' && !isInSet()) {
            token(u"\\E");
            return;
        }
        last_ = character();
        if (!isInSet()) return;
        switch (letter) {
            case u'w':
                return add(kWordCodePoints);
            case u'd':
            case u'h':
                cost_ += kAClass;
                return;
            case u'W':
            case u'D':
            case u'S':
            case u'H':
            case u'V':
            case u'Q':
                return add(kCodePoints);
            default:
                return;
        }
    }
    void property() {
        const bool isNegated = pattern_[at_ + 1] == u'P';
        std::u16string text(token(u"}"));
        text[1] = u'p';
        const int64_t size = sizeOfClass(text);
        cost_ += kAClass + costOfClosing(size);
        if (isInSet()) add(isNegated ? kCodePoints - size : size);
    }

    /// From the code point before the hyphen to that behind it.
    void range() {
        at_++;
        if (at_ == pattern_.size() || pattern_[at_] == u'[' || pattern_[at_] == u']') return;
        const auto first = last_;
        last_ = pattern_[at_] == u'\\' ? character() : next(pattern_, at_);
        add(isHard_ ? kCodePoints : std::max<int64_t>(0, last_ - first));
    }
    static UChar32 next(std::u16string_view text, size_t& at) {
        UChar32 c;
        U16_NEXT(text.data(), at, text.size(), c);
        return c;
    }
    /// What an escape stands for, 0 where it is not known to; at the end of a range the last one.
    UChar32 character() {
        const bool isRange = at_ > 0 && pattern_[at_ - 1] == u'-';
        at_++;
        auto offset = static_cast<int32_t>(at_);
        const auto unitAt = [](int32_t place, void* text) {
            return (*static_cast<std::u16string_view*>(text))[static_cast<size_t>(place)];
        };
        const UChar32 c =
            u_unescapeAt(unitAt, &offset, static_cast<int32_t>(pattern_.size()), &pattern_);
        const bool isKnown = c >= 0 && !startsWith(u"N");
        const auto behind = isKnown ? static_cast<size_t>(offset) : at_ + 1;
        at_ = std::min(behind, pattern_.size());
        return isKnown ? c : isRange ? kLast : 0;
    }

    static constexpr UChar32 kLast = 0x10FFFF;
    struct Set {
        bool isNegated, cuts;
        int64_t codePoints = 0;  // at most
    };

    std::u16string_view pattern_;
    const int64_t limit_;
    const bool isHard_;
    size_t at_ = 0;
    UChar32 last_ = 0;       // the code point before this place
    std::vector<Set> sets_;  // in each other, that are open here
    int64_t cost_ = 0;
};

}  // namespace

bool PatternBudget::allows(std::u16string_view pattern) {
    const int64_t cost = CostOfPattern(pattern, left_).get();
    if (cost <= left_) {
        left_ -= cost;
        return true;
    }
    // To look at it took its time too.
    left_ -= std::min(left_, costOfReading(pattern));
    return false;
}
