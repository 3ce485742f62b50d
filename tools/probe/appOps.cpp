#include <algorithm>

#include "Ops.h"
#include "Session.h"
#include "Stored.h"
#include "Surrogates.h"
#include "shell/registry/KeyboardShortcuts.h"
#include "util/log.h"
#include "util/settings/OVUserDefaults.h"

/// The application as its user drives it.
namespace ops {

namespace {

KeyEvent keyEventFrom(const Fields& request) {
    using Kind = KeyEvent::Kind;
    return {.keyCode = request.integer<uint64_t>("keyCode"),
            .modifierFlags = request.integer<uint64_t>("flags", 0),
            .characters = request.find("characters") ? request.text("characters") : u"",
            .isRepeat = request.boolean("repeat", false),
            .kind = request.boolean("modifier", false) ? Kind::flagsChanged
                    : request.boolean("up", false)     ? Kind::up
                                                       : Kind::down};
}

std::vector<double> numbers(const Fields& request, std::string_view name, size_t count) {
    std::vector<double> values;
    for (const json& value : request.list(name)) {
        if (!value.is_number()) request.illTyped(name, "a list of numbers");
        values.push_back(value.get<double>());
    }
    if (values.size() != count)
        request.illTyped(name, "a list of " + std::to_string(count) + " numbers");
    return values;
}

}  // namespace

json appStart(const Fields& request, Session& session) {
    AppSession::Start start{.home = request.absolutePath("home"),
                            .settings = json::object(),
                            .screen = {},
                            .modifiers = request.integer<uint64_t>("modifiers", 0),
                            .layout = request.word("layout", "qwerty") == "qwerty"
                                          ? KeyLayout::qwerty
                                          : KeyLayout::other,
                            .followsDisk = request.word("events", "disk") == "disk"};
    if (const json* settings = request.find("settings")) {
        if (!settings->is_object()) request.illTyped("settings", "an object");
        start.settings = storedFromCarried(*settings);
    }
    if (request.find("screen")) {
        const auto size = numbers(request, "screen", 2);
        start.screen.emplace(size[0], size[1]);
    }
    session.cache.reset();  // there is one World at a time
    session.app.reset();
    session.app = std::make_unique<AppSession>(start);
    return {};
}

json appQuit(const Fields&, Session& session) {
    session.appSession();
    session.app.reset();
    return {};
}

json appSettle(const Fields& request, Session& session) {
    const json* seconds = request.find("seconds");
    if (seconds && !seconds->is_number()) request.illTyped("seconds", "a number");
    return {{"settled", session.appSession().settle(seconds ? seconds->get<double>() : 10)}};
}

json appClock(const Fields& request, Session& session) {
    const json* seconds = request.find("advance");
    if (!seconds || !seconds->is_number()) request.illTyped("advance", "a number");
    session.appSession().advance(seconds->get<double>());
    return {};
}

json appKey(const Fields& request, Session& session) {
    return {{"consumed", session.appSession().screen().send(keyEventFrom(request))}};
}

json appType(const Fields& request, Session& session) {
    session.appSession().screen().field.type(request.text("text"));
    return {};
}

json appCursor(const Fields& request, Session& session) {
    const auto range = numbers(request, "range", 2);
    if (range[0] < 0 || range[1] < 0) request.illTyped("range", "two whole numbers");
    session.appSession().screen().field.setSelection(
        {static_cast<size_t>(range[0]), static_cast<size_t>(range[1])});
    return {};
}

json appHotkey(const Fields&, Session& session) {
    session.appSession().desktop().pressHotKey();
    return {};
}

json appToggle(const Fields&, Session& session) {
    session.appSession().app().window().toggleMainWindow();
    return {};
}

json appClick(const Fields& request, Session& session) {
    SimulatedScreen& screen = session.appSession().screen();
    if (request.find("button")) {
        const auto* const name =
            std::find(kIndicatorNames.begin(), kIndicatorNames.end(), request.word("button"));
        if (name == kIndicatorNames.end()) request.illTyped("button", "a button's name");
        const auto place = static_cast<size_t>(name - kIndicatorNames.begin());
        return {{"clicked", screen.indicators.click(static_cast<IndicatorButton>(place))}};
    }
    std::vector<size_t> rows;
    if (request.find("rows")) {
        for (const json& row : request.list("rows")) {
            if (!row.is_number_unsigned()) request.illTyped("rows", "a list of rows");
            rows.push_back(row.get<size_t>());
        }
    } else {
        rows.push_back(request.integer<size_t>("row"));
    }
    screen.table.click(std::move(rows));
    return {};
}

json appEdit(const Fields& request, Session& session) {
    SimulatedTable& table = session.appSession().screen().table;
    if (!table.edit()) throw OpError("no row is being edited");
    if (request.find("text")) table.typeIntoEdit(request.text("text"));
    if (request.boolean("commit", false)) table.sendToEdit(RowEditCommand::insertNewline);
    if (request.boolean("cancel", false)) table.sendToEdit(RowEditCommand::cancelOperation);
    return {};
}

json appAnswer(const Fields& request, Session& session) {
    SimulatedAlerts& alerts = session.appSession().screen().alerts;
    for (const json& title : request.list("buttons")) {
        if (!title.is_string()) request.illTyped("buttons", "a list of titles");
        alerts.answers.push_back(title.get<std::string>());
    }
    alerts.suppresses = request.boolean("suppress", false);
    return {};
}

json appSetting(const Fields& request, Session& session) {
    session.appSession();
    auto& settings = OVUserDefaults::sharedInstance();
    const std::string key = request.word("key");
    // null is a value of its own here only as "remove".
    if (request.boolean("remove", false))
        settings.removeObjectForKey(key);
    else if (const json* value = request.find("value"))
        settings.setObject(storedFromCarried(*value), key);
    return {{"value", carriedFromStored(settings.objectForKey(key))}};
}

json appShortcut(const Fields& request, Session& session) {
    session.appSession();
    const auto definition = KeyboardShortcuts::sharedInstance().keyboardShortcutDefinitionFor(
        request.word("identifier"));
    if (!definition) throw OpError("there is no command of this identifier");
    return {{"consumed", definition->performBlock()}};
}

json appMove(const Fields& request, Session& session) {
    const auto frame = numbers(request, "frame", 4);
    session.appSession().screen().window.move({frame[0], frame[1], frame[2], frame[3]});
    return {};
}

json appScreen(const Fields& request, Session& session) {
    const auto size = numbers(request, "size", 2);
    session.appSession().desktop().changeScreen(size[0], size[1]);
    return {};
}

}  // namespace ops
