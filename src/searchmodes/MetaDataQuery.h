#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// One term of the search text that begins with a backslash, as a test of an item's metadata, an
/// order of the rows, or both. A value.
/// Units: sizes in bytes; epochs in seconds since 1970, of dates before that their two's
/// complement.
struct MetaDataQuery {
    /// What a query looks at; the dates are bits, so that one value names all four.
    enum Criterion : uint64_t {
        kBirthTime = 1,
        kContentModified = 2,
        kAttributesModified = 4,
        kAccessed = 8,
        kAnyTime = 15,
        kSize = 16,
        kSymlink = 32,
        kLinkCount = 64,
        kUser = 128,
        kGroup = 256,
        kAttributeName = 512,  // no term gives it
        kPathName = 1024,      // these three only order the result
        kPathAbsolute = 2048,
        kPathExtension = 4096,
    };

    enum Operator : uint64_t {
        kNoOperator = 0,  // the query only orders the result
        kEqual = 1,
        kLess = 2,
        kGreater = 3,
        kAtMost = 4,
        kAtLeast = 5,
    };

    /// How a query about a date is held: and in which fields.
    enum ValueType : uint64_t {
        kNoDate = 0,
        kAgeYears = 1,  // ages: integerValue1
        kAgeMonths = 2,
        kAgeDays = 3,  // also of weeks
        kAgeHours = 4,
        kAgeMinutes = 5,
        kAgeSeconds = 6,
        kYear = 7,          // fromEpoch, toEpoch
        kMonthOfYear = 8,   // of any year: integerValue1
        kDayOfMonth = 9,    // of any month
        kQuarter = 10,      // of any year
        kYearQuarter = 11,  // quarter integerValue1 of the year integerValue2
        kWeek = 12,         // of any year
        kYearWeek = 13,     // week integerValue1 of the year integerValue2
        kDayOfWeek = 14,    // integerValue1: 1 for Monday to 7
        kMonth = 15,        // fromEpoch, toEpoch; year and month in the integers
        kDay = 16,          // the same, and the day in integerValue3
    };

    enum SortOrderType : uint64_t { kUnsorted = 0, kAscending = 1, kDescending = 2 };

    bool isNegative = false;
    uint64_t criterion = 0;
    uint64_t operator_ = kNoOperator;
    uint64_t valueType = kNoDate;
    uint64_t sortOrderType = kUnsorted;
    std::u16string stringValue = {};
    int64_t integerValue1 = 0, integerValue2 = 0, integerValue3 = 0;
    uint64_t fromEpoch = 0, toEpoch = 0;

    friend bool operator==(const MetaDataQuery&, const MetaDataQuery&) = default;
};

/// What may come next in a term, for the eye: "[0..9]", "Size".
struct MetaDataSuggestion {
    std::string token;
    std::string description;
    friend bool operator==(const MetaDataSuggestion&, const MetaDataSuggestion&) = default;
};

/// What the parser makes of a term. Neither a query nor an error: the term is none of its own.
struct MetaDataParse {
    std::optional<MetaDataQuery> query = {};
    std::optional<std::string> errorString = {};
    /// In units from the term's backslash. Above 0: what stands there is wrong; else the term is
    /// incomplete from the absolute value on.
    std::optional<int64_t> errorLocation = {};
    std::vector<MetaDataSuggestion> suggestions = {};
};
