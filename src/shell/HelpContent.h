#pragma once
#include <string>
#include <vector>

#include "screen/HelpView.h"
#include "shell/refusals.h"
#include "util/FileURL.h"

/// What the help says: which keys do what in a mode, with the keys as the user has them now.
/// Owner:   none. Threads: main.
namespace helpContent {

struct Subject {
    const KeyboardShortcuts& shortcuts;
    uint64_t mode;  // its identifier
};

/// Every command of the mode, once, and the fixed keys. A command without keys is there too.
std::vector<HelpGroup> allKeys(const Subject& subject);
/// The commands of the mode that work on what is selected.
KeyboardShortcutEntries commandsForSelection(const Subject& subject);
/// What can be done by keys to items that refuse these commands.
std::vector<HelpGroup> keysForSelection(const Subject& subject, const Refusals& refusals);
/// Lines in which each word of the filter occurs: in the name, the keys ("ctrl+shift") or the
/// group's title, whatever the case.
std::vector<HelpGroup> filtered(const std::vector<HelpGroup>& groups, const std::string& filter);

/// Empty for no keys.
KeyCaps keyCaps(uint64_t keyCode, uint64_t modifierFlags);
/// "Ctrl+Shift+P".
std::string joined(const KeyCaps& caps);

}  // namespace helpContent
