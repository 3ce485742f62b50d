#include "searchmodes/MetaDataSearch.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <ctime>
#include <random>

#include "index/fs_item.h"
#include "searchmodes/RankedItem.h"
#include "util/Unicode.h"

namespace {

constexpr int64_t kNow = 1617192000;  // 31 March 2021, 12:00 UTC

int64_t utc(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    std::tm fields{};
    fields.tm_year = year - 1900;
    fields.tm_mon = month - 1;
    fields.tm_mday = day;
    fields.tm_hour = hour;
    fields.tm_min = minute;
    fields.tm_sec = second;
    return timegm(&fields);
}

fs_item_metadata file(int64_t mtime = 0) {
    return {.mtime = mtime,
            .ctime = utc(2019, 1, 1),
            .btime = utc(2018, 1, 1),
            .atime = utc(2021, 3, 1),
            .uid = 0,
            .gid = 20,
            .mode = S_IFREG | 0644,
            .size = 2048,
            .nlink = 2,
            .attributes = nullptr};
}

struct Outcome {
    bool matches;
    std::vector<uint64_t> criterions;
};

Outcome outcomeOf(std::u16string_view search, const fs_item_metadata& metadata,
                  int firstWeekday = 1) {
    MetaDataSearch engine(search, {.now = kNow, .firstWeekday = firstWeekday});
    IndexSet criterions(4);
    const bool matches = engine.match(&metadata, criterions);
    return {matches, criterions.items()};
}

TEST(MetaDataSearch, NumbersAreComparedAndNoted) {
    struct Case {
        const char16_t* search;
        bool matches;
        std::vector<uint64_t> criterions;
    };
    const Case cases[] = {
        {u"", true, {}},
        {u"plain +re \\-x \\", true, {}},
        {u"\\s2k", true, {16}},
        {u"\\s>2047 \\s<2049", true, {16}},
        {u"\\s>=2049", false, {}},
        {u"\\s<=2048", true, {16}},
        {u"\\s<2048", false, {}},
        {u"\\!s<2048", true, {}},
        {u"\\!s2048", false, {16}},
        {u"\\s:d", true, {16}},
        {u"\\sX \\h2", true, {64}},  // a term in error is left out
        {u"\\h>1 \\g20 \\u0", true, {64, 128, 256}},
        {u"\\h>1 \\!g>=20", false, {64, 256}},
        {u"\\g<20", false, {}},
        {u"\\u:a", true, {128}},
        {u"\\!u:a", true, {128}},
        {u"\\u>99999999999999999999", false, {}},
        {u"\\!u>99999999999999999999", true, {}},
        {u"\\l", false, {}},
        {u"\\!l", true, {}},
        {u"\\pl:a \\px:d", true, {1024, 4096}},
        {u"\\t*:a", true, {1, 2, 4, 8}},
    };
    for (const Case& c : cases) {
        const Outcome outcome = outcomeOf(c.search, file());
        EXPECT_EQ(outcome.matches, c.matches) << toUtf8(c.search);
        EXPECT_EQ(outcome.criterions, c.criterions) << toUtf8(c.search);
    }
}

TEST(MetaDataSearch, KindsOfItemsThatHaveNoSizeToAskFor) {
    for (const mode_t kind : {S_IFDIR, S_IFLNK, S_IFREG, S_IFIFO}) {
        fs_item_metadata metadata = file();
        metadata.mode = static_cast<uint16_t>(kind | 0777);
        const bool sized = kind != S_IFDIR && kind != S_IFLNK;
        EXPECT_EQ(outcomeOf(u"\\s>0", metadata).matches, sized) << kind;
        EXPECT_EQ(outcomeOf(u"\\s:a", metadata).matches, sized) << kind;
        EXPECT_EQ(outcomeOf(u"\\!s>5M", metadata).matches, sized) << kind;
        EXPECT_EQ(outcomeOf(u"\\l", metadata).matches, kind == S_IFLNK) << kind;
        EXPECT_EQ(outcomeOf(u"\\!l", metadata).matches, kind != S_IFLNK) << kind;
    }
    IndexSet criterions;
    for (const char16_t* search : {u"", u"\\s:a", u"\\!l"})
        EXPECT_FALSE(MetaDataSearch(search, {.now = kNow}).match(nullptr, criterions));
}

TEST(MetaDataSearch, KeepsNegatedPathOrdersThatListNothing) {
    EXPECT_FALSE(outcomeOf(u"\\!pl:a", file()).matches);
    EXPECT_FALSE(outcomeOf(u"\\!s:a", file()).matches);
}

TEST(MetaDataSearch, DatesAreComparedWithPointsAndRanges) {
    struct Case {
        const char16_t* search;
        int64_t time;
        bool matches;
    };
    const Case cases[] = {
        // ages: younger is less
        {u"\\tm<1d", utc(2021, 3, 30, 12, 0, 1), true},
        {u"\\tm<1d", utc(2021, 3, 30, 12), false},
        {u"\\tm<=1d", utc(2021, 3, 30, 12), true},
        {u"\\tm1d", utc(2021, 3, 30, 12), true},
        {u"\\tm>1d", utc(2021, 3, 30, 11, 59, 59), true},
        {u"\\tm>=1d", utc(2021, 3, 30, 12, 0, 1), false},
        {u"\\tm2w", utc(2021, 3, 17, 12), true},
        {u"\\tm90m", utc(2021, 3, 31, 10, 30), true},
        {u"\\tm36H", utc(2021, 3, 30), true},
        {u"\\tm61s", utc(2021, 3, 31, 11, 58, 59), true},
        // a day that the month does not have is its last one
        {u"\\tm1M", utc(2021, 2, 28, 12), true},
        {u"\\tm13M", utc(2020, 2, 29, 12), true},
        {u"\\tm4M", utc(2020, 11, 30, 12), true},
        {u"\\tm3M", utc(2020, 12, 31, 12), true},
        {u"\\tm3y", utc(2018, 3, 31, 12), true},
        {u"\\tm<999999999y", INT64_MIN / 4, false},
        {u"\\tm<999999999w", utc(1900, 1, 1), true},
        // ranges, in the local time zone: UTC here
        {u"\\tm2020", utc(2020, 1, 1), true},
        {u"\\tm2020", utc(2020, 12, 31, 23, 59, 59), true},
        {u"\\tm2020", utc(2021, 1, 1), false},
        {u"\\tm<2020", utc(2019, 12, 31, 23, 59, 59), true},
        {u"\\tm<2020", utc(2020, 1, 1), false},
        {u"\\tm>2020", utc(2020, 12, 31, 23, 59, 59), false},
        {u"\\tm>2020", utc(2021, 1, 1), true},
        {u"\\tm<=2020", utc(2020, 12, 31, 23, 59, 59), true},
        {u"\\tm>=2020", utc(2020, 1, 1), true},
        {u"\\tm>=2020", utc(2019, 12, 31, 23, 59, 59), false},
        {u"\\tm202002", utc(2020, 2, 29, 23, 59, 59), true},
        {u"\\tm20200229", utc(2020, 3, 1), false},
        {u"\\!tm20200229", utc(2020, 3, 1), true},
        {u"\\tm1969", -1, true},
        {u"\\tm<1969", 5, false},
        {u"\\tm>1969", 5, true},
        // fields
        {u"\\tmM2", utc(1960, 2, 29), true},
        {u"\\tmM<2", utc(1960, 2, 29), false},
        {u"\\tmd>=29", utc(2020, 2, 29), true},
        {u"\\tmQ1", utc(2020, 3, 31), true},
        {u"\\tmQ2", utc(2020, 4, 1), true},
        {u"\\tm2020Q4", utc(2020, 10, 1), true},
        {u"\\tm<2020Q4", utc(2019, 12, 1), true},
        {u"\\tm>2019Q4", utc(2020, 1, 1), true},
        {u"\\tme1", utc(2021, 3, 28), true},    // Sunday, where weeks begin with it
        {u"\\tme<3", utc(2021, 3, 28), false},  // but it is the last day: 7
    };
    for (const Case& c : cases)
        EXPECT_EQ(outcomeOf(c.search, file(c.time)).matches, c.matches)
            << toUtf8(c.search) << ' ' << c.time;
}

TEST(MetaDataSearch, AnyDateNotesThoseThatMatch) {
    EXPECT_EQ(outcomeOf(u"\\t*2021", file(kNow)).criterions, (std::vector<uint64_t>{2, 8}));
    EXPECT_EQ(outcomeOf(u"\\t*<2020", file(kNow)).criterions, (std::vector<uint64_t>{1, 4}));
    EXPECT_FALSE(outcomeOf(u"\\t*1999", file(kNow)).matches);
    EXPECT_FALSE(outcomeOf(u"\\!t*2018", file(kNow)).matches);
    EXPECT_TRUE(outcomeOf(u"\\!t*1999", file(kNow)).matches);
    for (const auto& [search, criterion] :
         {std::pair(u"\\tb2018", 1u), std::pair(u"\\tc2019", 4u), std::pair(u"\\ta2021", 8u)})
        EXPECT_EQ(outcomeOf(search, file()).criterions, std::vector<uint64_t>{criterion});
}

int64_t weekOf(int64_t time, int firstWeekday) {
    for (int64_t week = 1; week <= 53; week++) {
        const std::u16string number = *toUtf16(std::to_string(week));
        if (outcomeOf(u"\\tmw" + number, file(time), firstWeekday).matches) return week;
    }
    return -1;
}

TEST(MetaDataSearch, WeeksAreCountedFromTheirFirstDay) {
    struct Case {
        int64_t time;
        int firstWeekday;
        int64_t week;
    };
    const Case cases[] = {
        {utc(2020, 1, 1), 2, 1},                               // a Wednesday
        {utc(2020, 1, 5, 23), 2, 1}, {utc(2020, 1, 6), 2, 2},  // the first Monday
        {utc(2020, 1, 4), 1, 1},     {utc(2020, 1, 5), 1, 2},  // the first Sunday
        {utc(2020, 12, 31), 2, 53},  {utc(2020, 12, 27), 1, 53},
    };
    for (const Case& c : cases) EXPECT_EQ(weekOf(c.time, c.firstWeekday), c.week) << c.time;
    EXPECT_TRUE(outcomeOf(u"\\tm2020w2", file(utc(2020, 1, 6)), 2).matches);
    EXPECT_TRUE(outcomeOf(u"\\tm<2020w2", file(utc(2019, 12, 31)), 2).matches);
    EXPECT_FALSE(outcomeOf(u"\\tm>2020w2", file(utc(2019, 12, 31)), 2).matches);
}

TEST(MetaDataSearch, KeepsYearsWithoutAFirstWeek) {
    EXPECT_EQ(weekOf(utc(2018, 1, 1), 2), 2);  // a Monday
    EXPECT_EQ(weekOf(utc(2017, 1, 1), 1), 2);  // a Sunday
}

class MetaDataOrder : public testing::Test {
  protected:
    /// What comes first of two items, by a search.
    int order(std::u16string_view search) {
        a_.metadata = &first;
        b_.metadata = &second;
        const MetaDataSearch engine(search, {.now = kNow});
        const RankedItem a{.item = &a_, .score = 0, .depth = 0, .criterions = criterionsOfFirst};
        const RankedItem b{.item = &b_, .score = 0, .depth = 0, .criterions = criterionsOfSecond};
        return engine.compare(a, b);
    }
    fs_item_metadata first = file(10), second = file(20);
    uint16_t criterionsOfFirst = 0, criterionsOfSecond = 0;
    fs_item_t root_{"/", 1, ITEM_DIRECTORY, nullptr, nullptr, 0, 0, nullptr};
    fs_item_t a_{"b.a", 3, ITEM_FILE, nullptr, &root_, 1, 1, nullptr};
    fs_item_t b_{"a.b", 3, ITEM_FILE, nullptr, &root_, 2, 2, nullptr};
};

TEST_F(MetaDataOrder, KeysFollowTheQueriesUntilOneTells) {
    const MetaDataSearch none(u"main \\s>5", {.now = kNow});
    EXPECT_FALSE(none.hasSortOrder());
    const MetaDataSearch search(u"\\s:d x \\tm<5d:a \\sX:a \\pl:a", {.now = kNow});
    EXPECT_TRUE(search.hasSortOrder());
    EXPECT_EQ(search.sortOrderDescription(),
              (std::vector<MetaDataSortKey>{{16, 0, 2}, {2, 3, 1}, {1024, 0, 1}}));
    second.size = 2049;
    second.nlink = 1;
    second.uid = 5;
    second.gid = 19;
    second.mode = S_IFLNK | 0777;
    struct Case {
        const char16_t* search;
        int order;
    };
    const Case cases[] = {
        {u"", 0},
        {u"\\tm:a", -1},
        {u"\\tm:d", 1},
        {u"\\tb:a", 0},
        {u"\\tc:a", 0},
        {u"\\ta:d", 0},
        {u"\\s:a", -1},
        {u"\\h:a", 1},
        {u"\\u:a", -1},
        {u"\\g:a", 1},
        {u"\\pl:a", 1},
        {u"\\pl:d", -1},
        {u"\\px:a", -1},
        {u"\\pa:a", 1},
        {u"\\l", 0},
        {u"\\ta:a \\s:d", 1},
        {u"\\s:d \\tm:a", 1},
        {u"\\ta:a \\tb:a \\tm:a \\s:d", -1},
    };
    for (const Case& c : cases) EXPECT_EQ(order(c.search), c.order) << toUtf8(c.search);
    first.uid = 0xFFFFFFFF;
    first.size = ~uint64_t{0};
    EXPECT_EQ(order(u"\\u:a"), 1);
    EXPECT_EQ(order(u"\\s:a"), 1);
}

TEST_F(MetaDataOrder, AnyDateIsTheEarliestOrLatestThatMatched) {
    first.atime = 30;
    second.atime = 25;
    first.btime = second.btime = 1;
    criterionsOfFirst = 2 | 8;
    criterionsOfSecond = 2 | 8;
    EXPECT_EQ(order(u"\\t*:a"), -1);  // 10, 20
    EXPECT_EQ(order(u"\\t*:d"), -1);  // 30, 25
    criterionsOfFirst = 8;
    EXPECT_EQ(order(u"\\t*:a"), 1);  // 30, 20
    criterionsOfSecond = 1;
    EXPECT_EQ(order(u"\\t*:d"), -1);  // 30, 1
}

TEST_F(MetaDataOrder, ItemsWithoutMetadataAreToldApartByNameAlone) {
    first.size = 1;
    EXPECT_EQ(order(u"\\s:a"), -1);
    const MetaDataSearch engine(u"\\s:a \\pl:a", {.now = kNow});
    a_.metadata = nullptr;
    EXPECT_EQ(engine.compare({.item = &a_, .score = 0, .depth = 0},
                             {.item = &b_, .score = 0, .depth = 0}),
              1);
}

}  // namespace
