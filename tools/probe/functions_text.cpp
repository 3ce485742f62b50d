#include <variant>

#include "Ops.h"
#include "Surrogates.h"
#include "fileops/nextName.h"
#include "modes/framework/Selection.h"
#include "modes/framework/attributeTexts.h"
#include "util/permissionString.h"

/// Names and texts.
namespace ops {

json nameNext(const Fields& request, Session&) {
    const std::string kind = request.word("kind");
    NameSeries series;
    if (kind == "move")
        series = NameSeries::move;
    else if (kind == "duplicate")
        series = NameSeries::duplicate;
    else if (kind == "alias")
        series = NameSeries::alias;
    else
        request.illTyped("kind", "\"move\", \"duplicate\" or \"alias\"");
    const FileURL next = nextNameForDuplication(request.path("path"), series);
    return {{"path", carriedFromPath(next.path())}};
}

json textSize(const Fields& request, Session&) {
    return {
        {"text", sizeText(request.integer<uint64_t>("size"), request.integer<uint16_t>("mode"))}};
}

json textPermissions(const Fields& request, Session&) {
    return {{"text", permissionString(request.integer<uint16_t>("mode"))}};
}

json textFiletypes(const Fields& request, Session&) {
    return {{"text", fileTypeMaskToString(request.integer<uint8_t>("mask"))}};
}

namespace {

Selection selectionFrom(const Fields& fields) {
    Selection selection;
    if (fields.find("pathSelection")) selection.pathSelection = fields.path("pathSelection");
    if (!fields.find("selectedItems")) return selection;
    for (const json& item : fields.list("selectedItems")) {
        if (item.is_number_unsigned())
            selection.selectedItems.emplace_back(item.get<uint64_t>());
        else if (const auto path = pathFromJson(item))
            selection.selectedItems.emplace_back(*path);
        else
            fields.illTyped("selectedItems", "a list of paths and unsigned numbers");
    }
    return selection;
}

json jsonFrom(const Selection& selection) {
    json items = json::array();
    for (const Selection::Item& item : selection.selectedItems) {
        if (const auto* url = std::get_if<FileURL>(&item))
            items.push_back(carriedFromPath(url->path()));
        else
            items.push_back(std::get<uint64_t>(item));
    }
    json path;
    if (selection.pathSelection) path = carriedFromPath(selection.pathSelection->path());
    return {{"pathSelection", std::move(path)}, {"selectedItems", std::move(items)}};
}

}  // namespace

json selectionRename(const Fields& request, Session&) {
    Selection selection = selectionFrom(request.object("selection"));
    selection.renamePath(request.path("from"), request.path("to"));
    return {{"selection", jsonFrom(selection)}};
}

}  // namespace ops
