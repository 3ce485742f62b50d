#include "searchmodes/precomposedText.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>

#include "util/Unicode.h"

bool appendPrecomposed(std::string_view bytes, std::u16string& text) {
    constexpr UChar32 kFirstThatComposes = 0x300;
    const size_t begin = text.size();
    const auto* source = reinterpret_cast<const uint8_t*>(bytes.data());
    const auto length = static_cast<int32_t>(bytes.size());
    UChar32 highest = 0;
    for (int32_t at = 0; at < length;) {
        UChar32 c;
        U8_NEXT(source, at, length, c);
        if (c < 0) return false;
        highest = std::max(highest, c);
        if (c <= 0xFFFF) {
            text.push_back(static_cast<char16_t>(c));
        } else {
            text.push_back(U16_LEAD(c));
            text.push_back(U16_TRAIL(c));
        }
    }
    if (highest >= kFirstThatComposes)
        text.replace(begin, std::u16string::npos, nfc(std::u16string_view(text).substr(begin)));
    return true;
}
