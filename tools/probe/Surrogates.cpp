#include "Surrogates.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include "util/Unicode.h"

namespace {

constexpr UChar32 kPlane = 0x10F000;
constexpr UChar32 kFirstUnit = 0xD800;
constexpr UChar32 kUnits = 0x800;
constexpr std::string_view kPlaneBytes = "\xF4\x8F";  // and then \x80 to \x9F, and one more
constexpr size_t kPlaneCharacterSize = 4;

bool isCarrier(UChar32 c) {
    return c >= kPlane && c < kPlane + kUnits;
}
char16_t unitOf(UChar32 carrier) {
    return static_cast<char16_t>(carrier - kPlane + kFirstUnit);
}

void append(std::string& out, UChar32 c) {
    char buffer[kPlaneCharacterSize];
    size_t length = 0;
    U8_APPEND_UNSAFE(buffer, length, c);
    out.append(buffer, length);
}

void appendCarrier(std::string& out, UChar32 unit) {
    append(out, unit - kFirstUnit + kPlane);
}

/// Calls f with each code point of UTF-8 and the bytes it stands in; negative for a bad byte.
template <class F>
void forEachCodePoint(std::string_view text, F f) {
    const auto* s = reinterpret_cast<const uint8_t*>(text.data());
    for (size_t at = 0; at < text.size();) {
        const size_t from = at;
        UChar32 c;
        U8_NEXT(s, at, text.size(), c);
        f(c, text.substr(from, at - from));
    }
}

/// Whether a character of the plane stands at the position; what follows its two first bytes too.
bool standsCarrierAt(std::string_view text, size_t at) {
    return text.size() - at >= kPlaneCharacterSize && text.substr(at).starts_with(kPlaneBytes) &&
           static_cast<uint8_t>(text[at + 2]) < 0xA0;
}

std::optional<UChar32> escapedUnit(std::string_view json, size_t at) {
    constexpr size_t kEscapeSize = 6;
    if (json.size() < at + kEscapeSize || json[at] != '\\' || json[at + 1] != 'u') return {};
    UChar32 unit = 0;
    for (size_t i = at + 2; i < at + kEscapeSize; i++) {
        const char c = json[i];
        const int digit = c >= '0' && c <= '9'   ? c - '0'
                          : c >= 'a' && c <= 'f' ? c - 'a' + 10
                          : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                                 : -1;
        if (digit < 0) return {};
        unit = unit * 16 + digit;
    }
    return unit;
}

}  // namespace

std::string carriedFromJson(std::string_view json) {
    std::string out;
    out.reserve(json.size());
    const auto appendPair = [&out](UChar32 c) {
        appendCarrier(out, U16_LEAD(c));
        appendCarrier(out, U16_TRAIL(c));
    };
    for (size_t at = 0; at < json.size();) {
        if (json[at] != '\\') {
            if (standsCarrierAt(json, at)) {
                UChar32 c;
                const auto* s = reinterpret_cast<const uint8_t*>(json.data());
                U8_NEXT(s, at, json.size(), c);
                appendPair(c);
            } else {
                out.push_back(json[at++]);
            }
            continue;
        }
        const auto unit = escapedUnit(json, at);
        if (!unit || !U16_IS_SURROGATE(*unit)) {
            // Two bytes: a backslash that is escaped begins no escape of its own.
            out.append(json.substr(at, 2));
            at += 2;
            continue;
        }
        const auto next = U16_IS_LEAD(*unit) ? escapedUnit(json, at + 6) : std::nullopt;
        if (!next || !U16_IS_TRAIL(*next)) {
            appendCarrier(out, *unit);
            at += 6;
            continue;
        }
        const UChar32 c = U16_GET_SUPPLEMENTARY(*unit, *next);
        if (isCarrier(c))
            appendPair(c);
        else
            append(out, c);
        at += 12;
    }
    return out;
}

std::string jsonFromCarried(std::string_view json) {
    constexpr std::string_view kHex = "0123456789abcdef";
    std::string out;
    out.reserve(json.size());
    for (size_t at = 0; at < json.size();) {
        if (!standsCarrierAt(json, at)) {
            out.push_back(json[at++]);
            continue;
        }
        UChar32 c;
        const auto* s = reinterpret_cast<const uint8_t*>(json.data());
        U8_NEXT(s, at, json.size(), c);
        const unsigned unit = unitOf(c);
        out += "\\u";
        for (const unsigned shift : {12u, 8u, 4u, 0u}) out.push_back(kHex[(unit >> shift) & 15]);
    }
    return out;
}

std::u16string unitsFromCarried(std::string_view carried) {
    // Two carriers of one character fall together by themselves: they are its units.
    std::u16string units = toUtf16Lenient(carried);
    size_t to = 0;
    for (size_t at = 0; at < units.size(); at++, to++) {
        units[to] = units[at];
        if (!U16_IS_LEAD(units[at]) || at + 1 == units.size()) continue;
        const UChar32 c = U16_GET_SUPPLEMENTARY(units[at], units[at + 1]);
        if (!isCarrier(c)) continue;
        units[to] = unitOf(c);
        at++;
    }
    units.resize(to);
    return units;
}

std::string carriedFromUnits(std::u16string_view units) {
    std::string out;
    out.reserve(units.size());
    for (size_t at = 0; at < units.size();) {
        UChar32 c;
        const size_t from = at;
        U16_NEXT(units.data(), at, units.size(), c);
        if (!U16_IS_SURROGATE(c) && !isCarrier(c))
            append(out, c);
        else
            for (size_t i = from; i < at; i++) appendCarrier(out, units[i]);
    }
    return out;
}

std::optional<std::string> pathFromCarried(std::string_view carried) {
    std::string out;
    out.reserve(carried.size());
    UChar32 lead = 0;
    bool good = true;
    forEachCodePoint(carried, [&](UChar32 c, std::string_view bytes) {
        if (!isCarrier(c)) {
            good = good && lead == 0;
            out.append(bytes);
            return;
        }
        const UChar32 unit = unitOf(c);
        if (lead != 0 && U16_IS_TRAIL(unit)) {
            append(out, U16_GET_SUPPLEMENTARY(lead, unit));
            lead = 0;
        } else if (lead == 0 && U16_IS_LEAD(unit)) {
            lead = unit;
        } else if (lead == 0 && unit >= 0xDC80 && unit <= 0xDCFF) {
            out.push_back(static_cast<char>(unit - 0xDC00));
        } else {
            good = false;
        }
    });
    if (!good || lead != 0) return std::nullopt;
    return out;
}

std::string carriedFromPath(std::string_view path) {
    std::string out;
    out.reserve(path.size());
    forEachCodePoint(path, [&out](UChar32 c, std::string_view bytes) {
        if (c < 0)
            for (const char byte : bytes) appendCarrier(out, 0xDC00 + static_cast<uint8_t>(byte));
        else if (isCarrier(c))
            for (const UChar32 unit : {UChar32{U16_LEAD(c)}, UChar32{U16_TRAIL(c)}})
                appendCarrier(out, unit);
        else
            out.append(bytes);
    });
    return out;
}
