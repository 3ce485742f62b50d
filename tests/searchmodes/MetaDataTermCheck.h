#pragma once
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <ctime>
#include <string>
#include <string_view>

#include "index/fs_item.h"
#include "searchmodes/MetaDataSearch.h"
#include "util/Unicode.h"

/// What must hold of every metadata term, for the tests and the fuzzer alike.

/// A term that gives the query again.
inline std::string printedTerm(const MetaDataQuery& query, int firstWeekday) {
    using enum MetaDataQuery::ValueType;
    const auto digits = [](int64_t number, size_t width = 1) {
        const std::string text = std::to_string(number);
        return std::string(width - std::min(width, text.size()), '0') + text;
    };
    constexpr std::array<const char*, 6> kOperators = {"", "=", "<", ">", "<=", ">="};
    constexpr std::array<const char*, 3> kSorts = {"", ":a", ":d"};
    const std::string op = kOperators[query.operator_], sort = kSorts[query.sortOrderType];
    std::string term = query.isNegative ? "\\!" : "\\";
    switch (query.criterion) {
        case 16:
            return term + "s" + op + digits(query.integerValue1) + sort;
        case 32:
            return term + "l";
        case 64:
            return term + "h" + op + digits(query.integerValue1) + sort;
        case 128:
        case 256:
            term += query.criterion == 128 ? "u" : "g";
            return term + (op.empty() ? "" : op + digits(query.integerValue1)) + sort;
        case 1024:
            return term + "pl" + sort;
        case 2048:
            return term + "pa" + sort;
        case 4096:
            return term + "px" + sort;
        default:
            break;
    }
    term += query.criterion == 1   ? "tb"
            : query.criterion == 2 ? "tm"
            : query.criterion == 4 ? "tc"
            : query.criterion == 8 ? "ta"
                                   : "t*";
    const int64_t value = query.integerValue1;
    const auto middle = static_cast<time_t>(query.fromEpoch + 180 * 86400);
    std::tm there{};
    switch (query.valueType) {
        case kNoDate:
            return term + sort;
        case kYear:
            localtime_r(&middle, &there);
            return term + op + digits(there.tm_year + 1900, 4) + sort;
        case kMonth:
            return term + op + digits(value, 4) + digits(query.integerValue2, 2) + sort;
        case kDay:
            return term + op + digits(value, 4) + digits(query.integerValue2, 2) +
                   digits(query.integerValue3, 2) + sort;
        case kYearQuarter:
            return term + op + digits(query.integerValue2) + "Q" + digits(value) + sort;
        case kYearWeek:
            return term + op + digits(query.integerValue2) + "w" + digits(value) + sort;
        case kMonthOfYear:
            return term + "M" + op + digits(value) + sort;
        case kDayOfMonth:
            return term + "d" + op + digits(value) + sort;
        case kQuarter:
            return term + "Q" + op + digits(value) + sort;
        case kWeek:
            return term + "w" + op + digits(value) + sort;
        case kDayOfWeek:
            return term + "e" + op + digits((value - firstWeekday + 8) % 7 + 1) + sort;
        default:
            break;
    }
    if (query.valueType == kAgeDays && value > 999999999)
        return term + op + digits(value / 7) + "w" + sort;
    return term + op + digits(value) + "?yMdHms"[query.valueType] + sort;
}

/// Empty, or what is wrong with what becomes of a term.
inline std::string troubleWithTerm(std::u16string_view term, int firstWeekday) {
    const MetaDataParse parse = MetaDataSearch::parseWord(term, firstWeekday);
    if (parse.errorString.has_value() != parse.errorLocation.has_value())
        return "an error has a text and a place";
    if (parse.errorLocation && static_cast<size_t>(std::llabs(*parse.errorLocation)) > term.size())
        return "the error stands outside the term";
    for (const MetaDataSuggestion& suggestion : parse.suggestions)
        if (suggestion.token.empty()) return "a suggestion of nothing";
    const bool isPlain = term.empty() || term[0] != u'\\' ||
                         (term.size() > 1 &&
                          std::u16string_view(u"\\+-").find(term[1]) != std::u16string_view::npos);
    if (!parse.query) {
        if (isPlain == parse.errorString.has_value()) return "plain text and errors are mixed up";
        return {};
    }
    if (isPlain || parse.errorString) return "a query where there is none";
    if (static_cast<int64_t>(parse.query->fromEpoch) > static_cast<int64_t>(parse.query->toEpoch))
        return "a range ends before it begins";
    const std::string printed = printedTerm(*parse.query, firstWeekday);
    const auto again = MetaDataSearch::parseWord(*toUtf16(printed), firstWeekday).query;
    if (again != parse.query) return "printed and parsed it is another query: " + printed;

    MetaDataSearch plain(*toUtf16(printed), {.now = 1700000000, .firstWeekday = firstWeekday});
    if (plain.numberOfSearchTerms() != 1) return "no single term: " + printed;
    std::u16string other = *toUtf16(printed);
    if (parse.query->isNegative)
        other.erase(1, 1);
    else
        other.insert(1, 1, u'!');
    MetaDataSearch negated(other, {.now = 1700000000, .firstWeekday = firstWeekday});
    for (const int64_t time : {INT64_MIN, int64_t{-1}, int64_t{1700000000}, INT64_MAX}) {
        const fs_item_metadata metadata{.mtime = time,
                                        .ctime = time,
                                        .btime = time,
                                        .atime = time,
                                        .uid = 0,
                                        .gid = UINT32_MAX,
                                        .mode = S_IFREG | 0644,
                                        .size = static_cast<uint64_t>(time),
                                        .nlink = time,
                                        .attributes = nullptr};
        IndexSet criterions;
        const bool one = plain.match(&metadata, criterions);
        if (one == negated.match(&metadata, criterions) && parse.query->operator_ != 0)
            return "a query and its negation agree: " + printed;
    }
    return {};
}

/// A fuzzer's bytes as a term: UTF-8, or behind a byte 255 UTF-16 units, so that any unit comes up.
inline std::u16string termFromBytes(std::string_view bytes) {
    if (bytes.empty() || bytes[0] != '\xFF') return toUtf16Lenient(bytes);
    std::u16string term;
    for (size_t i = 1; i + 1 < bytes.size(); i += 2)
        term.push_back(static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) |
                                             static_cast<unsigned char>(bytes[i + 1]) << 8));
    return term;
}
