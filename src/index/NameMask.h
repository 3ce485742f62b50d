#pragma once
#include <cstdint>
#include <string_view>

/// Which letters a name holds, in one word, so that ranking can pass over most names without
/// reading them. Bit 31: the name has bytes beyond ASCII. The other bits stand for the lower-case
/// units of its precomposed text; what has no bit of its own has no say. Threads: any.
using NameMask = uint32_t;
constexpr NameMask kNotAscii = 1u << 31;

/// The bit of one lower-case UTF-16 unit, 0 for what has none.
NameMask presenceOf(char16_t unit);
/// Of a whole name: a unit that lower-casing or full case folding can make of it counts.
NameMask presenceOfName(std::string_view bytes);
