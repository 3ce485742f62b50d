#pragma once
#include <unicode/uchar.h>

#include <cstdint>
#include <string_view>

/// A unit starts a word when it is a letter or digit behind something that is none (but "." and
/// "'": extensions and contractions start no word), and when it is an upper-case letter, wherever.
/// Sets one flag a unit; answers how many are set.
inline uint64_t markWordStarts(std::u16string_view text, uint8_t* starts) {
    uint64_t count = 0;
    bool boundary = true;
    for (size_t i = 0; i < text.size(); i++) {
        const char16_t unit = text[i];
        const bool alphanumeric = u_isalnum(unit);
        starts[i] = boundary && alphanumeric ? 1 : u_isupper(unit) != 0;
        count += starts[i];
        boundary = !alphanumeric && unit != u'.' && unit != u'\'';
    }
    return count;
}

/// Whether the user typed this unit in upper case.
inline bool isUpperCaseFilterUnit(char16_t unit) {
    return unit < 128 ? unit >= u'A' && unit <= u'Z' : u_isupper(unit) != 0;
}
