#include "searchmodes/MetaDataCalendar.h"

#include <unicode/ucal.h>
#include <unicode/uloc.h>

#include <array>
#include <clocale>
#include <ctime>
#include <string_view>

namespace {

constexpr int64_t kDay = 86400;
constexpr int64_t kDaysPerEra = 146097;  // 400 years

int64_t floorDivided(int64_t value, int64_t by) {
    return value / by - (value % by < 0);
}

bool isLeapYear(int64_t year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

/// Days since 1970. Years are counted from March, so that the leap day is their last one.
int64_t dayNumber(int64_t year, int64_t month, int64_t day) {
    if (month <= 2) year--;
    const int64_t era = floorDivided(year, 400), yearOfEra = year - era * 400;
    const int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5;
    return era * kDaysPerEra + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear + day -
           1 - 719468;
}

std::tm localTime(time_t epoch) {
    std::tm fields{};
    localtime_r(&epoch, &fields);
    return fields;
}

}  // namespace

namespace metaDataCalendar {

int64_t daysInMonth(int64_t year, int64_t month) {
    constexpr std::array<int, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return kDays[static_cast<size_t>(month - 1)] + (month == 2 && isLeapYear(year));
}

int64_t epochOf(int64_t year, int64_t month, int64_t day) {
    return dayNumber(year, month, day) * kDay;
}

int64_t epochOfBeginYear(int64_t year, int64_t month, int64_t day) {
    std::tm fields{};
    fields.tm_year = static_cast<int>(year - 1900);
    fields.tm_mon = static_cast<int>(month - 1);
    fields.tm_mday = static_cast<int>(day);
    fields.tm_isdst = -1;
    // Where clocks are put forward at midnight this is one o'clock, the day's first second.
    const time_t midnight = std::mktime(&fields);
    // Where they are put back there are two midnights, and mktime takes either: the first counts.
    const std::tm there = localTime(midnight), before = localTime(midnight - 3600);
    return before.tm_mday == there.tm_mday && there.tm_hour == 0 ? midnight - 3600 : midnight;
}

int64_t epochOfEndYear(int64_t year, int64_t month, int64_t day) {
    if (day < daysInMonth(year, month)) return epochOfBeginYear(year, month, day + 1) - 1;
    if (month < 12) return epochOfBeginYear(year, month + 1, 1) - 1;
    return epochOfBeginYear(year + 1, 1, 1) - 1;
}

std::string currentLocale() {
    const char* name = std::setlocale(LC_TIME, nullptr);
    const std::string_view times = name ? name : "C";
    const std::string_view language = times.substr(0, times.find('.'));
    // "C" is also what a locale that is not installed leaves: ICU knows it from the environment.
    if (language == "C" || language == "POSIX") return uloc_getDefault();
    std::array<char, ULOC_FULLNAME_CAPACITY> locale{};
    UErrorCode status = U_ZERO_ERROR;
    uloc_canonicalize(name, locale.data(), static_cast<int32_t>(locale.size()), &status);
    return status == U_ZERO_ERROR ? locale.data() : uloc_getDefault();
}

int currentFirstWeekday() {
    UErrorCode status = U_ZERO_ERROR;
    const std::string locale = currentLocale();
    UCalendar* calendar = ucal_open(nullptr, 0, locale.c_str(), UCAL_DEFAULT, &status);
    if (U_FAILURE(status)) return UCAL_SUNDAY;
    const int day = ucal_getAttribute(calendar, UCAL_FIRST_DAY_OF_WEEK);
    ucal_close(calendar);
    return day;
}

Fields fieldsOf(int64_t epoch) {
    const int64_t days = floorDivided(epoch, kDay);
    const int64_t shifted = days + 719468;
    const int64_t era = floorDivided(shifted, kDaysPerEra);
    // 32 bits from here on: every item's dates go through this.
    const auto dayOfEra = static_cast<uint32_t>(shifted - era * kDaysPerEra);
    const uint32_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const auto fromMarch =
        static_cast<int>(dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100));
    const int monthFromMarch = (5 * fromMarch + 2) / 153;
    const bool isNextYear = monthFromMarch >= 10;  // January or February
    const int64_t year = era * 400 + yearOfEra + isNextYear;
    const int64_t second = epoch % kDay;
    return {.year = year,
            .month = isNextYear ? monthFromMarch - 9 : monthFromMarch + 3,
            .day = fromMarch - (153 * monthFromMarch + 2) / 5 + 1,
            .weekday = static_cast<int>((days % 7 + 11) % 7),  // 1970 began on a Thursday
            .dayOfYear = isNextYear ? fromMarch - 306 : fromMarch + 59 + isLeapYear(year),
            .secondOfDay = second < 0 ? second + kDay : second};
}

}  // namespace metaDataCalendar
