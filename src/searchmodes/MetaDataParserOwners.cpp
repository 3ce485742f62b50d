#include <algorithm>

#include "searchmodes/MetaDataOwners.h"
#include "searchmodes/MetaDataParser.h"
#include "util/Unicode.h"

using enum MetaDataQuery::Criterion;
using enum MetaDataQuery::Operator;

bool MetaDataParser::scanUser(Owner owner) {
    query_.criterion = owner == Owner::user ? kUser : kGroup;
    const int64_t start = scanner_.location();
    switch (scanSortOrder()) {
        case Sort::sorted:
            return true;
        case Sort::noColon:
        case Sort::atEnd:
            break;
        default:
            return false;
    }
    const bool hasOperator = parseOperator();
    const int64_t location = scanner_.location();
    const auto text = scanner_.scanUpToColon();
    if (text.empty()) {
        if (scanner_.isAtEnd()) return ownerMissing(owner, hasOperator, start);
        return failAt(location, owner == Owner::user ? "Invalid user." : "Invalid group.");
    }
    const bool isNumber = std::all_of(text.begin(), text.end(), MetaDataScanner::isDigit);
    const bool isKnown = isNumber ? scanOwnerId(owner, MetaDataScanner::numberOf(text), location)
                                  : scanOwnerName(owner, text, location);
    if (!isKnown) return false;
    const Sort sort = scanSortOrder(isNumber ? FailOnEqualValues::no : FailOnEqualValues::yes);
    return sort == Sort::sorted || sort == Sort::atEnd;
}

bool MetaDataParser::scanOwnerId(Owner owner, int64_t id, int64_t location) {
    const char* name = owner == Owner::user ? "uid" : "gid";
    if (query_.operator_ == kEqual) {
        const bool fits = id <= UINT32_MAX;
        const auto number = static_cast<uint32_t>(id);
        const bool exists = fits && (owner == Owner::user ? metaDataOwners::hasUser(number)
                                                          : metaDataOwners::hasGroup(number));
        if (!exists) {
            suggest("[0..9]", name);
            return failAt(location, std::string("No such ") + name + ".");
        }
    }
    query_.integerValue1 = id;
    if (scanner_.isAtEnd()) {
        suggest("[0..9]", name);
        if (query_.operator_ != kEqual) suggest(":", "Sort order");
    }
    return true;
}

bool MetaDataParser::scanOwnerName(Owner owner, std::u16string_view name, int64_t location) {
    const bool isUser = owner == Owner::user;
    if (query_.operator_ != kEqual)
        return failAt(location, std::string("Operator works only with ") +
                                    (isUser ? "uid" : "gid") + ", not with name.");
    const auto id =
        isUser ? metaDataOwners::uidOfUser(toUtf8(name)) : metaDataOwners::gidOfGroup(toUtf8(name));
    if (!id) return failAt(location, isUser ? "Unknown user." : "Unknown group.");
    query_.integerValue1 = *id;
    return true;
}

bool MetaDataParser::ownerMissing(Owner owner, bool hasOperator, int64_t start) {
    const bool isUser = owner == Owner::user, takesName = query_.operator_ == kEqual;
    const char* id = isUser ? "uid" : "gid";
    if (!hasOperator)
        suggest("<>=", "Operator");
    else if (isOneSided())
        suggest("=", "Operator");
    suggest("[0..9]", id);
    if (takesName) suggest(isUser ? "User name" : "Group name", "");
    suggest(":", "Sort order");
    const std::string missing = takesName ? (isUser ? "user" : "group") : id;
    return incompleteAt(hasOperator ? start : (query_.isNegative ? 2 : 1),
                        "Missing " + missing + ".");
}
