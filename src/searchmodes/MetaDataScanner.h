#pragma once
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

/// Steps over a term from left to right. Nothing is skipped, letters count as they are, digits are
/// those of ASCII. A step that does not find what it looks for moves nothing.
class MetaDataScanner {
  public:
    explicit MetaDataScanner(std::u16string_view text) : text_(text) {}

    bool isAtEnd() const { return at_ == text_.size(); }
    int64_t location() const { return static_cast<int64_t>(at_); }
    std::u16string_view rest() const { return text_.substr(at_); }
    std::u16string_view term() const { return text_; }

    bool scan(std::u16string_view token) {
        if (!rest().starts_with(token)) return false;
        at_ += token.size();
        return true;
    }
    std::u16string_view scanDigits() {
        const size_t start = at_;
        while (at_ < text_.size() && isDigit(text_[at_])) at_++;
        return text_.substr(start, at_ - start);
    }
    /// Nothing without a digit; the largest number where the digits say more.
    std::optional<int64_t> scanInteger() {
        const auto digits = scanDigits();
        if (digits.empty()) return std::nullopt;
        return numberOf(digits);
    }
    std::u16string_view scanUpToColon() {
        const auto found = rest().substr(0, rest().find(u':'));
        at_ += found.size();
        return found;
    }

    static bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }
    static int64_t numberOf(std::u16string_view digits) {
        constexpr int64_t kMax = std::numeric_limits<int64_t>::max();
        int64_t value = 0;
        for (const char16_t unit : digits) {
            const int64_t digit = unit - u'0';
            if (value > (kMax - digit) / 10) return kMax;
            value = value * 10 + digit;
        }
        return value;
    }

  private:
    std::u16string_view text_;
    size_t at_ = 0;
};
