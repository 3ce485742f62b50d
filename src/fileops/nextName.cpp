#include "fileops/nextName.h"

#include <memory>
#include <optional>
#include <string>

#include <unicode/uchar.h>
#include <unicode/uregex.h>
#include <unicode/utf16.h>

#include "util/Unicode.h"

namespace {

struct Series {
    const char16_t* ending;  // what a name of the series ends in
    int32_t numberGroup;
    std::string_view first;        // appended to a name that is none of the series
    std::string_view afterNumber;  // stands before the number
};

Series describe(NameSeries series) {
    switch (series) {
        case NameSeries::duplicate:
            return {u" (copy( (\\d+))?)$", 3, " copy", " copy "};
        case NameSeries::alias:
            return {u" (alias( (\\d+))?)$", 3, " alias", " alias "};
        case NameSeries::move:
            break;
    }
    return {u" (\\d+)$", 1, " 2", " "};
}

/// One more than a number in decimal digits of any script, in ASCII digits.
std::string plusOne(std::u16string_view digits) {
    std::string number = "0";
    const auto length = static_cast<int32_t>(digits.size());
    for (int32_t at = 0; at < length;) {
        UChar32 c;
        U16_NEXT(digits.data(), at, length, c);
        number.push_back(static_cast<char>('0' + u_charDigitValue(c)));
    }
    size_t at = number.size() - 1;
    for (; number[at] == '9'; at--) number[at] = '0';
    number[at]++;
    return number.substr(number.find_first_not_of('0'));
}

struct Ending {
    size_t start;
    std::u16string number;  // empty for the bare word
};

std::optional<Ending> findEnding(const std::u16string& text, const Series& series) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<URegularExpression, decltype(&uregex_close)> expression(
        uregex_open(series.ending, -1, 0, nullptr, &status), &uregex_close);
    uregex_setText(expression.get(), text.data(), static_cast<int32_t>(text.size()), &status);
    if (!uregex_find(expression.get(), 0, &status) || U_FAILURE(status)) return std::nullopt;
    const int32_t start = uregex_start(expression.get(), 0, &status);
    const int32_t from = uregex_start(expression.get(), series.numberGroup, &status);
    const int32_t to = uregex_end(expression.get(), series.numberGroup, &status);
    if (U_FAILURE(status)) return std::nullopt;
    Ending ending{static_cast<size_t>(start), {}};
    if (from >= 0)
        ending.number = text.substr(static_cast<size_t>(from), static_cast<size_t>(to - from));
    return ending;
}

}  // namespace

FileURL nextNameForDuplication(const FileURL& url, NameSeries kind) {
    const Series series = describe(kind);
    std::string_view path = url.path();
    while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
    std::string_view stem = path;
    const size_t extension = url.pathExtension().size();
    if (extension > 0) stem.remove_suffix(extension + 1);

    // Through the form of paths that is valid text for every byte.
    const std::u16string text = toUtf16(pathToText(stem)).value_or(std::u16string());
    std::string next(stem);
    if (const auto ending = findEnding(text, series)) {
        next = textToPath(toUtf8(std::u16string_view(text).substr(0, ending->start)));
        next += series.afterNumber;
        next += ending->number.empty() ? "2" : plusOne(ending->number);
    } else {
        next += series.first;
    }
    next += path.substr(stem.size());
    return FileURL(std::move(next));
}
