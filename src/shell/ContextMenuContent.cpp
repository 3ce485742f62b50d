#include "shell/ContextMenuContent.h"

namespace {

constexpr auto kPaste = "CopyOrMoveSource";

MenuItem openWith(const contextMenuContent::Facts* facts) {
    MenuItem menu{.identifier = contextMenuContent::kOpenWith,
                  .title = "Open With",
                  .isEnabled = !facts || !facts->openers.empty(),
                  .isSubmenu = true};
    if (!facts) {
        menu.items.push_back({.title = "Looking for applications…", .isEnabled = false});
        return menu;
    }
    if (facts->openers.empty()) menu.toolTip = "No application found";
    for (const Applications::Opener& opener : facts->openers) {
        menu.items.push_back(
            {.identifier = opener.identifier, .title = opener.name, .iconName = opener.iconName});
        const bool isLast = &opener == &facts->openers.back();
        if (opener.isDefault && !isLast) menu.items.emplace_back();
    }
    return menu;
}

}  // namespace

KeyboardShortcutEntries contextMenuContent::commandsOf(const KeyboardShortcuts& shortcuts,
                                                       uint64_t mode) {
    KeyboardShortcutEntries shown;
    for (const KeyboardShortcutEntry& entry : shortcuts.allActionKeyboardShortcuts()) {
        const auto& definition = entry.definition;
        if (!definition || (definition->showInContextMenu() && definition->matchesMode(mode)))
            shown.push_back(entry);
    }
    return shown;
}

contextMenuContent::Facts contextMenuContent::factsOf(const std::vector<FileURL>& items,
                                                      const KeyboardShortcutEntries& commands,
                                                      const Applications& applications) {
    const std::vector<FileURL> some = itemsLookedAt(items);
    return {.refusals = refusalsOf(some, commands),
            .openers = applications.applicationsForItems(some)};
}

std::vector<MenuItem> contextMenuContent::items(const KeyboardShortcutEntries& commands,
                                                const Facts* facts, bool canPaste) {
    std::vector<MenuItem> all{openWith(facts)};
    bool beginsGroup = true;
    for (const KeyboardShortcutEntry& entry : commands) {
        if (!entry.definition) {
            beginsGroup = true;
            continue;
        }
        if (beginsGroup) all.emplace_back();
        beginsGroup = false;
        const KeyboardShortcutDefinition& command = *entry.definition;
        MenuItem item{.identifier = command.identifier(),
                      .title = command.actionName(),
                      .keys = command.stringRepresentation(),
                      .isEnabled = command.enabled()};
        if (command.identifier() == kPaste && !canPaste) {
            item.isEnabled = false;
            item.toolTip = kNoSource;
        }
        const auto refusal =
            facts ? facts->refusals.find(item.identifier) : Refusals::const_iterator();
        if (facts && refusal != facts->refusals.end()) {
            item.isEnabled = false;
            item.toolTip = refusal->second;
        }
        all.push_back(std::move(item));
    }
    return all;
}
