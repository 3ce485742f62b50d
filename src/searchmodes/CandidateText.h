#pragma once
#include <unicode/uchar.h>

#include <cstring>
#include <string_view>

#include "searchmodes/UnitBits.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// A candidate as sets of positions: where a unit stands, where words start. Two forms with the
/// same operations: of ASCII bytes, 16 at a time, and of UTF-16 units. Bits is as wide as the text
/// is long at most.

/// Bytes that may be read behind an ASCII candidate's end.
constexpr size_t kReadableBehind = 32;

#if defined(__SSE2__)
template <class Bits>
class AsciiText {
  public:
    using BitsType = Bits;

    /// bytes: ASCII alone; up to kReadableBehind bytes behind them are read, whatever they are.
    AsciiText(const char* bytes, unsigned length) : length_(length), used_((length + 15) / 16) {
        if (sizeof(Bits) == 8 && length <= 32) used_ = 2;  // no branch on the length of a name
        for (unsigned v = 0; v < used_; v++) {
            raw_[v] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + 16 * v));
            const __m128i toLower = _mm_and_si128(within(raw_[v], 'A', 'Z'), _mm_set1_epi8(32));
            lower_[v] = _mm_add_epi8(raw_[v], toLower);
        }
    }
    unsigned length() const { return length_; }
    Bits all() const { return unitBits::below<Bits>(length_); }
    /// Where the lower-case text has the byte.
    Bits equal(char16_t unit) const {
        const __m128i wanted = _mm_set1_epi8(static_cast<char>(unit));
        if (sizeof(Bits) == 8 && used_ == 2)
            return Bits(mask(_mm_cmpeq_epi8(lower_[0], wanted)) |
                        mask(_mm_cmpeq_epi8(lower_[1], wanted)) << 16) &
                   all();
        Bits bits(0);
        for (unsigned v = 0; v < used_; v++)
            unitBits::setSixteen(bits, v, mask(_mm_cmpeq_epi8(lower_[v], wanted)));
        return bits & all();
    }
    Bits wordStarts() const {
        Bits upper(0), alphanumeric(0), soft(0);
        for (unsigned v = 0; v < used_; v++) {
            const __m128i letters = within(lower_[v], 'a', 'z'), digits = within(raw_[v], '0', '9');
            const __m128i dot = _mm_cmpeq_epi8(raw_[v], _mm_set1_epi8('.'));
            const __m128i quote = _mm_cmpeq_epi8(raw_[v], _mm_set1_epi8('\''));
            unitBits::setSixteen(upper, v, mask(within(raw_[v], 'A', 'Z')));
            unitBits::setSixteen(alphanumeric, v, mask(_mm_or_si128(letters, digits)));
            unitBits::setSixteen(soft, v, mask(_mm_or_si128(dot, quote)));
        }
        const Bits boundary = (~(alphanumeric | soft) << 1) | Bits(1);
        return ((boundary & alphanumeric) | upper) & all();
    }

  private:
    static __m128i within(__m128i bytes, char low, char high) {
        return _mm_and_si128(_mm_cmpgt_epi8(bytes, _mm_set1_epi8(static_cast<char>(low - 1))),
                             _mm_cmplt_epi8(bytes, _mm_set1_epi8(static_cast<char>(high + 1))));
    }
    static uint64_t mask(__m128i bytes) {
        return static_cast<uint64_t>(static_cast<unsigned>(_mm_movemask_epi8(bytes)));
    }

    __m128i raw_[sizeof(Bits) / 2], lower_[sizeof(Bits) / 2];
    unsigned length_, used_;
};
#else
template <class Bits>
class AsciiText {
  public:
    using BitsType = Bits;

    AsciiText(const char* bytes, unsigned length) : bytes_(bytes), length_(length) {}
    unsigned length() const { return length_; }
    Bits all() const { return unitBits::below<Bits>(length_); }
    Bits equal(char16_t unit) const {
        Bits bits(0);
        for (unsigned i = 0; i < length_; i++) {
            const char c = bytes_[i];
            const char lower = c >= 'A' && c <= 'Z' ? static_cast<char>(c | 32) : c;
            if (lower == static_cast<char>(unit)) bits |= Bits(1) << i;
        }
        return bits;
    }
    Bits wordStarts() const {
        Bits bits(0);
        bool boundary = true;
        for (unsigned i = 0; i < length_; i++) {
            const char c = bytes_[i];
            const bool upper = c >= 'A' && c <= 'Z';
            const bool alphanumeric = upper || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
            if ((boundary && alphanumeric) || upper) bits |= Bits(1) << i;
            boundary = !alphanumeric && c != '.' && c != '\'';
        }
        return bits;
    }

  private:
    const char* bytes_;
    unsigned length_;
};
#endif

template <class Bits>
class WideText {
  public:
    using BitsType = Bits;

    explicit WideText(std::u16string_view text) : raw_(text) {
        for (size_t i = 0; i < text.size(); i++) {
            const char16_t c = text[i];
            lower_[i] = c >= 128                 ? static_cast<char16_t>(u_tolower(c))
                        : c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c | 32)
                                                 : c;
        }
    }
    unsigned length() const { return static_cast<unsigned>(raw_.size()); }
    Bits equal(char16_t unit) const {
        Bits bits(0);
        for (unsigned i = 0; i < length(); i++)
            if (lower_[i] == unit) bits |= Bits(1) << i;
        return bits;
    }
    Bits wordStarts() const {
        Bits bits(0);
        bool boundary = true;
        for (unsigned i = 0; i < length(); i++) {
            const char16_t c = raw_[i];
            const bool alphanumeric = u_isalnum(c);
            if ((boundary && alphanumeric) || u_isupper(c)) bits |= Bits(1) << i;
            boundary = !alphanumeric && c != u'.' && c != u'\'';
        }
        return bits;
    }

  private:
    std::u16string_view raw_;
    char16_t lower_[sizeof(Bits) * 8];
};
