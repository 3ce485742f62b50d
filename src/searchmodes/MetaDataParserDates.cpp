#include "searchmodes/MetaDataCalendar.h"
#include "searchmodes/MetaDataParser.h"

using enum MetaDataQuery::Criterion;
using enum MetaDataQuery::ValueType;

bool MetaDataParser::scanTimestampUsingScanner() {
    struct Letter {
        std::u16string_view text;
        uint64_t criterion;
    };
    constexpr Letter kLetters[] = {{u"b", kBirthTime},
                                   {u"c", kAttributesModified},
                                   {u"m", kContentModified},
                                   {u"a", kAccessed},
                                   {u"*", kAnyTime}};
    for (const Letter& letter : kLetters) {
        if (!scanner_.scan(letter.text)) continue;
        query_.criterion = letter.criterion;
        return scanDateUsingScanner();
    }
    suggest("b", "Birth");
    suggest("c", "Attributes modified");
    suggest("m", "Content modified");
    suggest("a", "Accessed");
    suggest("*", "Any");
    if (scanner_.isAtEnd())
        return incompleteAt(scanner_.location() - 1, "Missing timestamp specifier.");
    return failAt(scanner_.location(), "Invalid timestamp specifier.");
}

bool MetaDataParser::scanDateUsingScanner() {
    switch (scanSortOrder()) {
        case Sort::sorted:
            return true;
        case Sort::noColon:
            break;
        case Sort::atEnd:
            suggest("[1..9]", "Date or age");
            suggest("[<>=]", "Operator");
            suggest("M", "Month");
            suggest("d", "Day");
            suggest("Q", "Quarter");
            suggest("w", "Week of year");
            suggest("e", "Day of Week");
            suggest(":", "Sort by date");
            return incompleteAt(1, "Incomplete date query.");
        default:
            return false;
    }
    constexpr DateComponent kComponents[] = {
        {u"y", "year", "[0..9]", 1900, 9999, kYear},
        {u"M", "month", "[0..9]", 1, 12, kMonthOfYear},
        {u"d", "day of month", "[0..9]", 1, 31, kDayOfMonth},
        {u"Q", "quarter", "[1..4]", 1, 4, kQuarter},
        {u"w", "week of year", "[0..9]", 1, 53, kWeek},
        {u"e", "day of week", "[1..7]", 1, 7, kDayOfWeek},
    };
    for (const DateComponent& component : kComponents)
        if (scanner_.scan(component.letter)) return scanDateComponent(component);
    return scanOtherDateUsingScanner() && scanTimestampSortOrderOrEndLoc();
}

bool MetaDataParser::scanDateComponent(const DateComponent& component) {
    const bool hasOperator = parseOperator();
    const int64_t location = scanner_.location();
    const auto value = scanner_.scanInteger();
    if (!value && scanner_.isAtEnd()) {
        if (!hasOperator) suggest("<>=", "Operator");
        suggest(component.rangeToken, component.name);
        const bool tellsRange = component.valueType == kDayOfWeek && !hasOperator;
        return incompleteAt(location, tellsRange ? "Missing day of week [1..7]"
                                                 : std::string("Missing ") + component.name + ".");
    }
    if (!value || *value < component.first || *value > component.last)
        return failAt(location, std::string("Invalid ") + component.name + ".");
    query_.valueType = component.valueType;
    if (component.valueType == kYear) {
        query_.fromEpoch = static_cast<uint64_t>(metaDataCalendar::epochOfBeginYear(*value, 1, 1));
        query_.toEpoch = static_cast<uint64_t>(metaDataCalendar::epochOfEndYear(*value, 12, 31));
    } else if (component.valueType == kDayOfWeek) {
        const int64_t day = (firstWeekday_ + *value - 2) % 7;
        query_.integerValue1 = day == 0 ? 7 : day;
    } else {
        query_.integerValue1 = *value;
    }
    if (scanner_.isAtEnd()) suggest(":", "Sort order");
    return scanTimestampSortOrderOrEndLoc();
}

bool MetaDataParser::scanTimestampSortOrderOrEndLoc() {
    switch (scanSortOrder()) {
        case Sort::sorted:
        case Sort::atEnd:
            return true;
        case Sort::noColon:
            return failAt(scanner_.location(), "Superfluous trailing text.");
        default:
            return false;
    }
}
