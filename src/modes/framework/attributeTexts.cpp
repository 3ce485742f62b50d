#include "modes/framework/attributeTexts.h"

#include <sys/stat.h>

#include <array>
#include <bit>
#include <clocale>
#include <memory>
#include <string_view>

#include <unicode/uloc.h>
#include <unicode/unum.h>

#include "util/Unicode.h"

namespace {

struct CloseFormat {
    void operator()(UNumberFormat* format) const { unum_close(format); }
};
using Format = std::unique_ptr<UNumberFormat, CloseFormat>;

Format openDecimalFormat() {
    std::array<char, ULOC_FULLNAME_CAPACITY> name{};
    const char* locale = nullptr;
    // "C" is also what a locale that is not installed leaves: ICU knows it from the environment.
    const std::string_view numeric = std::setlocale(LC_NUMERIC, nullptr);
    UErrorCode status = U_ZERO_ERROR;
    if (numeric != "C") {
        uloc_canonicalize(numeric.data(), name.data(), name.size(), &status);
        if (U_SUCCESS(status)) locale = name.data();
    }
    status = U_ZERO_ERROR;
    Format format(unum_open(UNUM_DECIMAL, nullptr, 0, locale, nullptr, &status));
    if (U_FAILURE(status)) return nullptr;
    unum_setAttribute(format.get(), UNUM_MAX_FRACTION_DIGITS, 3);
    return format;
}

/// Opening a format costs far more than using it, and rows ask for many numbers.
UNumberFormat* decimalFormat() {
    static thread_local const Format format = openDecimalFormat();
    return format.get();
}

template <class Write>
std::string formatted(Write write) {
    std::array<char16_t, 64> buffer;  // 20 digits, 6 separators, a fraction of 3
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length = write(buffer.data(), static_cast<int32_t>(buffer.size()), &status);
    if (U_FAILURE(status)) return {};
    return toUtf8({buffer.data(), static_cast<size_t>(length)});
}

std::string decimal(double number) {
    return formatted([number](char16_t* out, int32_t capacity, UErrorCode* status) {
        return unum_formatDouble(decimalFormat(), number, out, capacity, nullptr, status);
    });
}

std::string decimal(uint64_t number) {
    return formatted(
        [digits = std::to_string(number)](char16_t* out, int32_t capacity, UErrorCode* status) {
            return unum_formatDecimal(decimalFormat(), digits.data(),
                                      static_cast<int32_t>(digits.size()), out, capacity, nullptr,
                                      status);
        });
}

}  // namespace

std::string sizeText(uint64_t size, uint16_t mode) {
    if (S_ISDIR(mode)) return "n/a";
    std::string bytes = decimal(size) + " Bytes";
    if (size < 1024) return bytes;
    constexpr std::array<const char*, 4> kUnits = {" kiB", " MiB", " GiB", " TiB"};
    size_t unit = 0;
    double inUnit = static_cast<double>(size) / 1024;
    for (; unit + 1 < kUnits.size() && size >> (10 * (unit + 2)) != 0; unit++) inUnit /= 1024;
    return decimal(inUnit) + kUnits[unit] + " (" + bytes + ")";
}

std::string fileTypeMaskToString(uint8_t mask) {
    struct Kind {
        uint8_t bit;
        const char* alone;
        const char* combined;
    };
    constexpr std::array<Kind, 3> kKinds = {
        {{1, "File ", "Fi/"}, {2, "Folder ", "Fo/"}, {4, "Bundle ", "Bu/"}}};
    if (mask == 7) return "Any";
    const bool several = std::popcount(static_cast<uint8_t>(mask & 7)) > 1;
    std::string text;
    for (const Kind& kind : kKinds)
        if (mask & kind.bit) text += several ? kind.combined : kind.alone;
    if (!text.empty()) text.pop_back();
    return text;
}
