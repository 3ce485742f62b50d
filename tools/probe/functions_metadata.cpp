#include "Ops.h"
#include "PathItems.h"
#include "Surrogates.h"
#include "searchmodes/MetaDataCalendar.h"
#include "searchmodes/MetaDataSearch.h"
#include "searchmodes/RankedItem.h"
#include "util/Unicode.h"

/// Metadata terms: what they are parsed to, which items they choose, how they order them.
namespace ops {

namespace {

json jsonFrom(const std::string& text) {
    return carriedFromUnits(toUtf16Lenient(text));
}

json jsonFrom(const MetaDataQuery& query) {
    return {{"isNegative", query.isNegative},
            {"criterion", query.criterion},
            {"operator", query.operator_},
            {"valueType", query.valueType},
            {"sortOrderType", query.sortOrderType},
            {"stringValue", carriedFromUnits(query.stringValue)},
            {"integerValue1", query.integerValue1},
            {"integerValue2", query.integerValue2},
            {"integerValue3", query.integerValue3},
            {"fromEpoch", query.fromEpoch},
            {"toEpoch", query.toEpoch}};
}

fs_item_metadata metadataFrom(const Fields& fields) {
    return {.mtime = fields.integer<int64_t>("mtime", 0),
            .ctime = fields.integer<int64_t>("ctime", 0),
            .btime = fields.integer<int64_t>("btime", 0),
            .atime = fields.integer<int64_t>("atime", 0),
            .uid = fields.integer<uint32_t>("uid", 0),
            .gid = fields.integer<uint32_t>("gid", 0),
            .mode = fields.integer<uint16_t>("mode", 0),
            .size = fields.integer<uint64_t>("size", 0),
            .nlink = fields.integer<int64_t>("nlink", 0),
            .attributes = nullptr};
}

/// One side of metadata.compare: an item of its own, also where both have the same path.
struct Side {
    fs_item_t item;
    fs_item_metadata metadata;
};

RankedItem rankedFrom(const Fields& fields, PathItems& items, Side& side) {
    side.item = *items.item(fields, "path");
    if (fields.find("metadata")) {
        side.metadata = metadataFrom(fields.object("metadata"));
        side.item.metadata = &side.metadata;
    }
    uint64_t criterions = 0;
    if (fields.find("criterions"))
        for (const json& criterion : fields.list("criterions")) {
            if (!criterion.is_number_unsigned() || criterion.get<uint64_t>() > UINT16_MAX)
                fields.illTyped("criterions", "a list of criteria");
            criterions |= criterion.get<uint64_t>();
        }
    return {.item = &side.item,
            .score = 0,
            .depth = 0,
            .criterions = static_cast<uint16_t>(criterions)};
}

}  // namespace

json metadataParse(const Fields& request, Session&) {
    const MetaDataParse parse =
        MetaDataSearch::parseWord(request.text("term"), metaDataCalendar::currentFirstWeekday());
    json query, message, location, suggestions = json::array();
    if (parse.query) query = jsonFrom(*parse.query);
    if (parse.errorString) message = jsonFrom(*parse.errorString);
    if (parse.errorLocation) location = *parse.errorLocation;
    for (const MetaDataSuggestion& suggestion : parse.suggestions)
        suggestions.push_back({suggestion.token, suggestion.description});
    return {{"query", std::move(query)},
            {"message", std::move(message)},
            {"location", std::move(location)},
            {"suggestions", std::move(suggestions)}};
}

json metadataMatch(const Fields& request, Session&) {
    const int firstWeekday = request.integer<uint8_t>("firstWeekday", 1);
    if (firstWeekday < 1 || firstWeekday > 7) request.illTyped("firstWeekday", "from 1 to 7");
    MetaDataSearch search(request.text("search"),
                          {.now = request.integer<int64_t>("now"), .firstWeekday = firstWeekday});
    IndexSet criterions;
    bool match = false;
    if (request.find("metadata")) {
        const fs_item_metadata metadata = metadataFrom(request.object("metadata"));
        match = search.match(&metadata, criterions);
    } else {
        match = search.match(nullptr, criterions);
    }
    return {{"match", match}, {"criterions", criterions.items()}};
}

json metadataSort(const Fields& request, Session&) {
    const MetaDataSearch search(request.text("search"), MetaDataContext::at(0));
    json order;
    for (const MetaDataSortKey& key : search.sortOrderDescription())
        order.push_back({key.criterion, key.valueType, key.sortOrderType});
    return {{"order", std::move(order)}};
}

json metadataCompare(const Fields& request, Session&) {
    const MetaDataSearch search(request.text("search"), MetaDataContext::at(0));
    PathItems items;
    Side sideA{}, sideB{};
    const RankedItem a = rankedFrom(request.object("a"), items, sideA);
    const RankedItem b = rankedFrom(request.object("b"), items, sideB);
    return {{"result", search.compare(a, b)}};
}

}  // namespace ops
