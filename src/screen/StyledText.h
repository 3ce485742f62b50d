#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "screen/Geometry.h"

/// Text whose stretches look different. Values; UTF-8 where it is a std::string.

/// Text in stretches of one look each.
struct StyledSpan {
    enum class Look {
        plain,
        strong,  // bold
        error,   // what is wrong
        token,   // what can be typed: bold, one width for all characters, a colour of its own
    };
    std::string text;
    Look look = Look::plain;
    friend bool operator==(const StyledSpan&, const StyledSpan&) = default;
};
using StyledText = std::vector<StyledSpan>;

inline std::string plainText(const StyledText& text) {
    std::string plain;
    for (const StyledSpan& span : text) plain += span.text;
    return plain;
}

/// What a part of the search text is.
enum class TermStyle : uint8_t { plain, regexp, error, incomplete };

struct StyledRange {
    TextRange range;
    TermStyle style;
    friend bool operator==(const StyledRange&, const StyledRange&) = default;
};
