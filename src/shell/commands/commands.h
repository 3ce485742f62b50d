#pragma once
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

#include "shell/registry/KeyboardShortcuts.h"

class Alerts;
class Help;
class ItemActions;
class ModeHost;
class ModeSwitcher;
class PreviewController;
class ProjectSwitcher;
class ResultTableController;
class SearchFieldController;
class SearchToggles;
class SearchWindowController;
class TRVMode;
class TRVSearchMode;
class UserMessages;
enum ModeIdentifier : uint64_t;

/// What the commands of the search window do. Each section of the table has a file, with one
/// function that gives the commands and their closures.
/// Threads: main. Whatever changes the mode or the project is handed to switchModeQueue.
/// Fails:   with a message shown, and false.

struct CommandParts {
    ModeHost& host;
    TRVSearchMode& searchMode;
    ResultTableController& table;
    SearchFieldController& field;
    SearchWindowController& window;
    ModeSwitcher& modeSwitcher;
    ProjectSwitcher& projectSwitcher;
    SearchToggles& toggles;
    ItemActions& actions;
    Help& help;
    PreviewController& preview;
    UserMessages& messages;
};

using CommandBlocks = std::vector<std::pair<std::string_view, KeyboardShortcutDefinition::Block>>;
CommandBlocks switchingModesCommands(const CommandParts& parts);
CommandBlocks generalCommands(const CommandParts& parts);
CommandBlocks selectionCommands(const CommandParts& parts);
CommandBlocks searchHistoryCommands(const CommandParts& parts);
CommandBlocks pathsCommands(const CommandParts& parts);
CommandBlocks searchModeCommands(const CommandParts& parts);
CommandBlocks projectModeCommands(const CommandParts& parts);
CommandBlocks fileModesCommands(const CommandParts& parts);

/// Gives all of them to the registry. What has no closure yet says so to the user.
void bindCommands(KeyboardShortcuts& registry, const CommandParts& parts);

// For the closures.
/// Shows the mode and searches in it; says so where there is none.
bool switchToMode(const CommandParts& parts, ModeIdentifier identifier, std::string_view command);
/// The items that a command works on; empty with a message shown where there are none.
std::vector<FileURL> selectionOf(const CommandParts& parts);
/// Exactly one item; nothing with a message shown.
std::optional<FileURL> singleSelectionOf(const CommandParts& parts);
bool sayNotAvailable(UserMessages& messages, std::string_view command);
