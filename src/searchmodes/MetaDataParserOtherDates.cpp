#include <array>
#include <cstdio>

#include "searchmodes/MetaDataCalendar.h"
#include "searchmodes/MetaDataParser.h"
#include "util/Unicode.h"

using enum MetaDataQuery::ValueType;

namespace {

constexpr size_t kMaxDigits = 9;
constexpr int64_t kFirstYear = 1000, kLastYear = 9999;
constexpr int64_t kLastWeek = 53;

bool isYear(int64_t value) {
    return value >= kFirstYear && value <= kLastYear;
}

}  // namespace

std::string MetaDataParser::about(const char* text, std::u16string_view part) {
    return std::string(text) + ": " + toUtf8(part.substr(0, part.find(u':'))) + ".";
}

bool MetaDataParser::scanOtherDateUsingScanner() {
    parseOperator();
    const int64_t start = scanner_.location();
    const auto digits = scanner_.scanDigits();
    if (digits.empty()) {
        if (scanner_.isAtEnd()) {
            if (isOneSided()) suggest("=", "Operator");
            suggest("[0..9]", "Date or age");
        }
        return failAt(start, about("Invalid date or age", scanner_.term()));
    }
    if (digits.size() > kMaxDigits) return failAt(start, about("Numeric value too large", digits));
    const int64_t value = MetaDataScanner::numberOf(digits);
    if (scanAge(value)) return true;
    if (scanner_.scan(u"w")) return scanWeeks(value);
    if (scanner_.scan(u"Q")) return scanYearQuarter(value, start);
    return scanDigitDate(digits, start);
}

bool MetaDataParser::scanAge(int64_t value) {
    struct Unit {
        std::u16string_view letter;
        uint64_t valueType;
    };
    constexpr Unit kUnits[] = {{u"y", kAgeYears}, {u"M", kAgeMonths},  {u"d", kAgeDays},
                               {u"H", kAgeHours}, {u"m", kAgeMinutes}, {u"s", kAgeSeconds}};
    for (const Unit& unit : kUnits) {
        if (!scanner_.scan(unit.letter)) continue;
        query_.valueType = unit.valueType;
        query_.integerValue1 = value;
        return true;
    }
    return false;
}

/// An age where the term or its date ends, else the week of a year.
bool MetaDataParser::scanWeeks(int64_t value) {
    const bool atEnd = scanner_.isAtEnd();
    if (atEnd || scanner_.rest().starts_with(u':')) {
        if (atEnd) suggest("[1..53]", "Week of year");
        query_.valueType = kAgeDays;
        query_.integerValue1 = value * 7;
        return true;
    }
    // Kept: the third unit, wherever the year stands.
    if (!isYear(value)) return failAt(3, "Invalid year.");
    const int64_t location = scanner_.location();
    const auto rest = scanner_.rest();
    const auto week = scanner_.scanInteger();
    if (!week) return failAt(location, about("Invalid week", rest));
    if (*week < 1 || *week > kLastWeek) return failAt(location, "Invalid week.");
    query_.valueType = kYearWeek;
    query_.integerValue1 = *week;
    query_.integerValue2 = value;
    if (scanner_.isAtEnd()) {
        if (*week < 6) suggest("[0..9]", "Week of year");
        suggest(":", "Sort order");
    }
    return true;
}

bool MetaDataParser::scanYearQuarter(int64_t value, int64_t start) {
    if (!isYear(value)) return failAt(start, "Invalid year: " + std::to_string(value) + ".");
    const int64_t location = scanner_.location();
    if (scanner_.isAtEnd()) return incompleteAt(location, "Missing quarter");
    const auto rest = scanner_.rest();
    const auto quarter = scanner_.scanInteger();
    if (!quarter) return failAt(location, about("Invalid quarter", rest));
    if (*quarter < 1 || *quarter > 4)
        return failAt(location, "Invalid quarter: " + std::to_string(*quarter) + ".");
    query_.valueType = kYearQuarter;
    query_.integerValue1 = *quarter;
    query_.integerValue2 = value;
    if (scanner_.isAtEnd()) suggest(":", "Sort order");
    return true;
}

bool MetaDataParser::scanDigitDate(std::u16string_view digits, int64_t start) {
    const size_t length = digits.size();
    if (length != 4 && length != 6 && length != 8) return scanIncompleteDate(digits, start);
    const bool hasMonth = length >= 6, hasDay = length == 8, atEnd = scanner_.isAtEnd();
    const int64_t year = MetaDataScanner::numberOf(digits.substr(0, 4));
    int64_t month = 1, lastMonth = 12;
    if (hasMonth) {
        month = lastMonth = MetaDataScanner::numberOf(digits.substr(4, 2));
        if (month < 1 || month > 12)
            return failAt(start + 4, "Invalid month: " + std::to_string(month) + ".");
        query_.integerValue1 = year;
        query_.integerValue2 = month;
    }
    int64_t day = 1, lastDay = metaDataCalendar::daysInMonth(year, lastMonth);
    if (hasDay) {
        day = MetaDataScanner::numberOf(digits.substr(6, 2));
        if (day < 1 || day > lastDay) {
            std::array<char, 64> text;
            std::snprintf(text.data(), text.size(), "Invalid date: %04ld-%02ld-%02ld.", year, month,
                          day);
            return failAt(start + 6, text.data());
        }
        query_.integerValue3 = lastDay = day;
    }
    query_.valueType = hasDay ? kDay : hasMonth ? kMonth : kYear;
    query_.fromEpoch = static_cast<uint64_t>(metaDataCalendar::epochOfBeginYear(year, month, day));
    query_.toEpoch =
        static_cast<uint64_t>(metaDataCalendar::epochOfEndYear(year, lastMonth, lastDay));
    if (!atEnd) return true;
    if (!hasDay) suggest("[0..9]", hasMonth ? "Day or age" : "Month or age");
    if (!hasMonth) {
        suggest("w", "Week");
        suggest("Q", "Quarter");
    }
    suggest(":", "Sort order");
    return true;
}

bool MetaDataParser::scanIncompleteDate(std::u16string_view digits, int64_t start) {
    const size_t length = digits.size();
    if (length < 8)
        suggest("[0..9]", std::string(length < 4   ? "Year"
                                      : length < 6 ? "Month"
                                                   : "Day") +
                              " or age");
    suggest("[yMwdHms]", "Age in years, months, weeks, days, hours, minutes or seconds");
    const char* text = length < 4   ? "Cannot parse year or age"
                       : length < 6 ? "Incomplete month or age"
                                    : "Incomplete day or age";
    const auto complete = static_cast<int64_t>(length < 4 ? 0 : length & ~size_t{1});
    return incompleteAt(start + complete, about(text, scanner_.term()));
}
