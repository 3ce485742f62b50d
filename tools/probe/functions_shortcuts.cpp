#include "Ops.h"
#include "Surrogates.h"
#include "modes/framework/ModeIdentifier.h"
#include "shell/registry/SearchHistoryController.h"
#include "shell/registry/shortcutRecording.h"
#include "util/Unicode.h"
#include "util/settings/OVUserDefaults.h"

/// The table of commands and their keys, and the list of past searches; with nothing stored.
namespace ops {

namespace {

using Definition = KeyboardShortcuts::Definition;

/// Any other identifier is that of a user's action.
Definition definitionFor(KeyboardShortcuts& registry, OVUserDefaults& settings,
                         const std::string& identifier) {
    if (Definition found = registry.keyboardShortcutDefinitionFor(identifier)) return found;
    return std::make_shared<KeyboardShortcutDefinition>(
        settings,
        KeyboardShortcutDefinition::Fields{
            .actionName = identifier, .identifier = identifier, .modeIdentifier = kFileModes});
}

json keysOf(const KeyboardShortcutDefinition& definition) {
    return {{"keyCode", definition.keyCode()},
            {"modifierFlags", definition.modifierFlags()},
            {"menu", definition.showInContextMenu()}};
}

}  // namespace

json shortcutsList(const Fields& request, Session&) {
    OVUserDefaults settings;
    const KeyboardShortcuts registry(settings, request.word("layout", "qwerty") == "qwerty"
                                                   ? KeyLayout::qwerty
                                                   : KeyLayout::other);
    json list = json::array();
    for (const KeyboardShortcutEntry& entry : registry.allActionKeyboardShortcuts()) {
        if (!entry.definition) {
            list.push_back(entry.title);
            continue;
        }
        json shortcut = keysOf(*entry.definition);
        shortcut["identifier"] = entry.definition->identifier();
        shortcut["name"] = entry.definition->actionName();
        shortcut["modes"] = entry.definition->modeIdentifier();
        shortcut["source"] = entry.definition->requiredSourceType();
        list.push_back(std::move(shortcut));
    }
    return {{"shortcuts", std::move(list)}};
}

json shortcutsParse(const Fields& request, Session&) {
    const std::string identifier = request.word("identifier");
    OVUserDefaults settings;
    settings.setObject({{identifier, request.word("stored")}}, "keyboardShortcuts");
    KeyboardShortcuts registry(settings, KeyLayout::qwerty);
    return keysOf(*definitionFor(registry, settings, identifier));
}

json shortcutsRecord(const Fields& request, Session&) {
    OVUserDefaults settings;
    KeyboardShortcuts registry(settings, KeyLayout::qwerty);
    const Definition definition = definitionFor(registry, settings, request.word("identifier"));
    const auto keyCode = request.integer<uint64_t>("keyCode");
    const auto modifierFlags = request.integer<uint64_t>("modifierFlags");
    const auto refusal = recordShortcut(registry, *definition, keyCode, modifierFlags);
    json reply = keysOf(*definition);
    reply["accepted"] = !refusal;
    reply["title"] = refusal ? json(refusal->title) : json();
    reply["text"] = refusal ? json(refusal->text) : json();
    return reply;
}

json history(const Fields& request, Session&) {
    OVUserDefaults settings;
    settings.setInteger(request.integer<int64_t>("maxSize"), "historyMaxSize");
    SearchHistoryController controller(settings);
    const auto textOrNull = [](const std::optional<std::string>& text) {
        return text ? json(carriedFromUnits(toUtf16Lenient(*text))) : json();
    };
    json results = json::array();
    for (const json& step : request.list("steps")) {
        const bool isStep = step.is_array() && !step.empty() && step[0].is_string();
        if (!isStep) request.illTyped("steps", "a list of steps");
        const auto what = step[0].get<std::string>();
        const auto text = step.size() > 1 && step[1].is_string() ? step[1].get<std::string>() : "";
        json result;
        if (what == "add")
            controller.addItem(text);
        else if (what == "previous")
            result = textOrNull(controller.previousItem());
        else if (what == "next")
            result = textOrNull(controller.nextItem());
        else if (what == "remove" && step.size() > 1)
            controller.removeSearchTerm(text);
        else if (what == "remove")
            result = textOrNull(controller.removeSearchTerm());
        else if (what == "reset")
            controller.resetCursor();
        else
            request.illTyped("steps", "a list of steps");
        results.push_back(std::move(result));
    }
    return {{"results", std::move(results)}, {"history", controller.history()}};
}

}  // namespace ops
