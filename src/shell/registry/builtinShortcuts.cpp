#include "shell/registry/builtinShortcuts.h"

#include <cstdlib>

#include "screen/KeyEvent.h"

namespace {

// The bits of the modes' identifiers.
constexpr uint64_t kSearch = 1, kBrowser = 2, kRecent = 4, kMarked = 8, kProjects = 16;
constexpr uint64_t kListings = kSearch + kRecent + kMarked;
constexpr uint64_t kFiles = kListings + kBrowser;
constexpr uint64_t kEverywhere = 255;

constexpr auto kAny = RequiredSourceType::anything;
constexpr auto kFile = RequiredSourceType::files;
constexpr auto kFolder = RequiredSourceType::folders;
constexpr auto kFileOrFolder = RequiredSourceType::filesAndFolders;

constexpr uint64_t kShift = kModifierShift, kControl = kModifierControl, kOption = kModifierOption,
                   kCommand = kModifierCommand;
constexpr BuiltinKeys kNoKeys;
constexpr bool kInMenu = true;

constexpr BuiltinShortcut kSwitchingModesShortcuts[] = {
    {"SwitchToSearchMode", "Search", kEverywhere - kSearch, kAny, {kCommand, 1}},
    {"SwitchToBrowserMode", "Browser", kEverywhere - kBrowser, kAny, {kCommand, 11}},
    {"SwitchToRecentItemsMode", "Recent Items", kEverywhere - kRecent, kAny, {kCommand, 15}},
    {"SwitchToMarkedItemsMode", "Marked Items", kEverywhere - kMarked, kAny, {kCommand, 46}},
    {"SwitchToProjectsMode", "Projects", kEverywhere - kProjects, kAny, {kCommand, 35}},
    {"SwitchToHistoryMode", "History", kFiles, kAny, {kCommand, 4}},
};

constexpr BuiltinShortcut kGeneralShortcuts[] = {
    {"ShowHelp", "Show Help", kEverywhere, kAny, {kShift + kCommand, {44, 27}}},
    {"ToggleProjectEditor",
     "Show/hide Projects Editor",
     kEverywhere,
     kAny,
     {kOption + kCommand, 35}},
    {"SelectEveryItem", "Select All", kEverywhere, kAny, {kCommand, 0}},
    {"SearchFolderOfFrontmostApplication",
     "Search Folder Containing Document of Frontmost Application",
     kEverywhere,
     kAny,
     {kOption + kCommand, 1}},
    {"FilterForFrontmostApplication",
     "Filter for Frontmost Application",
     kEverywhere,
     kAny,
     {kCommand, 42},
     kInMenu},
    {"BrowseFolderOfFrontmostApplication",
     "Browse Folder Containing Document of Frontmost Application",
     kEverywhere,
     kAny,
     {kOption + kCommand, 11}},
    {"CloseSearchWindow", "Close Search Window", kEverywhere, kAny, {kCommand, 13}},
    {"CycleRecentProject",
     "Cycle Current/Previous Project",
     kSearch + kRecent + kProjects,
     kAny,
     {kCommand, 50}},
    {"ShowActiveFileOperations",
     "Show Active File Operations",
     kEverywhere,
     kAny,
     {kOption + kCommand, 29}},
    {"CycleThroughMetadataDisplayOptions",
     R"(Cycle Through "Show Metadata in Result")",
     kFiles,
     kAny,
     {kControl, 42}},
    {"ToggleShowFiles", R"(Toggle "Show Files")", kFiles, kAny, {kShift + kCommand, 3}},
    {"ToggleShowDirectories", R"(Toggle "Show Directories")", kFiles, kAny, {kShift + kCommand, 2}},
    {"ToggleIgnoreDiacritics",
     R"(Toggle "Ignore Diacritics")",
     kEverywhere,
     kAny,
     {kShift + kCommand, 34}},
    {"QuickLook", "Quick Look", kFiles, kAny, {kCommand, {16, 6}}},
    {"Maximize",
     R"(Toggle "Maximize Window Vertically")",
     kEverywhere,
     kAny,
     {kControl + kShift, 49}},
};

constexpr BuiltinShortcut kSelectionShortcuts[] = {
    {"SendSelectionToQuicksilver", "Send to Quicksilver", kFiles, kAny, {kCommand, 53}},
    {"SendSelectionToAlfred", "Send to Alfred", kFiles, kAny, kNoKeys},
    {"SendSelectionToLaunchBar", "Send to LaunchBar", kFiles, kAny, kNoKeys},
    {"SearchSelection", "Search", kFiles, kAny, {kShift + kCommand, 1}},
    {"BrowseSelection", "Browse", kFiles + kProjects, kAny, {kShift + kCommand, 11}},
    {"CreateProjectFromSelection", "Create Project", kFiles, kAny, {kShift + kCommand, 35}},
    {"ShowInfoInFinder",
     "Show Info in File Manager",
     kFiles,
     kFileOrFolder,
     {kCommand, 34},
     kInMenu},
    {"RevealInFinder", "Reveal in File Manager", kFiles, kAny, {kCommand, 3}, kInMenu},
    {"OpenInTextEditor", "Open in Text Editor", kFiles, kFile, {kCommand, 14}, kInMenu},
    {"OpenWith", "Open With…", kFiles, kFile, {kCommand, 31}},
    {"OpenInTerminal", "Goto Path in Terminal", kFiles, kAny, {kCommand, 17}},
    {"JumpToSelection", "Jump to Selection", kEverywhere, kAny, {kShift + kCommand, 38}},
    {"ToggleMarkedItemFlag", "Toggle Marked", kFiles, kAny, {kControl, 46}, kInMenu},
    {"UserDefinedActions", "User Defined Actions", kFiles, kAny, {kCommand, 40}},
};

constexpr BuiltinShortcut kFileManagementShortcuts[] = {
    {"ShareSelectedItem", "Share…", kFiles, kFileOrFolder, kNoKeys, kInMenu},
    {"SelectItemAsCopySource",
     "Copy (Set Copy Source)",
     kFiles,
     kFileOrFolder,
     {kControl, 8},
     kInMenu},
    {"AddItemToCopySource",
     "Copy (Add/Remove Copy Source)",
     kFiles,
     kFileOrFolder,
     {kControl + kShift, 8}},
    {"SelectItemAsMoveSource",
     "Cut (Set as Move Source)",
     kFiles,
     kFileOrFolder,
     {kControl, 7},
     kInMenu},
    {"AddItemToMoveSource",
     "Cut (Add/Remove Move Source)",
     kFiles,
     kFileOrFolder,
     {kControl + kShift, 7}},
    {"CopyOrMoveSource", "Paste (Perform Copy/Move)", kFiles, kAny, {kControl, 9}, kInMenu},
    {"DuplicateSelection", "Duplicate", kFiles, kFileOrFolder, {kControl, 2}, kInMenu},
    {"NewFolder", "New Folder", kFiles, kAny, {kControl + kShift, 45}, kInMenu},
};

constexpr BuiltinShortcut kSearchHistoryShortcuts[] = {
    {"SearchHistoryPrevious", "Load Previous Query", kFiles, kAny, {kControl, 35}},
    {"SearchHistoryNext", "Load Next Query", kFiles, kAny, {kControl, 45}},
    {"SearchHistoryRemoveTerm", "Remove Query", kFiles, kAny, {kControl, 51}},
};

constexpr BuiltinShortcut kPathsShortcuts[] = {
    {"ShrinkPathSelection", "Shrink Path Selection", kListings, kAny, {kControl, 43}},
    {"ExtendPathSelection", "Extend Path Selection", kListings, kAny, {kControl, 47}},
    {"ClearPathSelection", "Clear Path Selection", kListings, kAny, {kControl, {44, 27}}},
    {"ToggleSearchLastPathComponentOrCompletePath",
     R"(Toggle "Search Complete Path or Last Path Component Only")",
     kListings,
     kAny,
     {kShift + kCommand, 31}},
};

constexpr BuiltinShortcut kQuickFilterShortcuts[] = {
    {"AddSelectionToLivePathFilter",
     "Focus on Selected Folder",
     kListings,
     kFolder,
     {kCommand, 24}},
    {"RemoveSelectionToLivePathFilter",
     "Ignore Selected Folder",
     kListings,
     kFolder,
     {kCommand, 27}},
    {"ClearLivePathFilter", "Clear Filter", kListings, kAny, {kOption, 53}},
};

constexpr BuiltinShortcut kSearchModeShortcuts[] = {
    {"ToggleIgnoreMaximumResultSetSize",
     R"(Toggle "Ignore Maximum Result Set Size")",
     kSearch,
     kAny,
     {kCommand, 1}},
};

constexpr BuiltinShortcut kBrowserModeShortcuts[] = {
    {"CycleBaseDirectories", "Cycle Base Directories", kBrowser, kAny, {kCommand, 44}},
    {"ToggleHiddenFiles", R"(Toggle "Show Hidden Items")", kBrowser, kAny, {kCommand, 47}},
    {"BrowsePrecedingSiblingDirectory",
     "Browse Preceding Sibling Directory",
     kBrowser,
     kAny,
     {kControl, 43}},
    {"BrowseFollowingSiblingDirectory",
     "Browse Following Sibling Directory",
     kBrowser,
     kAny,
     {kControl, 47}},
    {"BrowsePrecedingMarkedSiblingDirectory",
     "Browse Preceding Marked Sibling Directory",
     kBrowser,
     kAny,
     {kControl + kShift, 43}},
    {"BrowseFollowingMarkedSiblingDirectory",
     "Browse Following Marked Sibling Directory",
     kBrowser,
     kAny,
     {kControl + kShift, 47}},
};

constexpr BuiltinShortcut kProjectModeShortcuts[] = {
    {"SwitchToRecentProject", "Switch to Latest Project", kProjects, kAny, {kCommand, 35}},
};

constexpr BuiltinShortcut kMarkedItemsModeShortcuts[] = {
    {"ToggleMarkedItemsMode",
     R"(Switch between "Marked Items" and "Items Marked for Copy/Move")",
     kMarked,
     kAny,
     {kCommand, 46}},
};

constexpr BuiltinSection kSections[] = {
    {"Switching modes", kSwitchingModesShortcuts},
    {"General", kGeneralShortcuts},
    {"Selection", kSelectionShortcuts},
    {"File Management", kFileManagementShortcuts},
    {"Search History", kSearchHistoryShortcuts},
    {"Paths", kPathsShortcuts},
    {"Quick Filter", kQuickFilterShortcuts},
    {"Search Mode", kSearchModeShortcuts},
    {"Browser Mode", kBrowserModeShortcuts},
    {"Project Mode", kProjectModeShortcuts},
    {"Marked Items Mode", kMarkedItemsModeShortcuts},
};

}  // namespace

std::span<const BuiltinSection> builtinShortcuts() {
    return kSections;
}

std::string valueForUserDefaults(const StoredShortcut& shortcut) {
    std::string value = shortcut.showInContextMenu.value_or(false) ? "+" : "-";
    value += std::to_string(static_cast<int64_t>(shortcut.keyCode));
    return value + "/" + std::to_string(static_cast<int64_t>(shortcut.modifierFlags));
}

std::optional<StoredShortcut> parseFromUserDefaultsComponents(const std::string& stored) {
    const size_t slash = stored.find('/');
    if (slash == std::string::npos || stored.find('/', slash + 1) != std::string::npos)
        return std::nullopt;
    const auto number = [](const std::string& digits) {
        return static_cast<uint64_t>(std::strtoll(digits.c_str(), nullptr, 10));
    };
    StoredShortcut shortcut;
    std::string keyCode = stored.substr(0, slash);
    if (keyCode.starts_with('+') || keyCode.starts_with('-')) {
        shortcut.showInContextMenu = keyCode[0] == '+';
        keyCode.erase(0, 1);
    }
    shortcut.keyCode = number(keyCode);
    shortcut.modifierFlags = number(stored.substr(slash + 1));
    return shortcut;
}
