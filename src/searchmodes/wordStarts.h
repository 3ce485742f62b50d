#pragma once
#include <unicode/uchar.h>

#include <cstdint>
#include <string_view>

/// What ICU says, without asking it for ASCII.
inline bool isAlphanumericUnit(char16_t unit) {
    if (unit >= 128) return u_isalnum(unit) != 0;
    const auto letter = static_cast<char16_t>(unit | 32);
    return (unit >= u'0' && unit <= u'9') || (letter >= u'a' && letter <= u'z');
}

/// The same of upper case; also whether the user typed a unit of a term in upper case.
inline bool isUpperCaseUnit(char16_t unit) {
    return unit < 128 ? unit >= u'A' && unit <= u'Z' : u_isupper(unit) != 0;
}

/// A unit starts a word when it is a letter or digit behind something that is none (but "." and
/// "'": extensions and contractions start no word), and when it is an upper-case letter, wherever.
/// Sets one flag a unit; answers how many are set.
inline uint64_t markWordStarts(std::u16string_view text, uint8_t* starts) {
    uint64_t count = 0;
    bool boundary = true;
    for (size_t i = 0; i < text.size(); i++) {
        const char16_t unit = text[i];
        const bool alphanumeric = isAlphanumericUnit(unit);
        starts[i] = boundary && alphanumeric ? 1 : isUpperCaseUnit(unit);
        count += starts[i];
        boundary = !alphanumeric && unit != u'.' && unit != u'\'';
    }
    return count;
}
