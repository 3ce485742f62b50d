#pragma once
#include <unicode/uchar.h>

#include <string_view>

#include "searchmodes/UnitBits.h"
#include "searchmodes/wordStarts.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// A candidate of any UTF-16 units as sets of positions, compared in lower case unit by unit.
/// Bits: as wide as the text is long at most. The text outlives it.
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
#if defined(__SSE2__)
        const __m128i wanted = _mm_set1_epi16(static_cast<int16_t>(unit));
        for (unsigned v = 0; v * 16 < length(); v++) {
            const __m128i low = _mm_cmpeq_epi16(eight(2 * v), wanted);
            const __m128i high = _mm_cmpeq_epi16(eight(2 * v + 1), wanted);
            const int sixteen = _mm_movemask_epi8(_mm_packs_epi16(low, high));
            unitBits::setSixteen(bits, v, static_cast<unsigned>(sixteen));
        }
        return bits & unitBits::below<Bits>(length());
#else
        for (unsigned i = 0; i < length(); i++)
            if (lower_[i] == unit) bits |= Bits(1) << i;
        return bits;
#endif
    }
    Bits wordStarts() const {
        uint8_t starts[sizeof(lower_) / 2];
        markWordStarts(raw_, starts);
        Bits bits(0);
        for (unsigned v = 0; v * 16 < length(); v++) {
            uint64_t sixteen = 0;
            for (unsigned i = 0; i < 16 && v * 16 + i < length(); i++)
                sixteen |= uint64_t{starts[v * 16 + i]} << i;
            unitBits::setSixteen(bits, v, sixteen);
        }
        return bits;
    }

  private:
#if defined(__SSE2__)
    __m128i eight(unsigned place) const {
        return _mm_load_si128(reinterpret_cast<const __m128i*>(lower_ + 8 * place));
    }
#endif
    std::u16string_view raw_;
    alignas(16) char16_t lower_[sizeof(Bits) * 8] = {};
};
