#include <algorithm>
#include <array>

#include "Dump.h"
#include "Ops.h"
#include "Session.h"
#include "Surrogates.h"
#include "core/state/GlobalState.h"
#include "shell/HelpContent.h"
#include "util/Unicode.h"
#include "util/log.h"

/// What the application shows, and what it asked of the desktop.
namespace ops {

namespace {

constexpr uint64_t kDefaultRows = 20;
constexpr std::array kModeNames = {"Search",   "Browser", "Recent Items",  "Marked Items",
                                   "Projects", "Actions", "Data Provider", "History"};

json modeName(const TRVMode* mode) {
    if (!mode) return nullptr;
    return kModeNames[static_cast<size_t>(__builtin_ctzll(mode->identifier()))];
}

json editOf(const std::optional<RowEdit>& edit) {
    if (!edit) return nullptr;
    return {{"text", carriedFromUnits(edit->text)},
            {"selection", {edit->selection.location, edit->selection.length}}};
}

json rowsOf(AppSession& session, TRVMode* mode, uint64_t count) {
    json rows = json::array();
    const SimulatedTable& table = session.screen().table;
    auto* files = dynamic_cast<TRVModeRepresentingFiles*>(mode);
    for (size_t i = 0; i < std::min<uint64_t>(count, table.numberOfRows()); i++) {
        const RowContent row = table.row(i);
        const auto url = files ? files->urlOfFilteredItemAtIndex(i) : std::nullopt;
        json attributes = json::array();
        for (const RowLine& line : row.attributes) attributes.push_back(line.text);
        rows.push_back({{"text", row.name},
                        {"detail", row.path},
                        {"path", url ? json(carriedFromPath(url->path())) : json()},
                        {"marked", row.isMarked},
                        {"attributes", std::move(attributes)}});
    }
    return rows;
}

json indicatorsOf(const SimulatedIndicators& indicators) {
    json all = json::object();
    for (size_t i = 0; i < kIndicatorButtons; i++)
        all[kIndicatorNames[i]] = {{"shown", indicators.buttons[i].isShown},
                                   {"on", indicators.buttons[i].isOn},
                                   {"tooltip", indicators.buttons[i].toolTip}};
    return all;
}

json stylesOf(const SimulatedField& field) {
    constexpr std::array kStyles = {"plain", "regexp", "error", "incomplete"};
    json styles = json::array();
    for (const StyledRange& each : field.styles)
        styles.push_back({{"range", {each.range.location, each.range.length}},
                          {"style", kStyles[static_cast<size_t>(each.style)]}});
    return styles;
}

SimulatedDesktop::App appFrom(const Fields& fields) {
    const auto words = [&](const char* name) {
        std::vector<std::string> list;
        if (fields.find(name))
            for (const json& word : fields.list(name)) list.push_back(word.get<std::string>());
        return list;
    };
    return {.id = fields.word("id"),
            .path = fields.word("path", ""),
            .name = fields.word("name", ""),
            .types = words("types"),
            .extensions = words("extensions"),
            .owner = fields.boolean("owner", false),
            .pid = fields.integer<int64_t>("pid", 0)};
}

void setDesktop(const Fields& set, SimulatedDesktop& desktop) {
    if (set.find("frontmost")) desktop.setFrontmost(appFrom(set.object("frontmost")));
    const auto apps = [&](const char* name, std::vector<SimulatedDesktop::App>& list) {
        if (!set.find(name)) return;
        list.clear();
        for (const Fields& app : set.objects(name)) list.push_back(appFrom(app));
    };
    apps("applications", desktop.applications);
    apps("running", desktop.running);
    desktop.updateSession = set.boolean("updateSession", desktop.updateSession);
    if (set.find("dark")) desktop.setDark(set.boolean("dark", false));
    if (set.find("diskAccessError")) desktop.diskAccessError = set.integer<int>("diskAccessError");
    if (set.find("takenHotKey")) {
        const Fields key = set.object("takenHotKey");
        desktop.takenHotKey =
            HotKey{key.integer<uint64_t>("keyCode"), key.integer<uint64_t>("modifierFlags")};
    }
}

}  // namespace

json appState(const Fields& request, Session& session) {
    AppSession& app = session.appSession();
    SimulatedScreen& screen = app.screen();
    TRVMode* mode = GlobalState::sharedInstance().currentMode();
    const auto project = app.app().searchMode().currentProject();
    const Rect& frame = screen.window.place;
    const TextRange selection = screen.field.selected;
    const Point clip = screen.table.clipOrigin();
    return {
        {"mode", mode ? json(static_cast<uint64_t>(mode->identifier())) : json()},
        {"modeName", modeName(mode)},
        {"text", carriedFromUnits(screen.field.content)},
        {"styles", stylesOf(screen.field)},
        {"selection", {selection.location, selection.length}},
        {"placeholder", screen.field.placeholder},
        {"info", screen.infoBar.text},
        {"tooltip", screen.infoBar.toolTip},
        {"message", screen.infoBar.marquee ? json(plainText(*screen.infoBar.marquee)) : json()},
        {"visible", screen.window.visible},
        {"active", app.desktop().isActive()},
        {"terminated", app.desktop().isTerminated()},
        {"frame", {frame.x, frame.y, frame.width, frame.height}},
        {"maxRows", GlobalState::sharedInstance().maxNumberOfRows()},
        {"rowCount", screen.table.numberOfRows()},
        {"rowHeight", screen.table.rowHeight()},
        {"scroller", screen.table.hasScroller()},
        {"selected", screen.table.selectedRows()},
        {"clip", {clip.x, clip.y}},
        {"edit", editOf(screen.table.edit())},
        {"rows", rowsOf(app, mode, request.integer<uint64_t>("rows", kDefaultRows))},
        {"indicators", indicatorsOf(screen.indicators)},
        {"project", project ? json(carriedFromPath(textToPath(project->uuid))) : json()},
        {"error", screen.infoBar.errorLook},
        {"freshness", screen.infoBar.freshness},
        {"freshnessTooltip", screen.infoBar.freshnessToolTip},
        {"quickStart", screen.quickStart.visible},
        {"quitProgress", screen.quitProgress.visible ? json(screen.quitProgress.progress) : json()},
        {"statusItem", app.desktop().statusItem().has_value()},
        {"gate", screen.diskAccess.buttons.has_value()},
    };
}

json appRowsChanged(const Fields&, Session& session) {
    json changes = json::array();
    for (const auto& change : session.appSession().screen().table.takeChanges())
        changes.push_back(change.all ? json("all") : json(change.rows));
    return {{"changes", std::move(changes)}};
}

json appDump(const Fields& request, Session& session) {
    const auto cache = session.appSession().app().searchMode().sharedCurrentCache();
    if (!cache) throw OpError("there is no index");
    return dumpOf(*cache, request);
}

json appAlerts(const Fields&, Session& session) {
    json alerts = json::array();
    for (const auto& shown : std::exchange(session.appSession().screen().alerts.shown, {}))
        alerts.push_back({{"title", shown.alert.title},
                          {"text", shown.alert.text},
                          {"buttons", shown.alert.buttons},
                          {"answered", shown.answered}});
    return {{"alerts", std::move(alerts)}};
}

json appHelp(const Fields&, Session& session) {
    const SimulatedHelp& help = session.appSession().screen().help;
    if (!help.kind) return {{"shown", nullptr}};
    json groups = json::array();
    for (const HelpGroup& group : help.content.groups) {
        json lines = json::array();
        for (const HelpLine& line : group.lines) {
            json keys = json::array();
            for (const KeyCaps& caps : line.keys) keys.push_back(helpContent::joined(caps));
            lines.push_back({{"name", line.name}, {"keys", std::move(keys)}});
        }
        groups.push_back({{"title", group.title}, {"lines", std::move(lines)}});
    }
    return {{"shown", help.kind == HelpView::Kind::sheet ? "sheet" : "passing"},
            {"title", help.content.title},
            {"filter", help.filter},
            {"groups", std::move(groups)}};
}

json appDesktop(const Fields& request, Session& session) {
    SimulatedDesktop& desktop = session.appSession().desktop();
    if (request.find("set")) setDesktop(request.object("set"), desktop);
    json requests = json::array();
    for (json& each : desktop.takeRequests()) {
        if (each.contains("paths"))
            for (json& path : each["paths"])
                path = carriedFromPath(textToPath(path.get<std::string>()));
        requests.push_back(std::move(each));
    }
    return {{"requests", std::move(requests)}};
}

json appLog(const Fields& request, Session& session) {
    constexpr unsigned kAll = 31;
    return {{"lines", session.appSession().takeLog(request.integer<unsigned>("level", kAll))}};
}

}  // namespace ops
