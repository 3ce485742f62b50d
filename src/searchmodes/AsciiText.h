#pragma once
#include <cstdint>

#include "searchmodes/UnitBits.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// Bytes that may be read behind an ASCII candidate's end.
constexpr size_t kReadableBehind = 32;

/// A candidate of ASCII bytes as sets of positions: where a unit stands, where words start. Found
/// in 16 bytes at a time where the processor can. WideText has the same operations.
/// Bits: as wide as the text is long at most. The bytes outlive it.
#if defined(__SSE2__)
template <class Bits>
class AsciiText {
  public:
    using BitsType = Bits;

    /// bytes: ASCII alone; up to kReadableBehind bytes behind them are read, whatever they are.
    AsciiText(const char* bytes, unsigned length)
        : bytes_(bytes), length_(length), used_((length + 15) / 16) {
        if (isShort()) {  // most names: no branch on their length
            lower_[0] = lowerCased(raw(0));
            lower_[1] = lowerCased(raw(1));
            return;
        }
        for (unsigned v = 0; v < used_; v++) lower_[v] = lowerCased(raw(v));
    }
    unsigned length() const { return length_; }
    Bits all() const { return unitBits::below<Bits>(length_); }
    /// Where the lower-case text has the byte.
    Bits equal(char16_t unit) const {
        if (unit >= 128) return Bits(0);
        const __m128i wanted = _mm_set1_epi8(static_cast<char>(unit));
        if (isShort()) {
            const uint64_t low = mask(_mm_cmpeq_epi8(lower_[0], wanted));
            const uint64_t high = mask(_mm_cmpeq_epi8(lower_[1], wanted));
            return Bits(low | high << 16) & all();
        }
        Bits bits(0);
        for (unsigned v = 0; v < used_; v++)
            unitBits::setSixteen(bits, v, mask(_mm_cmpeq_epi8(lower_[v], wanted)));
        return bits & all();
    }
    Bits wordStarts() const {
        Bits upper(0), alphanumeric(0), soft(0);
        for (unsigned v = 0; v < used_; v++) {
            const __m128i text = raw(v);
            const __m128i letters = within(lower_[v], 'a', 'z'), digits = within(text, '0', '9');
            const __m128i dot = _mm_cmpeq_epi8(text, _mm_set1_epi8('.'));
            const __m128i quote = _mm_cmpeq_epi8(text, _mm_set1_epi8('\''));
            unitBits::setSixteen(upper, v, mask(within(text, 'A', 'Z')));
            unitBits::setSixteen(alphanumeric, v, mask(_mm_or_si128(letters, digits)));
            unitBits::setSixteen(soft, v, mask(_mm_or_si128(dot, quote)));
        }
        const Bits boundary = (~(alphanumeric | soft) << 1) | Bits(1);
        return ((boundary & alphanumeric) | upper) & all();
    }

  private:
    bool isShort() const { return sizeof(Bits) == 8 && length_ <= 32; }
    __m128i raw(unsigned v) const {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes_ + 16 * v));
    }
    static __m128i lowerCased(__m128i text) {
        return _mm_add_epi8(text, _mm_and_si128(within(text, 'A', 'Z'), _mm_set1_epi8(32)));
    }
    static __m128i within(__m128i bytes, char low, char high) {
        return _mm_and_si128(_mm_cmpgt_epi8(bytes, _mm_set1_epi8(static_cast<char>(low - 1))),
                             _mm_cmplt_epi8(bytes, _mm_set1_epi8(static_cast<char>(high + 1))));
    }
    static uint64_t mask(__m128i bytes) {
        return static_cast<uint64_t>(static_cast<unsigned>(_mm_movemask_epi8(bytes)));
    }

    const char* bytes_;
    unsigned length_, used_;
    __m128i lower_[sizeof(Bits) / 2];
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
            if (static_cast<unsigned char>(lower) == unit) bits |= Bits(1) << i;
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
