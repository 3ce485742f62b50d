#include "index/NameMask.h"

#include <unicode/uchar.h>
#include <unicode/ustring.h>

#include <array>
#include <string>

#include "util/Unicode.h"

namespace {

constexpr NameMask bitOfAscii(unsigned unit) {
    if (unit >= 'a' && unit <= 'z') return 1u << (unit - 'a');
    switch (unit) {
        case '.':
            return 1u << 26;
        case '_':
        case '-':
        case ' ':
            return 1u << 27;
        case '0':
        case '1':
            return 1u << 28;
        case '2':
        case '3':
        case '4':
            return 1u << 29;
        case '5':
        case '6':
        case '7':
        case '8':
        case '9':
            return 1u << 30;
        default:
            return 0;
    }
}

/// By byte, capital letters as small ones.
constexpr std::array<NameMask, 256> kBitsOfByte = [] {
    std::array<NameMask, 256> bits{};
    for (unsigned byte = 0; byte < 128; byte++)
        bits[byte] = bitOfAscii(byte >= 'A' && byte <= 'Z' ? byte + 32 : byte);
    for (unsigned byte = 128; byte < 256; byte++) bits[byte] = kNotAscii;
    return bits;
}();

/// Of text beyond ASCII: what lower-casing unit by unit gives, and what folding the whole gives
/// (the sign for Kelvin is a k, the long s an s, a ligature its letters).
NameMask presenceOfText(const std::u16string& text) {
    NameMask mask = kNotAscii;
    for (char16_t unit : text) mask |= presenceOf(static_cast<char16_t>(u_tolower(unit)));
    std::u16string folded(text.size() * 3 + 1, u'\0');  // no code point folds to more units
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length =
        u_strFoldCase(folded.data(), static_cast<int32_t>(folded.size()), text.data(),
                      static_cast<int32_t>(text.size()), U_FOLD_CASE_DEFAULT, &status);
    if (U_FAILURE(status)) return ~NameMask{0};
    folded.resize(static_cast<size_t>(length));
    for (char16_t unit : folded) mask |= presenceOf(unit);
    return mask;
}

}  // namespace

NameMask presenceOf(char16_t unit) {
    return unit < 128 ? bitOfAscii(unit) : 0;
}

NameMask presenceOfName(std::string_view bytes) {
    NameMask even = 0, odd = 0;
    size_t at = 0;
    for (; at + 1 < bytes.size(); at += 2) {
        even |= kBitsOfByte[static_cast<uint8_t>(bytes[at])];
        odd |= kBitsOfByte[static_cast<uint8_t>(bytes[at + 1])];
    }
    if (at < bytes.size()) even |= kBitsOfByte[static_cast<uint8_t>(bytes[at])];
    const NameMask mask = even | odd;
    if (!(mask & kNotAscii)) return mask;
    const auto text = toUtf16(bytes);
    return text ? presenceOfText(nfc(*text)) : mask;
}
