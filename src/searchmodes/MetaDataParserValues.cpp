#include <limits>

#include "searchmodes/MetaDataParser.h"

using enum MetaDataQuery::Criterion;
using enum MetaDataQuery::Operator;

namespace {

/// 2 to the power of the unit's exponent times as much, or the largest number.
int64_t scaled(int64_t value, unsigned exponent) {
    constexpr int64_t kMax = std::numeric_limits<int64_t>::max();
    return value > kMax >> exponent ? kMax : value << exponent;
}

}  // namespace

bool MetaDataParser::scanFilesizeUsingScanner() {
    query_.criterion = kSize;
    switch (scanSortOrder()) {
        case Sort::sorted:
            query_.operator_ = kAtLeast;
            return true;
        case Sort::noColon:
        case Sort::atEnd:
            break;
        default:
            return false;
    }
    const int64_t start = scanner_.location();
    const bool hasOperator = parseOperator();
    const auto number = scanner_.scanInteger();
    if (!number) {
        if (!scanner_.isAtEnd()) {
            suggest("[0..9]", "Size");
            return failAt(scanner_.location(), "Invalid size.");
        }
        if (hasOperator) {
            if (isOneSided()) suggest("=", "Operator");
            suggest("[0..9]", "Size");
        } else {
            suggest("[<>=]", "Operator");
            suggest("[0..9]", "Size value");
            suggest(":", "Sort by size");
        }
        return incompleteAt(start - 1, "Missing size.");
    }
    const unsigned exponent = scanner_.scan(u"k")   ? 10
                              : scanner_.scan(u"M") ? 20
                              : scanner_.scan(u"G") ? 30
                                                    : 0;
    query_.integerValue1 = scaled(*number, exponent);
    switch (scanSortOrder()) {
        case Sort::sorted:
            return true;
        case Sort::atEnd:
            if (exponent == 0) {
                suggest("k", "kiB");
                suggest("M", "MiB");
                suggest("G", "GiB");
            }
            if (query_.operator_ != kEqual) suggest(":", "Sort by size");
            return true;
        case Sort::noColon:
            return failAt(scanner_.location(), "Invalid unit provided for size.");
        default:
            return false;
    }
}

bool MetaDataParser::scanSymlinkUsingScanner() {
    query_.criterion = kSymlink;
    query_.operator_ = kEqual;
    return scanner_.isAtEnd() || failAt(scanner_.location(), "Superfluous trailing text.");
}

bool MetaDataParser::scanHardlinkUsingScanner() {
    query_.criterion = kLinkCount;
    const bool hasOperator = parseOperator();
    const auto number = scanner_.scanInteger();
    query_.integerValue1 = number.value_or(0);
    if (number || !hasOperator) return scanHardlinkSortOrder(number.has_value(), hasOperator);
    const bool isMissing = scanner_.isAtEnd();
    if (isMissing && isOneSided()) suggest("=", "Operator");
    suggest("[0..9]", "Value");
    return isMissing ? incompleteAt(scanner_.location() - 1, "Missing value.")
                     : failAt(scanner_.location(), "Invalid value.");
}

bool MetaDataParser::scanHardlinkSortOrder(bool hasValue, bool hasOperator) {
    const Sort sort = scanSortOrder(hasValue ? FailOnEqualValues::yes : FailOnEqualValues::no);
    switch (sort) {
        case Sort::sorted:
            if (!hasValue) query_.operator_ = kAtLeast;
            return true;
        case Sort::noColon:
        case Sort::atEnd:
            break;
        default:
            return false;
    }
    if (sort == Sort::atEnd && hasValue) {
        suggest("[0..9]", "Value");
        if (query_.operator_ != kEqual) suggest(":", "Sort order");
        return true;
    }
    if (!hasValue && !hasOperator) {
        suggest("[<>=]", "Operator");
        suggest("[0..9]", "Value");
    }
    return sort == Sort::atEnd ? incompleteAt(scanner_.location() - 1, "Query incomplete.")
                               : failAt(scanner_.location(), "Invalid query.");
}

bool MetaDataParser::scanPathUsingScanner() {
    const int64_t start = scanner_.location();
    query_.operator_ = kEqual;
    if (scanner_.scan(u"l")) query_.criterion = kPathName;
    if (query_.criterion == 0 && scanner_.scan(u"a")) query_.criterion = kPathAbsolute;
    if (query_.criterion == 0 && scanner_.scan(u"x")) query_.criterion = kPathExtension;
    if (query_.criterion == 0) {
        suggest("l", "Last path component");
        suggest("a", "Absolute path");
        suggest("x", "Filename extension");
        if (!scanner_.isAtEnd()) return failAt(scanner_.location(), "Invalid path specifier.");
        return incompleteAt(query_.isNegative ? 2 : 1, "Missing path specifier.");
    }
    switch (scanSortOrder()) {
        case Sort::sorted:
            return true;
        case Sort::atEnd:
            suggest(":", "Sort by path");
            return incompleteAt(
                start - 1,
                "Missing sort instruction; This query may only be used for specifying sort order.");
        case Sort::noColon:
            return failAt(scanner_.location(), "Superfluous trailing text.");
        case Sort::directionMissing:
            parse_.errorLocation = -scanner_.location();  // behind the colon, which is right
            return false;
        default:
            return false;
    }
}
