#include "Ops.h"
#include "Surrogates.h"
#include "shell/registry/shortcutRecording.h"
#include "util/settings/OVUserDefaults.h"

/// The table of commands and their keys, with nothing stored.
namespace ops {

namespace {

using Definition = KeyboardShortcuts::Definition;

/// Any other identifier is that of a user's action.
Definition definitionFor(KeyboardShortcuts& registry, OVUserDefaults& settings,
                         const std::string& identifier) {
    if (Definition found = registry.keyboardShortcutDefinitionFor(identifier)) return found;
    constexpr uint64_t kFileModes = 15;
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
    const auto refusal = recordShortcut(registry, *definition, request.integer<uint64_t>("keyCode"),
                                        request.integer<uint64_t>("modifierFlags"));
    json reply = keysOf(*definition);
    reply["accepted"] = !refusal;
    reply["title"] = refusal ? json(refusal->title) : json();
    reply["text"] = refusal ? json(refusal->text) : json();
    return reply;
}

}  // namespace ops
