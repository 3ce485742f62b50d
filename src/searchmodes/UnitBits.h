#pragma once
#include <bit>
#include <cstdint>
#include <type_traits>

/// One bit for each unit of a candidate: 64, 128 or 256 of them. The same small set of operations
/// for all three widths.
__extension__ typedef unsigned __int128 UnitBits128;

struct UnitBits256 {
    uint64_t words[4];

    UnitBits256() = default;
    UnitBits256(uint64_t low) : words{low, 0, 0, 0} {}  // NOLINT: as the built-in widths do
    explicit operator bool() const { return (words[0] | words[1] | words[2] | words[3]) != 0; }
    UnitBits256& operator&=(const UnitBits256& other) {
        for (int i = 0; i < 4; i++) words[i] &= other.words[i];
        return *this;
    }
    UnitBits256& operator|=(const UnitBits256& other) {
        for (int i = 0; i < 4; i++) words[i] |= other.words[i];
        return *this;
    }
    friend UnitBits256 operator&(UnitBits256 a, const UnitBits256& b) { return a &= b; }
    friend UnitBits256 operator|(UnitBits256 a, const UnitBits256& b) { return a |= b; }
    friend UnitBits256 operator~(UnitBits256 a) {
        for (uint64_t& word : a.words) word = ~word;
        return a;
    }
    friend UnitBits256 operator<<(const UnitBits256& a, unsigned n) {
        UnitBits256 out(0);
        const unsigned whole = n / 64, rest = n % 64;
        for (unsigned i = whole; i < 4; i++) {
            out.words[i] = a.words[i - whole] << rest;
            if (rest && i > whole) out.words[i] |= a.words[i - whole - 1] >> (64 - rest);
        }
        return out;
    }
    friend UnitBits256 operator>>(const UnitBits256& a, unsigned n) {
        UnitBits256 out(0);
        const unsigned whole = n / 64, rest = n % 64;
        for (unsigned i = 0; i + whole < 4; i++) {
            out.words[i] = a.words[i + whole] >> rest;
            if (rest && i + whole < 3) out.words[i] |= a.words[i + whole + 1] << (64 - rest);
        }
        return out;
    }
};

namespace unitBits {

inline unsigned lowest(uint64_t bits) {
    return static_cast<unsigned>(std::countr_zero(bits));
}
inline unsigned lowest(UnitBits128 bits) {
    const auto low = static_cast<uint64_t>(bits);
    return low ? lowest(low) : 64 + lowest(static_cast<uint64_t>(bits >> 64));
}
inline unsigned lowest(const UnitBits256& bits) {
    for (unsigned i = 0;; i++)
        if (bits.words[i]) return 64 * i + lowest(bits.words[i]);
}

inline unsigned highest(uint64_t bits) {
    return 63 - static_cast<unsigned>(std::countl_zero(bits));
}
inline unsigned highest(UnitBits128 bits) {
    const auto high = static_cast<uint64_t>(bits >> 64);
    return high ? 64 + highest(high) : highest(static_cast<uint64_t>(bits));
}
inline unsigned highest(const UnitBits256& bits) {
    for (unsigned i = 3;; i--)
        if (bits.words[i]) return 64 * i + highest(bits.words[i]);
}

inline unsigned count(uint64_t bits) {
    return static_cast<unsigned>(std::popcount(bits));
}
inline unsigned count(UnitBits128 bits) {
    return count(static_cast<uint64_t>(bits)) + count(static_cast<uint64_t>(bits >> 64));
}
inline unsigned count(const UnitBits256& bits) {
    return count(bits.words[0]) + count(bits.words[1]) + count(bits.words[2]) +
           count(bits.words[3]);
}

template <class Bits>
bool test(Bits bits, unsigned n) {
    return (bits >> n & 1) != 0;
}
inline bool test(const UnitBits256& bits, unsigned n) {
    return (bits.words[n / 64] >> n % 64 & 1) != 0;
}

template <class Bits>
void clearLowest(Bits& bits) {
    bits &= bits - 1;
}
inline void clearLowest(UnitBits256& bits) {
    for (uint64_t& word : bits.words)
        if (word) {
            word &= word - 1;
            return;
        }
}

/// All bits above the lowest that is set, of which there is one.
template <class Bits>
Bits aboveLowest(Bits bits) {
    return ~(bits ^ (bits - 1));
}
inline UnitBits256 aboveLowest(const UnitBits256& bits) {
    UnitBits256 out(0);
    for (unsigned i = 0, found = 0; i < 4; i++) {
        out.words[i] = found ? ~uint64_t{0} : bits.words[i] ? aboveLowest(bits.words[i]) : 0;
        found |= bits.words[i] != 0;
    }
    return out;
}

/// Sets the sixteen bits from 16 * place on, which are clear.
inline void setSixteen(uint64_t& bits, unsigned place, uint64_t sixteen) {
    bits |= sixteen << (16 * place);
}
inline void setSixteen(UnitBits128& bits, unsigned place, uint64_t sixteen) {
    bits |= UnitBits128{sixteen} << (16 * place);
}
inline void setSixteen(UnitBits256& bits, unsigned place, uint64_t sixteen) {
    bits.words[place / 4] |= sixteen << (16 * (place % 4));
}

/// The bits below n.
template <class Bits>
Bits below(unsigned n) {
    if constexpr (std::is_same_v<Bits, UnitBits256>) {
        UnitBits256 out(0);
        for (unsigned i = 0; i < 4; i++)
            out.words[i] = n >= 64 * i + 64 ? ~uint64_t{0}
                           : n > 64 * i     ? (uint64_t{1} << (n - 64 * i)) - 1
                                            : 0;
        return out;
    } else {
        return n >= sizeof(Bits) * 8 ? ~Bits{0} : (Bits{1} << n) - 1;
    }
}

}  // namespace unitBits
