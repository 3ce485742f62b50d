#include "shell/registry/PreferencesController.h"

#include <unistd.h>

#include <nlohmann/json.hpp>

#include "shell/registry/KeyboardShortcuts.h"
#include "util/Unicode.h"
#include "util/Uuid.h"
#include "util/settings/OVUserDefaults.h"

namespace {

using nlohmann::json;

// As rules are stored: how the pattern is meant, and the mask of what it applies to.
constexpr int kExactName = 0, kGlob = 1;
constexpr int kFolders = 2, kAllItems = 7;
constexpr int kFilesAndFoldersVisible = 3;

json rule(const char* pattern, int patternType, int fsItemType) {
    return {{"pattern", pattern}, {"patternType", patternType}, {"fsItemType", fsItemType}};
}

json projectFolder(const FileURL& url, json excludedFolders) {
    return {
        {"path", pathToText(url.path())},       {"excludedFolders", std::move(excludedFolders)},
        {"ignoreGlobalFolderRules", false},     {"ignoreGlobalFoldersToSkip", false},
        {"includeContentsInRecentItems", true}, {"ruleType", 0},
    };
}

/// The home folder without its Library, and the two folders of cloud storage in there.
json defaultProject(const PreferencesController::Environment& environment) {
    const FileURL& library = environment.library;
    json folders = json::array();
    for (const FileURL& cloud :
         {library.appending("Mobile Documents").appending("com~apple~CloudDocs"),
          library.appending("CloudStorage")})
        if (!environment.onlyExistingFolders || access(cloud.c_str(), F_OK) == 0)
            folders.push_back(projectFolder(cloud, json::array()));
    folders.push_back(
        projectFolder(environment.home, json::array({rule("/Library", kExactName, kFolders)})));
    return {
        {"name", "Home"},
        {"enabled", true},
        {"uuid", newUuid()},
        {"folders", std::move(folders)},
        {"matchFilenameOnly", true},
        {"visibleItemType", kFilesAndFoldersVisible},
        {"ignoreDiacritics", false},
    };
}

}  // namespace

json PreferencesController::userDefaults(const Environment& environment) {
    const json project = defaultProject(environment);
    return {
        {"defaultFileManager", "com.apple.Finder"},
        {"defaultTerminal", "com.apple.Terminal"},
        {"defaultTextEditor", "com.apple.TextEdit"},
        {"searchPanelWidth", 638},
        {"hideSearchFieldOnDeFocus", true},
        {"hideSearchFieldAfterAction", true},
        {"warnMoveToTrash", true},
        {"warnRemoveRecentDirectory", true},
        {"includeNeverWhenCyclingShowMetadataInResult", true},
        {"highlightRegularExpressions", false},
        {"maxResultsetSize", 100},
        {"numberOfInvocations", 0},
        {"showStatusMenu", true},
        {"treatBundlesAsFiles", true},
        {"globalFoldersToIgnore", json::array({
                                      rule(".*", kGlob, kFolders),
                                      rule("*.framework", kGlob, kFolders),
                                      rule("node_modules", kExactName, kFolders),
                                  })},
        {"globalFolderRules", json::array({
                                  rule(".*", kGlob, kAllItems),
                                  rule("*~", kGlob, kAllItems),
                                  rule("~*", kGlob, kAllItems),
                              })},
        {"debugFsEvents", false},
        {"debugPerformance", false},
        {"debugScan", false},
        {"debugRules", false},
        {"debugSearch", false},
        {"debugCache", false},
        {"dumpCache", false},
        {"logLevel", 7},
        {"currentProject", project["uuid"]},
        {"actionModeShowsInternalActions", true},
        {"actionModeShowsOpenWithActions", true},
        {"actionModeIgnoreDiacritics", false},
        {"projects", json::array({project})},
        {"projectsIgnoreDiacritics", false},
        {"recentItemsMaxCount", 100},
        {"recentItemsVisibleItemTypes", kFilesAndFoldersVisible},
        {"recentItemsMatchFilenameOnly", true},
        {"recentItemsIgnoreDiacritics", false},
        {"markedItems", json::object()},
        {"markedItemsVisibleItemTypes", kFilesAndFoldersVisible},
        {"markedItemsMatchFilenameOnly", true},
        {"markedItemsIgnoreDiacritics", false},
        {"browserVisibleItemTypes", kFilesAndFoldersVisible},
        {"browserIgnoreDiacritics", false},
        {"keyboardShortcuts", KeyboardShortcuts::userDefaults(environment.layout)},
        {"historyMaxSize", 100},
        {"history", json::array()},
        {"fontWeight", 0.0},
        {"resizableSearchWindow", true},
    };
}

void PreferencesController::setupUserDefaults(OVUserDefaults& settings,
                                              const Environment& environment) {
    settings.registerDefaults(userDefaults(environment));
}

void PreferencesController::resetWarnings(OVUserDefaults& settings) {
    settings.setBool(true, "warnMoveToTrash");
    settings.setBool(true, "warnRemoveRecentDirectory");
}
