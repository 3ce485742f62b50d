#include "shell/registry/PreferencesController.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "util/World.h"
#include "util/log.h"
#include "util/settings/OVUserDefaults.h"
#include "util/settings/SettingsGate.h"

namespace {
using nlohmann::json;

json defaults() {
    return PreferencesController::userDefaults({.home = FileURL("/home/me")});
}
}  // namespace

TEST(PreferencesController, RegistersFortyFiveDefaults) {
    const json all = defaults();
    EXPECT_EQ(all.size(), 45u);
    EXPECT_EQ(all["searchPanelWidth"], 638);
    EXPECT_EQ(all["logLevel"], 7);
    EXPECT_EQ(all["fontWeight"], 0.0);
    EXPECT_EQ(all["history"], json::array());
    EXPECT_EQ(all["markedItems"], json::object());
    EXPECT_EQ(all["defaultFileManager"], "com.apple.Finder");
    EXPECT_EQ(all["globalFoldersToIgnore"],
              json::parse(R"([{"pattern": ".*", "patternType": 1, "fsItemType": 2},
                              {"pattern": "*.framework", "patternType": 1, "fsItemType": 2},
                              {"pattern": "node_modules", "patternType": 0, "fsItemType": 2}])"));
    EXPECT_EQ(all["globalFolderRules"],
              json::parse(R"([{"pattern": ".*", "patternType": 1, "fsItemType": 7},
                              {"pattern": "*~", "patternType": 1, "fsItemType": 7},
                              {"pattern": "~*", "patternType": 1, "fsItemType": 7}])"));
}

TEST(PreferencesController, TheDefaultProjectIsHomeWithoutItsLibrary) {
    json all = defaults();
    ASSERT_EQ(all["projects"].size(), 1u);
    json project = all["projects"][0];
    EXPECT_EQ(project["uuid"], all["currentProject"]);
    EXPECT_NE(project["uuid"], defaults()["currentProject"]) << "a new one each launch";
    project.erase("uuid");
    EXPECT_EQ(project, json::parse(R"({
        "name": "Home", "enabled": true, "matchFilenameOnly": true, "visibleItemType": 3,
        "ignoreDiacritics": false, "folders": [
            {"path": "/home/me/Library/Mobile Documents/com~apple~CloudDocs", "ruleType": 0,
             "excludedFolders": [], "includeContentsInRecentItems": true,
             "ignoreGlobalFolderRules": false, "ignoreGlobalFoldersToSkip": false},
            {"path": "/home/me/Library/CloudStorage", "ruleType": 0,
             "excludedFolders": [], "includeContentsInRecentItems": true,
             "ignoreGlobalFolderRules": false, "ignoreGlobalFoldersToSkip": false},
            {"path": "/home/me", "ruleType": 0,
             "excludedFolders": [{"pattern": "/Library", "patternType": 0, "fsItemType": 2}],
             "includeContentsInRecentItems": true,
             "ignoreGlobalFolderRules": false, "ignoreGlobalFoldersToSkip": false}]})"));
    const json elsewhere = PreferencesController::userDefaults(
        {.home = FileURL("/h\xff"), .library = FileURL("/lib")});
    EXPECT_EQ(elsewhere["projects"][0]["folders"][1]["path"], "/lib/CloudStorage");
    EXPECT_EQ(elsewhere["projects"][0]["folders"][2]["path"], "/h\U0010FFFF");
}

TEST(PreferencesController, EveryDefaultPassesTheGateAndAWrongTypeFallsBackToIt) {
    logging::setLevel(0);
    const json all = defaults();
    for (const auto& [key, value] : all.items()) {
        const auto passed = admitSetting(key, std::make_shared<const json>(value));
        EXPECT_EQ(passed.complaint, nullptr) << key;
        ASSERT_TRUE(passed.value) << key;
        EXPECT_EQ(*passed.value, value) << key;
        EXPECT_EQ(passed.value->type(), value.type()) << key;
        OVUserDefaults settings;
        settings.registerDefaults(all);
        int refused = 0;
        for (const json& other :
             {json("text"), json(0.5), json::array({json::array()}), json({{"k", "v"}})}) {
            if (other.type() == value.type() || (value.is_number() && other.is_number())) continue;
            settings.setObject(other, key);
            if (settings.objectForKey(key) == value) refused++;
        }
        EXPECT_GE(refused, 2) << key;
    }
    logging::setLevel(7);
}

TEST(PreferencesController, StoredValuesAreNotTouched) {
    World world;
    OVUserDefaults settings;
    settings.setObject(json::array(), "projects");
    settings.setBool(false, "warnMoveToTrash");
    PreferencesController::setupUserDefaults(settings, {.home = FileURL("/home/me")});
    EXPECT_EQ(settings.arrayForKey("projects"), json::array());
    EXPECT_EQ(settings.integerForKey("maxResultsetSize"), 100);
    EXPECT_FALSE(settings.boolForKey("warnMoveToTrash"));
    settings.setBool(false, "warnRemoveRecentDirectory");
    PreferencesController::resetWarnings(settings);
    EXPECT_TRUE(settings.boolForKey("warnMoveToTrash"));
    EXPECT_TRUE(settings.boolForKey("warnRemoveRecentDirectory"));
}
