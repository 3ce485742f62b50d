#include "util/Unicode.h"

#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>

namespace {

const UNormalizer2* normalizer(bool compose) {
    UErrorCode status = U_ZERO_ERROR;
    return compose ? unorm2_getNFCInstance(&status) : unorm2_getNFDInstance(&status);
}

std::u16string normalized(std::u16string_view text, bool compose) {
    const UNormalizer2* form = normalizer(compose);
    UErrorCode status = U_ZERO_ERROR;
    const auto length = static_cast<int32_t>(text.size());
    const int32_t done = unorm2_spanQuickCheckYes(form, text.data(), length, &status);
    if (U_FAILURE(status) || done == length) return std::u16string(text);
    std::u16string out(text.size() * 2 + 16, u'\0');
    for (;;) {
        status = U_ZERO_ERROR;
        const int32_t needed = unorm2_normalize(form, text.data(), length, out.data(),
                                                static_cast<int32_t>(out.size()), &status);
        if (status == U_BUFFER_OVERFLOW_ERROR) {
            out.resize(static_cast<size_t>(needed) + 1);
            continue;
        }
        if (U_FAILURE(status)) return std::u16string(text);
        out.resize(static_cast<size_t>(needed));
        return out;
    }
}

/// The code point at `at` of valid or invalid UTF-8, negative when the byte is no good; moves on.
UChar32 nextCodePoint(std::string_view bytes, size_t& at) {
    const auto* s = reinterpret_cast<const uint8_t*>(bytes.data());
    const auto length = static_cast<int32_t>(bytes.size());
    auto i = static_cast<int32_t>(at);
    UChar32 c;
    U8_NEXT(s, i, length, c);
    at = c < 0 ? at + 1 : static_cast<size_t>(i);
    return c;
}

void append(std::u16string& out, UChar32 c) {
    if (c < 0x10000) {
        out.push_back(static_cast<char16_t>(c));
    } else {
        out.push_back(U16_LEAD(c));
        out.push_back(U16_TRAIL(c));
    }
}

void append(std::string& out, UChar32 c) {
    char buffer[4];
    int32_t length = 0;
    U8_APPEND_UNSAFE(buffer, length, c);
    out.append(buffer, static_cast<size_t>(length));
}

constexpr UChar32 kBadBytePlane = 0x10FF00;
constexpr UChar32 kReplacement = 0xFFFD;

bool isDirectionMark(UChar32 c) {
    return c == 0x61C || (c >= 0x200E && c <= 0x200F) || (c >= 0x202A && c <= 0x202E) ||
           (c >= 0x2066 && c <= 0x2069);
}

/// What could steer a terminal or make a line look like another.
bool isControlOrDirection(UChar32 c) {
    return c < 0x20 || (c >= 0x7F && c < 0xA0) || isDirectionMark(c) || c == 0x2028 || c == 0x2029;
}

}  // namespace

std::optional<std::u16string> toUtf16(std::string_view utf8) {
    std::u16string out;
    out.reserve(utf8.size());
    for (size_t at = 0; at < utf8.size();) {
        const UChar32 c = nextCodePoint(utf8, at);
        if (c < 0) return std::nullopt;
        append(out, c);
    }
    return out;
}

std::u16string toUtf16Lenient(std::string_view utf8) {
    std::u16string out;
    out.reserve(utf8.size());
    for (size_t at = 0; at < utf8.size();) {
        const UChar32 c = nextCodePoint(utf8, at);
        append(out, c < 0 ? kReplacement : c);
    }
    return out;
}

std::string toUtf8(std::u16string_view text) {
    std::string out;
    out.reserve(text.size() + text.size() / 2);
    for (size_t at = 0; at < text.size();) {
        UChar32 c = text[at++];
        if (U16_IS_LEAD(c) && at < text.size() && U16_IS_TRAIL(text[at]))
            c = U16_GET_SUPPLEMENTARY(c, text[at++]);
        else if (U16_IS_SURROGATE(c))
            c = kReplacement;
        append(out, c);
    }
    return out;
}

std::u16string nfc(std::u16string_view text) {
    return normalized(text, true);
}
std::u16string nfd(std::u16string_view text) {
    return normalized(text, false);
}
std::u16string ruleText(std::string_view bytes) {
    return nfc(toUtf16Lenient(bytes));
}

std::u16string stringByRemovingDiacritics(std::u16string_view text) {
    const std::u16string parts = nfd(text);
    std::u16string kept;
    kept.reserve(parts.size());
    const auto length = static_cast<int32_t>(parts.size());
    for (int32_t at = 0; at < length;) {
        UChar32 c;
        U16_NEXT(parts.data(), at, length, c);
        if (!u_hasBinaryProperty(c, UCHAR_DIACRITIC)) append(kept, c);
    }
    return nfc(kept);
}

std::u16string lowerCasedUnits(std::u16string_view text) {
    std::u16string out(text);
    for (char16_t& c : out) c = static_cast<char16_t>(u_tolower(c));
    return out;
}

bool isBlank(std::u16string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char16_t unit) { return u_isUWhiteSpace(unit); });
}

std::string displayText(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size());
    for (size_t at = 0; at < bytes.size();) {
        UChar32 c = nextCodePoint(bytes, at);
        if (c >= 0 && c < 0x20)
            c += 0x2400;
        else if (c == 0x7F)
            c = 0x2421;
        else if (isControlOrDirection(c))
            c = kReplacement;
        append(out, c);
    }
    return out;
}

std::string logText(std::string_view bytes) {
    constexpr char kHex[] = "0123456789ABCDEF";
    std::string out;
    out.reserve(bytes.size());
    for (size_t at = 0; at < bytes.size();) {
        const size_t from = at;
        const UChar32 c = nextCodePoint(bytes, at);  // negative, and so a control, if bad
        const std::string_view taken = bytes.substr(from, at - from);
        if (!isControlOrDirection(c)) {
            out.append(taken);
            continue;
        }
        for (const char byte : taken) {
            const auto value = static_cast<uint8_t>(byte);
            out.append({'\\', 'x', kHex[value >> 4], kHex[value & 15]});
        }
    }
    return out;
}

std::string pathToText(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size());
    for (size_t at = 0; at < bytes.size();) {
        const size_t from = at;
        const UChar32 c = nextCodePoint(bytes, at);
        if (c >= 0 && (c < kBadBytePlane || c > kBadBytePlane + 0xFF)) {
            append(out, c);
            continue;
        }
        for (size_t i = from; i < at; i++)
            append(out, kBadBytePlane + static_cast<uint8_t>(bytes[i]));
    }
    return out;
}

std::string textToPath(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (size_t at = 0; at < text.size();) {
        const size_t from = at;
        const UChar32 c = nextCodePoint(text, at);
        if (c >= kBadBytePlane && c <= kBadBytePlane + 0xFF)
            out.push_back(static_cast<char>(c - kBadBytePlane));
        else
            out.append(text.substr(from, at - from));
    }
    return out;
}
