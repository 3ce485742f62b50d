#include "Ops.h"
#include "Session.h"

/// The context menu of a row, and the menu of the status item.
namespace ops {

namespace {

json itemsOf(const std::vector<MenuItem>& items) {
    json all = json::array();
    for (const MenuItem& item : items) {
        if (item.title.empty()) {
            all.push_back({{"separator", true}});
            continue;
        }
        json shown = {{"id", item.identifier},
                      {"title", item.title},
                      {"keys", item.keys},
                      {"enabled", item.isEnabled}};
        if (!item.toolTip.empty()) shown["toolTip"] = item.toolTip;
        if (item.isSubmenu) shown["items"] = itemsOf(item.items);
        all.push_back(std::move(shown));
    }
    return all;
}

json statusItemsOf(const SimulatedDesktop& desktop) {
    json all = json::array();
    if (!desktop.statusItem()) return all;
    for (const StatusItemContent::Entry& entry : desktop.statusItem()->menu)
        all.push_back({{"title", entry.title}, {"keys", entry.keys}});
    return all;
}

}  // namespace

/// "row" clicks a row with the right button, "choose" picks an item (of "submenu"), "close" is
/// Escape. Answers with what is shown then.
json appMenu(const Fields& request, Session& session) {
    AppSession& app = session.appSession();
    SimulatedMenu& menu = app.screen().menu;
    if (request.find("row")) app.screen().table.rightClick(request.integer<size_t>("row"));
    if (request.boolean("close", false)) menu.close();
    if (request.find("choose") && !menu.choose(request.word("submenu", ""), request.word("choose")))
        throw OpError("there is no such item that is enabled");
    json result = {{"open", menu.isOpen()}, {"statusItem", statusItemsOf(app.desktop())}};
    if (menu.isOpen()) result["items"] = itemsOf(menu.items);
    return result;
}

}  // namespace ops
