#include <algorithm>
#include <array>

#include "Ops.h"
#include "Session.h"

/// The preferences as their user drives them.
namespace ops {

namespace {

constexpr std::array<std::string_view, kPreferencesPanes> kPanes = {"general", "search", "keyboard",
                                                                    "globalRules"};

json formOf(const PreferencesForm& form) {
    json rows = json::array();
    for (const PreferencesSection& section : form)
        for (const PreferencesRow& row : section.rows)
            rows.push_back({{"id", row.id},
                            {"on", row.isOn},
                            {"value", row.value},
                            {"chosen", row.chosen},
                            {"message", row.message}});
    return rows;
}

json rulesOf(const std::vector<PreferencesRuleList>& lists) {
    json all = json::array();
    for (const PreferencesRuleList& list : lists) {
        json rules = json::array();
        for (const PreferencesRule& rule : list.rules)
            rules.push_back({{"pattern", rule.pattern},
                             {"type", rule.patternType},
                             {"for", rule.fileTypesText},
                             {"warning", rule.warning}});
        all.push_back(std::move(rules));
    }
    return all;
}

json shortcutsOf(const std::vector<PreferencesShortcut>& shortcuts) {
    json all = json::array();
    for (const PreferencesShortcut& line : shortcuts)
        all.push_back({{"identifier", line.identifier},
                       {"name", line.name},
                       {"keys", line.keys},
                       {"changed", line.isChanged},
                       {"inMenu", line.isInMenu}});
    return all;
}

KeyEvent keysFrom(const Fields& request) {
    return {.keyCode = request.integer<uint64_t>("keyCode"),
            .modifierFlags = request.integer<uint64_t>("flags", 0)};
}

void editRule(const Fields& request, PreferencesViewDelegate& user) {
    const std::string what = request.word("rule");
    const auto list = request.integer<size_t>("list");
    if (what == "add") return user.ruleAdded(list);
    if (what == "reset") return user.rulesReset(list);
    const auto at = request.integer<size_t>("at");
    if (what == "remove") user.ruleRemoved(list, at);
    if (what == "pattern") user.patternEntered(list, at, request.word("text"));
    if (what == "type") user.patternTypeChosen(list, at, request.integer<size_t>("type"));
    if (what == "for") user.fileTypeClicked(list, at, request.integer<uint8_t>("bit"));
}

void drive(const Fields& request, PreferencesViewDelegate& user) {
    if (request.find("pane")) {
        const auto* const pane = std::find(kPanes.begin(), kPanes.end(), request.word("pane"));
        if (pane == kPanes.end()) request.illTyped("pane", "a pane's name");
        user.paneChosen(static_cast<PreferencesPane>(pane - kPanes.begin()));
    }
    if (request.find("toggle")) user.toggled(request.word("toggle"), request.boolean("on", true));
    if (request.find("number")) user.numberEntered(request.word("number"), request.word("text"));
    if (request.find("choice"))
        user.choiceMade(request.word("choice"), request.integer<size_t>("chosen"));
    if (request.find("press")) user.buttonPressed(request.word("press"));
    if (request.boolean("hotKey", false)) user.hotKeyRecorded(keysFrom(request));
    if (request.find("filter")) user.filterChanged(request.word("filter"));
    if (request.find("record")) user.shortcutRecorded(request.word("record"), keysFrom(request));
    if (request.find("menu"))
        user.shortcutShownInMenu(request.word("menu"), request.boolean("on", true));
    if (request.find("rule")) editRule(request, user);
    if (request.boolean("close", false)) user.preferencesClosed();
}

}  // namespace

json appPreferences(const Fields& request, Session& session) {
    const SimulatedPreferences& shown = session.appSession().screen().preferences;
    if (!shown.visible) return {{"visible", false}};
    drive(request, *shown.delegate);
    return {{"visible", shown.visible},
            {"pane", kPanes[static_cast<size_t>(shown.pane)]},
            {"general", formOf(shown.general)},
            {"search", formOf(shown.search)},
            {"shortcuts", shortcutsOf(shown.shortcuts)},
            {"rules", rulesOf(shown.rules)}};
}

}  // namespace ops
