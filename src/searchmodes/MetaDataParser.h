#pragma once
#include <string>
#include <string_view>
#include <utility>

#include "searchmodes/MetaDataQuery.h"
#include "searchmodes/MetaDataScanner.h"

/// Parses one metadata term. All trouble is told while the user still types: what is wrong, where,
/// and what may come instead.
/// Owner:   MetaDataSearch::parseWord, one a term. Threads: any; users and groups are looked up.
/// Units:   locations as in MetaDataParse; firstWeekday 1 for Sunday.
/// Fails:   by a parse without a query.
class MetaDataParser {
  public:
    MetaDataParser(std::u16string_view term, int firstWeekday)
        : scanner_(term), firstWeekday_(firstWeekday) {}

    MetaDataParse parseWord();

  private:
    /// What stands where a term may tell an order: ":a" or ":d".
    enum class Sort {
        sorted,
        noColon,  // but other text
        atEnd,
        directionMissing,  // these and the following have set the error
        directionWrong,
        textBehind,
        equalValues,
    };
    enum class FailOnEqualValues : bool { no, yes };
    enum class Owner { user, group };
    struct DateComponent {
        std::u16string_view letter;
        const char* name;
        const char* rangeToken;
        int64_t first, last;
        uint64_t valueType;
    };

    // MetaDataParser.cpp
    bool dispatch();
    /// "=" where there is none, which it tells.
    bool parseOperator();
    Sort scanSortOrder(FailOnEqualValues failOnEqualValues = FailOnEqualValues::no);
    bool failAt(int64_t location, std::string text);
    bool incompleteAt(int64_t location, std::string text) { return failAt(-location, text); }
    void suggest(std::string token, std::string description) {
        parse_.suggestions.push_back({std::move(token), std::move(description)});
    }
    void suggestLetters();
    bool isOneSided() const {
        return query_.operator_ == MetaDataQuery::kLess ||
               query_.operator_ == MetaDataQuery::kGreater;
    }

    // MetaDataParserValues.cpp
    bool scanFilesizeUsingScanner();
    bool scanSymlinkUsingScanner();
    bool scanHardlinkUsingScanner();
    bool scanHardlinkSortOrder(bool hasValue, bool hasOperator);
    bool scanPathUsingScanner();

    // MetaDataParserOwners.cpp
    bool scanUser(Owner owner);
    bool scanOwnerId(Owner owner, int64_t id, int64_t location);
    bool scanOwnerName(Owner owner, std::u16string_view name, int64_t location);
    bool ownerMissing(Owner owner, bool hasOperator, int64_t start);

    // MetaDataParserDates.cpp
    bool scanTimestampUsingScanner();
    bool scanDateUsingScanner();
    bool scanDateComponent(const DateComponent& component);
    bool scanTimestampSortOrderOrEndLoc();

    // MetaDataParserOtherDates.cpp
    bool scanOtherDateUsingScanner();
    bool scanAge(int64_t value);
    bool scanWeeks(int64_t value);
    bool scanYearQuarter(int64_t value, int64_t start);
    bool scanDigitDate(std::u16string_view digits, int64_t start);
    bool scanIncompleteDate(std::u16string_view digits, int64_t start);
    /// The text and, up to its first colon, what of the term it is about.
    static std::string about(const char* text, std::u16string_view part);

    MetaDataScanner scanner_;
    const int firstWeekday_;
    MetaDataQuery query_;
    MetaDataParse parse_;
};
