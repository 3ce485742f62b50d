#pragma once
#include <string>
#include <vector>

#include "platform/Applications.h"
#include "screen/MenuView.h"
#include "shell/refusals.h"

/// What stands in the context menu of a row: the applications that open the items, and the commands
/// that the user wants there, in the order of the registry.
/// Owner:   none. Threads: main, but factsOf: any.
namespace contextMenuContent {

/// Identifier of the submenu with the applications; theirs are those of the desktop.
constexpr auto kOpenWith = "OpenWith";

/// The definitions of a mode that are shown there, with the titles of their sections.
KeyboardShortcutEntries commandsOf(const KeyboardShortcuts& shortcuts, uint64_t mode);

/// What only the disk knows about the items.
struct Facts {
    Refusals refusals;
    std::vector<Applications::Opener> openers;
};
/// Waits for the disk. Of very many items it looks at the first ones.
Facts factsOf(const std::vector<FileURL>& items, const KeyboardShortcutEntries& commands,
              const Applications& applications);

/// Facts are null until they are known: all is enabled then, so that the first key chooses the
/// first line.
std::vector<MenuItem> items(const KeyboardShortcutEntries& commands, const Facts* facts,
                            bool canPaste);

}  // namespace contextMenuContent
