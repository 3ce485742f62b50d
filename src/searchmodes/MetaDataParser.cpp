#include "searchmodes/MetaDataParser.h"

using enum MetaDataQuery::Operator;
using enum MetaDataQuery::SortOrderType;

MetaDataParse MetaDataParser::parseWord() {
    // Behind a backslash these three are plain text.
    if (!scanner_.scan(u"\\") || scanner_.rest().starts_with(u'\\') ||
        scanner_.rest().starts_with(u'+') || scanner_.rest().starts_with(u'-'))
        return {};
    if (scanner_.isAtEnd()) {
        suggest("[\\+-]", "Fuzzy search");
        suggest("!", "negate query");
        suggestLetters();
        parse_.suggestions[5].description = "Item Link Count";
        incompleteAt(0, "Incomplete query.");
        return std::move(parse_);
    }
    query_.isNegative = scanner_.scan(u"!");
    if (dispatch()) parse_.query = std::move(query_);
    return std::move(parse_);
}

bool MetaDataParser::dispatch() {
    if (scanner_.scan(u"t")) return scanTimestampUsingScanner();
    if (scanner_.scan(u"s")) return scanFilesizeUsingScanner();
    if (scanner_.scan(u"l")) return scanSymlinkUsingScanner();
    if (scanner_.scan(u"h")) return scanHardlinkUsingScanner();
    if (scanner_.scan(u"u")) return scanUser(Owner::user);
    if (scanner_.scan(u"g")) return scanUser(Owner::group);
    if (scanner_.scan(u"p")) return scanPathUsingScanner();
    if (!query_.isNegative) suggest("!", "negate query");
    suggestLetters();
    if (scanner_.isAtEnd()) return incompleteAt(1, "Incomplete query.");
    return failAt(query_.isNegative ? 2 : 1, "Invalid query.");
}

void MetaDataParser::suggestLetters() {
    suggest("t", "Timestamp");
    suggest("s", "Size");
    suggest("l", "Symlink");
    suggest("h", "Link Count");
    suggest("u", "User");
    suggest("g", "Group");
    suggest("p", "Path");
}

bool MetaDataParser::failAt(int64_t location, std::string text) {
    parse_.errorString = std::move(text);
    parse_.errorLocation = location;
    return false;
}

bool MetaDataParser::parseOperator() {
    struct Sign {
        std::u16string_view text;
        MetaDataQuery::Operator meaning;
    };
    constexpr Sign kSigns[] = {
        {u"<=", kAtMost}, {u">=", kAtLeast}, {u"=", kEqual}, {u"<", kLess}, {u">", kGreater}};
    for (const Sign& sign : kSigns) {
        if (!scanner_.scan(sign.text)) continue;
        query_.operator_ = sign.meaning;
        return true;
    }
    query_.operator_ = kEqual;
    return false;
}

MetaDataParser::Sort MetaDataParser::scanSortOrder(FailOnEqualValues failOnEqualValues) {
    query_.sortOrderType = kUnsorted;
    if (scanner_.isAtEnd()) return Sort::atEnd;
    const int64_t colon = scanner_.location();
    if (!scanner_.scan(u":")) return Sort::noColon;
    const bool isAscending = scanner_.scan(u"a");
    if (!isAscending && !scanner_.scan(u"d")) {
        parse_.suggestions.clear();
        suggest("a", "ascending");
        suggest("d", "descending");
        if (scanner_.isAtEnd()) {
            incompleteAt(colon, "Missing sort direction.");
            return Sort::directionMissing;
        }
        failAt(scanner_.location(), "Invalid sort direction.");
        return Sort::directionWrong;
    }
    if (!scanner_.isAtEnd()) {
        failAt(scanner_.location(), "Superfluous trailing text.");
        return Sort::textBehind;
    }
    if (failOnEqualValues == FailOnEqualValues::yes && query_.operator_ == kEqual) {
        failAt(colon, "Attempt to sort equal values.");
        return Sort::equalValues;
    }
    query_.sortOrderType = isAscending ? kAscending : kDescending;
    return Sort::sorted;
}
