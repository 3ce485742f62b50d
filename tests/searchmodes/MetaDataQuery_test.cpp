#include "searchmodes/MetaDataQuery.h"

#include <grp.h>
#include <gtest/gtest.h>
#include <pwd.h>

#include "searchmodes/MetaDataSearch.h"
#include "util/Unicode.h"

namespace {

MetaDataParse parse(std::u16string_view term, int firstWeekday = 1) {
    return MetaDataSearch::parseWord(term, firstWeekday);
}

/// "token description|..."
std::string suggestionsOf(const MetaDataParse& parse) {
    std::string text;
    for (const MetaDataSuggestion& suggestion : parse.suggestions)
        text += (text.empty() ? "" : "|") + suggestion.token + " " + suggestion.description;
    return text;
}

constexpr const char* kLetters = "t Timestamp|s Size|l Symlink|h Link Count|u User|g Group|p Path";
constexpr const char* kDirections = "a ascending|d descending";
constexpr const char* kPaths = "l Last path component|a Absolute path|x Filename extension";
constexpr const char* kAges =
    "[yMwdHms] Age in years, months, weeks, days, hours, minutes or seconds";

std::string also(const char* first, const char* more) {
    return std::string(first) + "|" + more;
}

struct Refused {
    const char16_t* term;
    int64_t location;
    const char* message;
    std::string suggestions = {};
};

void expectRefused(const Refused& c) {
    const MetaDataParse result = parse(c.term);
    const std::string term = toUtf8(c.term);
    EXPECT_FALSE(result.query) << term;
    EXPECT_EQ(result.errorString, c.message) << term;
    EXPECT_EQ(result.errorLocation, c.location) << term;
    EXPECT_EQ(suggestionsOf(result), c.suggestions) << term;
}

TEST(MetaDataQuery, PlainTextBehindABackslashIsNoQueryAndNoError) {
    for (const char16_t* term : {u"", u"x", u"\\+", u"\\-x", u"\\\\", u"\\\\s5", u"+\\s5"}) {
        const MetaDataParse result = parse(term);
        EXPECT_FALSE(result.query || result.errorString || result.errorLocation);
        EXPECT_TRUE(result.suggestions.empty());
    }
}

TEST(MetaDataQuery, RefusalsTellWhatIsWrongWhereAndWhatMayCome) {
    const Refused cases[] = {
        {u"\\", 0, "Incomplete query.",
         "[\\+-] Fuzzy search|! negate query|t Timestamp|s Size|l Symlink|h Item Link Count|u "
         "User|g Group|p Path"},
        {u"\\!", -1, "Incomplete query.", kLetters},
        {u"\\S5", 1, "Invalid query.", also("! negate query", kLetters)},
        {u"\\!!s5", 2, "Invalid query.", kLetters},
        {u"\\ s5", 1, "Invalid query.", also("! negate query", kLetters)},
        {u"\\l5", 2, "Superfluous trailing text."},
        // sizes
        {u"\\s", -1, "Missing size.", "[<>=] Operator|[0..9] Size value|: Sort by size"},
        {u"\\s>", -1, "Missing size.", "= Operator|[0..9] Size"},
        {u"\\!s>=", -2, "Missing size.", "[0..9] Size"},
        {u"\\s-5", 2, "Invalid size.", "[0..9] Size"},
        {u"\\s<<5", 3, "Invalid size.", "[0..9] Size"},
        {u"\\s5K", 3, "Invalid unit provided for size."},
        {u"\\s5kk", 4, "Invalid unit provided for size."},
        {u"\\s:", -2, "Missing sort direction.", kDirections},
        {u"\\s5:x", 4, "Invalid sort direction.", kDirections},
        {u"\\s>5:ad", 6, "Superfluous trailing text."},
        // link counts
        {u"\\h", -1, "Query incomplete.", "[<>=] Operator|[0..9] Value"},
        {u"\\h<", -2, "Missing value.", "= Operator|[0..9] Value"},
        {u"\\h=", -2, "Missing value.", "[0..9] Value"},
        {u"\\h<x", 3, "Invalid value.", "[0..9] Value"},
        {u"\\hx", 2, "Invalid query.", "[<>=] Operator|[0..9] Value"},
        {u"\\h5x", 3, "Invalid query."},
        {u"\\h5:d", 3, "Attempt to sort equal values."},
        {u"\\h5:", -3, "Missing sort direction.", kDirections},
        // owners
        {u"\\u", -1, "Missing user.", "<>= Operator|[0..9] uid|User name |: Sort order"},
        {u"\\!g", -2, "Missing group.", "<>= Operator|[0..9] gid|Group name |: Sort order"},
        {u"\\g>", -2, "Missing gid.", "= Operator|[0..9] gid|: Sort order"},
        {u"\\u=", -2, "Missing user.", "[0..9] uid|User name |: Sort order"},
        {u"\\u<:a", 3, "Invalid user."},
        {u"\\g=:a", 3, "Invalid group."},
        {u"\\u4294967296", 2, "No such uid.", "[0..9] uid"},  // 0 in 32 bits
        {u"\\g=4294967294", 3, "No such gid.", "[0..9] gid"},
        {u"\\u>=root", 4, "Operator works only with uid, not with name."},
        {u"\\g<root", 3, "Operator works only with gid, not with name."},
        {u"\\uno such user", 2, "Unknown user."},
        {u"\\g\xD800", 2, "Unknown group."},
        {u"\\u-1", 2, "Unknown user."},
        {u"\\uroot:a", 6, "Attempt to sort equal values."},
        {u"\\u0:", -3, "Missing sort direction.", kDirections},
        // paths
        {u"\\p", -1, "Missing path specifier.", kPaths},
        {u"\\!p", -2, "Missing path specifier.", kPaths},
        {u"\\p:a", 2, "Invalid path specifier.", kPaths},
        {u"\\pl", -1,
         "Missing sort instruction; This query may only be used for specifying sort order.",
         ": Sort by path"},
        {u"\\plx", 3, "Superfluous trailing text."},
        {u"\\pa:dd", 5, "Superfluous trailing text."},
        {u"\\px:", -4, "Missing sort direction.", kDirections},
        {u"\\px:x", 4, "Invalid sort direction.", kDirections},
    };
    for (const Refused& c : cases) expectRefused(c);
    const char16_t withNul[] = u"\\uroot\0x";
    EXPECT_EQ(parse({withNul, 8}).errorString, "Unknown user.");
}

TEST(MetaDataQuery, RefusedDatesTellWhatIsWrongWhereAndWhatMayCome) {
    const std::string letters = "b Birth|c Attributes modified|m Content modified|a Accessed|* Any";
    const Refused cases[] = {
        {u"\\t", -1, "Missing timestamp specifier.", letters},
        {u"\\!t", -2, "Missing timestamp specifier.", letters},
        {u"\\tx", 2, "Invalid timestamp specifier.", letters},
        {u"\\tm", -1, "Incomplete date query.",
         "[1..9] Date or age|[<>=] Operator|M Month|d Day|Q Quarter|w Week of year|e Day of "
         "Week|: Sort by date"},
        {u"\\tm:", -3, "Missing sort direction.", kDirections},
        {u"\\tmy", -4, "Missing year.", "<>= Operator|[0..9] year"},
        {u"\\tmQ<", -5, "Missing quarter.", "[1..4] quarter"},
        {u"\\tme", -4, "Missing day of week [1..7]", "<>= Operator|[1..7] day of week"},
        {u"\\tme>", -5, "Missing day of week.", "[1..7] day of week"},
        {u"\\tmy1899", 4, "Invalid year."},
        {u"\\tmy10000", 4, "Invalid year."},
        {u"\\tmM0", 4, "Invalid month."},
        {u"\\tmM<=13", 6, "Invalid month."},
        {u"\\tmd32", 4, "Invalid day of month."},
        {u"\\tmQ5", 4, "Invalid quarter."},
        {u"\\tmw54", 4, "Invalid week of year."},
        {u"\\tme8", 4, "Invalid day of week."},
        {u"\\tme-1", 4, "Invalid day of week."},
        {u"\\tmM99999999999999999999999999999999999999999", 4, "Invalid month."},
        {u"\\tmM5x", 5, "Superfluous trailing text."},
        {u"\\tmM5:", -5, "Missing sort direction.", kDirections},
        {u"\\tm<", 4, "Invalid date or age: \\tm<.", "= Operator|[0..9] Date or age"},
        {u"\\tm>=", 5, "Invalid date or age: \\tm>=.", "[0..9] Date or age"},
        {u"\\tmx:a", 3, "Invalid date or age: \\tmx."},
        {u"\\tm\xDC00", 3, "Invalid date or age: \\tm\xEF\xBF\xBD."},
        {u"\\tm<1234567890", 4, "Numeric value too large: 1234567890."},
        {u"\\tm1", -3, "Cannot parse year or age: \\tm1.", also("[0..9] Year or age", kAges)},
        {u"\\tm<12:a", -4, "Cannot parse year or age: \\tm<12.", also("[0..9] Year or age", kAges)},
        {u"\\tm12345", -7, "Incomplete month or age: \\tm12345.",
         also("[0..9] Month or age", kAges)},
        {u"\\tm1234567", -9, "Incomplete day or age: \\tm1234567.",
         also("[0..9] Day or age", kAges)},
        {u"\\tm123456789", -11, "Incomplete day or age: \\tm123456789.", kAges},
        {u"\\tm202000", 7, "Invalid month: 0."},
        {u"\\tm20201301", 7, "Invalid month: 13."},
        {u"\\tm20210229", 9, "Invalid date: 2021-02-29."},
        {u"\\tm19000229", 9, "Invalid date: 1900-02-29."},
        {u"\\tm20200230", 9, "Invalid date: 2020-02-30."},
        {u"\\tm20200400", 9, "Invalid date: 2020-04-00."},
        {u"\\tm2020x", 7, "Superfluous trailing text."},
        {u"\\tm5dd", 5, "Superfluous trailing text."},
        {u"\\tm5d:ax", 7, "Superfluous trailing text."},
        {u"\\tm2020w0", 8, "Invalid week."},
        {u"\\tm2020wx:a", 8, "Invalid week: x."},
        {u"\\tm999Q1", 3, "Invalid year: 999."},
        {u"\\tm2020Q", -8, "Missing quarter"},
        {u"\\tm2020Q9", 8, "Invalid quarter: 9."},
        {u"\\tm2020Qa:a", 8, "Invalid quarter: a."},
    };
    for (const Refused& c : cases) expectRefused(c);
}

TEST(MetaDataQuery, KeepsOnePlaceForAllBadYearsOfWeeks) {
    expectRefused({u"\\tm999w1", 3, "Invalid year."});
    expectRefused({u"\\!tm<=12345w1", 3, "Invalid year."});
}

struct Accepted {
    const char16_t* term;
    MetaDataQuery query;
    const char* suggestions = "";
};

void expectAccepted(const Accepted& c) {
    const MetaDataParse result = parse(c.term);
    const std::string term = toUtf8(c.term);
    ASSERT_TRUE(result.query) << term << result.errorString.value_or("");
    EXPECT_FALSE(result.errorString || result.errorLocation) << term;
    EXPECT_EQ(suggestionsOf(result), c.suggestions) << term;
    EXPECT_EQ(*result.query, c.query) << term;
}

TEST(MetaDataQuery, NumbersOwnersAndPaths) {
    constexpr int64_t kMax = INT64_MAX;
    const Accepted cases[] = {
        {u"\\l", {.criterion = 32, .operator_ = 1}},
        {u"\\!l", {.isNegative = true, .criterion = 32, .operator_ = 1}},
        {u"\\s0", {.criterion = 16, .operator_ = 1}, "k kiB|M MiB|G GiB"},
        {u"\\s<7",
         {.criterion = 16, .operator_ = 2, .integerValue1 = 7},
         "k kiB|M MiB|G GiB|: Sort by size"},
        {u"\\s>=3k", {.criterion = 16, .operator_ = 5, .integerValue1 = 3072}, ": Sort by size"},
        {u"\\!s<=1M:d",
         {.isNegative = true,
          .criterion = 16,
          .operator_ = 4,
          .sortOrderType = 2,
          .integerValue1 = 1 << 20}},
        {u"\\s>5G",
         {.criterion = 16, .operator_ = 3, .integerValue1 = 5ll << 30},
         ": Sort by size"},
        {u"\\s=9999999999999999999999999999999999999999",
         {.criterion = 16, .operator_ = 1, .integerValue1 = kMax},
         "k kiB|M MiB|G GiB"},
        {u"\\s8589934592G", {.criterion = 16, .operator_ = 1, .integerValue1 = kMax}},
        {u"\\s:a", {.criterion = 16, .operator_ = 5, .sortOrderType = 1}},
        {u"\\s5:a", {.criterion = 16, .operator_ = 1, .sortOrderType = 1, .integerValue1 = 5}},
        {u"\\h2", {.criterion = 64, .operator_ = 1, .integerValue1 = 2}, "[0..9] Value"},
        {u"\\h>2",
         {.criterion = 64, .operator_ = 3, .integerValue1 = 2},
         "[0..9] Value|: Sort order"},
        {u"\\h>=2:d", {.criterion = 64, .operator_ = 5, .sortOrderType = 2, .integerValue1 = 2}},
        {u"\\h:d", {.criterion = 64, .operator_ = 5, .sortOrderType = 2}},
        {u"\\u0", {.criterion = 128, .operator_ = 1}, "[0..9] uid"},
        {u"\\u:d", {.criterion = 128, .sortOrderType = 2}},
        {u"\\u=0:a", {.criterion = 128, .operator_ = 1, .sortOrderType = 1}},
        {u"\\u>4294967295000",
         {.criterion = 128, .operator_ = 3, .integerValue1 = 4294967295000},
         "[0..9] uid|: Sort order"},
        {u"\\g<10:a", {.criterion = 256, .operator_ = 2, .sortOrderType = 1, .integerValue1 = 10}},
        {u"\\pl:a", {.criterion = 1024, .operator_ = 1, .sortOrderType = 1}},
        {u"\\pa:d", {.criterion = 2048, .operator_ = 1, .sortOrderType = 2}},
        {u"\\!px:a", {.isNegative = true, .criterion = 4096, .operator_ = 1, .sortOrderType = 1}},
    };
    for (const Accepted& c : cases) expectAccepted(c);
}

TEST(MetaDataQuery, NamesStandForTheIdsOfTheirOwners) {
    const passwd* user = getpwuid(0);
    const group* group = getgrgid(0);
    if (!user || !group) GTEST_SKIP() << "nobody has the id 0";
    expectAccepted(
        {(u"\\u" + *toUtf16(user->pw_name)).c_str(), {.criterion = 128, .operator_ = 1}});
    expectAccepted(
        {(u"\\g=" + *toUtf16(group->gr_name)).c_str(), {.criterion = 256, .operator_ = 1}});
}

TEST(MetaDataQuery, AgesAndFieldsOfDates) {
    const Accepted cases[] = {
        {u"\\tb5y", {.criterion = 1, .operator_ = 1, .valueType = 1, .integerValue1 = 5}},
        {u"\\tm<5M", {.criterion = 2, .operator_ = 2, .valueType = 2, .integerValue1 = 5}},
        {u"\\tc>5d", {.criterion = 4, .operator_ = 3, .valueType = 3, .integerValue1 = 5}},
        {u"\\ta<=5H", {.criterion = 8, .operator_ = 4, .valueType = 4, .integerValue1 = 5}},
        {u"\\t*5m", {.criterion = 15, .operator_ = 1, .valueType = 5, .integerValue1 = 5}},
        {u"\\tm5s:a",
         {.criterion = 2, .operator_ = 1, .valueType = 6, .sortOrderType = 1, .integerValue1 = 5}},
        {u"\\tm2w",
         {.criterion = 2, .operator_ = 1, .valueType = 3, .integerValue1 = 14},
         "[1..53] Week of year"},
        {u"\\tm>999999999w:d",
         {.criterion = 2,
          .operator_ = 3,
          .valueType = 3,
          .sortOrderType = 2,
          .integerValue1 = 6999999993}},
        {u"\\tm14d", {.criterion = 2, .operator_ = 1, .valueType = 3, .integerValue1 = 14}},
        {u"\\tm:d", {.criterion = 2, .sortOrderType = 2}},
        {u"\\t*:a", {.criterion = 15, .sortOrderType = 1}},
        {u"\\tmM5",
         {.criterion = 2, .operator_ = 1, .valueType = 8, .integerValue1 = 5},
         ": Sort order"},
        {u"\\tmd>=31",
         {.criterion = 2, .operator_ = 5, .valueType = 9, .integerValue1 = 31},
         ": Sort order"},
        {u"\\!tmQ4:a",
         {.isNegative = true,
          .criterion = 2,
          .operator_ = 1,
          .valueType = 10,
          .sortOrderType = 1,
          .integerValue1 = 4}},
        {u"\\tmw<=53",
         {.criterion = 2, .operator_ = 4, .valueType = 12, .integerValue1 = 53},
         ": Sort order"},
        {u"\\tm2020Q3",
         {.criterion = 2,
          .operator_ = 1,
          .valueType = 11,
          .integerValue1 = 3,
          .integerValue2 = 2020},
         ": Sort order"},
        {u"\\tm2020w5",
         {.criterion = 2,
          .operator_ = 1,
          .valueType = 13,
          .integerValue1 = 5,
          .integerValue2 = 2020},
         "[0..9] Week of year|: Sort order"},
        {u"\\tm2020w53",
         {.criterion = 2,
          .operator_ = 1,
          .valueType = 13,
          .integerValue1 = 53,
          .integerValue2 = 2020},
         ": Sort order"},
    };
    for (const Accepted& c : cases) expectAccepted(c);
}

TEST(MetaDataQuery, WrittenDatesHoldWhatTheySay) {
    struct Case {
        const char16_t* term;
        uint64_t valueType;
        int64_t year, month, day;
        const char* suggestions;
    };
    const Case cases[] = {
        {u"\\tm2020", 7, 0, 0, 0, "[0..9] Month or age|w Week|Q Quarter|: Sort order"},
        {u"\\tm>202002", 15, 2020, 2, 0, "[0..9] Day or age|: Sort order"},
        {u"\\tm20200229", 16, 2020, 2, 29, ": Sort order"},
        {u"\\tm20000229:a", 16, 2000, 2, 29, ""},
    };
    for (const Case& c : cases) {
        const MetaDataParse result = parse(c.term);
        ASSERT_TRUE(result.query);
        EXPECT_EQ(result.query->valueType, c.valueType);
        EXPECT_EQ(result.query->integerValue1, c.year);
        EXPECT_EQ(result.query->integerValue2, c.month);
        EXPECT_EQ(result.query->integerValue3, c.day);
        EXPECT_EQ(suggestionsOf(result), c.suggestions);
    }
}

TEST(MetaDataQuery, DaysOfTheWeekCountFromTheFirstOne) {
    struct Case {
        int firstWeekday;
        const char16_t* term;
        int64_t day;  // from 1 for Monday
    };
    for (const Case& c : {Case{1, u"\\tme1", 7}, Case{1, u"\\tme2", 1}, Case{2, u"\\tme1", 1},
                          Case{2, u"\\tme7", 7}, Case{7, u"\\tme1", 6}, Case{7, u"\\tme2", 7}})
        EXPECT_EQ(parse(c.term, c.firstWeekday).query->integerValue1, c.day) << c.firstWeekday;
}

}  // namespace
