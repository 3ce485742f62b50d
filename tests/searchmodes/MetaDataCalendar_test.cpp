#include "searchmodes/MetaDataCalendar.h"

#include <gtest/gtest.h>
#include <unicode/uloc.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "searchmodes/MetaDataSearch.h"

namespace {

struct TimeZone {
    explicit TimeZone(const char* name) {
        setenv("TZ", name, 1);
        tzset();
    }
    ~TimeZone() {
        unsetenv("TZ");
        tzset();
    }
};

std::tm localTime(time_t epoch) {
    std::tm fields{};
    localtime_r(&epoch, &fields);
    return fields;
}

TEST(MetaDataCalendar, FieldsAreThoseOfTheCLibrary) {
    std::mt19937_64 random(3);
    for (int i = 0; i < 200000; i++) {
        // Some 30000 years around 1970, and the seconds around midnight.
        auto epoch = static_cast<int64_t>(random() % (1ull << 40)) - (1ll << 39);
        if (i % 3 == 0) epoch -= (epoch % 86400) + i % 2;
        std::tm expected{};
        const time_t time = epoch;
        ASSERT_TRUE(gmtime_r(&time, &expected));
        const auto fields = metaDataCalendar::fieldsOf(epoch);
        ASSERT_EQ(fields.year, expected.tm_year + 1900) << epoch;
        ASSERT_EQ(fields.month, expected.tm_mon + 1) << epoch;
        ASSERT_EQ(fields.day, expected.tm_mday) << epoch;
        ASSERT_EQ(fields.weekday, expected.tm_wday) << epoch;
        ASSERT_EQ(fields.dayOfYear, expected.tm_yday) << epoch;
        ASSERT_EQ(
            metaDataCalendar::epochOf(fields.year, fields.month, fields.day) + fields.secondOfDay,
            epoch);
    }
}

TEST(MetaDataCalendar, DaysBeginAndEndWithThemselvesWhateverTheClocksDo) {
    // Havana has two midnights in November; Cairo, Beirut and São Paulo had days without one. Which
    // of two the C library takes depends on what it was asked before.
    std::vector<int64_t> days(366 * 20);
    std::iota(days.begin(), days.end(), metaDataCalendar::epochOf(2004, 1, 1) / 86400);
    std::shuffle(days.begin(), days.end(), std::mt19937(7));
    for (const char* name :
         {"UTC", "Europe/Berlin", "America/New_York", "America/Havana", "Africa/Cairo",
          "Asia/Beirut", "America/Sao_Paulo", "Australia/Lord_Howe", "Atlantic/Azores"}) {
        const TimeZone zone(name);
        for (const int64_t number : days) {
            const auto day = metaDataCalendar::fieldsOf(number * 86400);
            const int64_t begin = metaDataCalendar::epochOfBeginYear(day.year, day.month, day.day);
            const int64_t end = metaDataCalendar::epochOfEndYear(day.year, day.month, day.day);
            const auto where = std::string(name) + ' ' + std::to_string(number);
            ASSERT_EQ(localTime(begin).tm_mday, day.day) << where;
            ASSERT_NE(localTime(begin - 1).tm_mday, day.day) << where;
            ASSERT_EQ(localTime(end).tm_mday, day.day) << where;
            ASSERT_NE(localTime(end + 1).tm_mday, day.day) << where;
        }
    }
}

TEST(MetaDataCalendar, RangesAreThoseOfTheLocalTimeZone) {
    struct Case {
        const char* zone;
        const char16_t* term;
        uint64_t from, to;
    };
    constexpr uint64_t kHour = 3600, kDay = 24 * kHour, kSpring = 1616889600;  // 28 March 2021
    const Case cases[] = {
        {"UTC", u"\\tm20210328", kSpring, kSpring + kDay - 1},
        {"Europe/Berlin", u"\\tm20210328", kSpring - kHour, kSpring + 22 * kHour - 1},
        {"Europe/Berlin", u"\\tm20211031", 1635631200, 1635631200 + 25 * kHour - 1},
        {"America/New_York", u"\\tm20210328", kSpring + 4 * kHour, kSpring + 28 * kHour - 1},
        {"America/New_York", u"\\tm20210314", 1615698000, 1615698000 + 23 * kHour - 1},
        {"Europe/Berlin", u"\\tm2021", 1609455600, 1640991599},
        {"Europe/Berlin", u"\\tmy2021", 1609455600, 1640991599},
        {"Europe/Berlin", u"\\tm202103", 1614553200, 1617227999},
        {"UTC", u"\\tm1969", uint64_t(-365 * 86400), uint64_t(-1)},
    };
    for (const Case& c : cases) {
        const TimeZone zone(c.zone);
        const auto query = MetaDataSearch::parseWord(c.term, 1).query;
        ASSERT_TRUE(query);
        EXPECT_EQ(query->fromEpoch, c.from) << c.zone << ' ' << c.from;
        EXPECT_EQ(query->toEpoch, c.to) << c.zone << ' ' << c.to;
    }
}

TEST(MetaDataCalendar, TheWeekBeginsWithTheDayOfTheLocale) {
    const std::string before = uloc_getDefault();
    UErrorCode status = U_ZERO_ERROR;
    for (const auto& [locale, day] : {std::pair("de_DE", 2), std::pair("en_US", 1),
                                      std::pair("ar_EG", 7), std::pair("en_GB", 2)}) {
        uloc_setDefault(locale, &status);
        EXPECT_EQ(metaDataCalendar::currentFirstWeekday(), day) << locale;
        EXPECT_EQ(MetaDataContext::at(0).firstWeekday, day);
    }
    uloc_setDefault(before.c_str(), &status);
}

}  // namespace
