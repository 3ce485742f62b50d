#pragma once
#include <cstdint>
#include <string>

/// The calendar of metadata queries: Gregorian, also before its time. Ranges are those of the local
/// time zone, fields those of UTC.
/// Threads: any. Units: seconds since 1970; months and days from 1. Fails: never.
namespace metaDataCalendar {

int64_t daysInMonth(int64_t year, int64_t month);
/// A day's first and last second in the local time zone, whatever its clocks do that day.
int64_t epochOfBeginYear(int64_t year, int64_t month, int64_t day);
int64_t epochOfEndYear(int64_t year, int64_t month, int64_t day);
/// ICU's name of the locale of setlocale(LC_TIME), or its own default.
std::string currentLocale();
/// The first day of the week where the user lives, 1 for Sunday. Not for every item.
int currentFirstWeekday();

/// A second in UTC. Plain arithmetic: the C library's conversion takes a lock.
struct Fields {
    int64_t year;
    int month, day;  // from 1
    int weekday;     // 0 for Sunday
    int dayOfYear;   // from 0
    int64_t secondOfDay;
};
Fields fieldsOf(int64_t epoch);
/// Midnight UTC of a day; the day may lie outside the month.
int64_t epochOf(int64_t year, int64_t month, int64_t day);

}  // namespace metaDataCalendar
