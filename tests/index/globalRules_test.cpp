#include "index/globalRules.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "datatypes/ProjectFolder.h"
#include "index/CacheMonitor.h"
#include "util/World.h"
#include "util/log.h"
#include "util/settings/OVUserDefaults.h"

namespace {

using nlohmann::json;

json stored(const char* pattern) {
    return {{"pattern", pattern}, {"patternType", 1}, {"fsItemType", 7}};
}

std::string patterns(const MatchingRules& rules) {
    std::string out;
    for (const MatchingRule& rule : rules)
        out += *rule.originalPattern + (rule.type == kRuleExclude ? "- " : "+ ");
    return out;
}

TEST(GlobalRules, StandAheadOfTheFoldersOwnAndExclude) {
    World world;
    auto& settings = OVUserDefaults::sharedInstance();
    EXPECT_TRUE(GlobalRules::fromSettings().folderRules.empty());
    settings.setObject({stored("*~"), stored("~*")}, "globalFolderRules");
    settings.setObject({stored(".*")}, "globalFoldersToIgnore");
    const GlobalRules global = GlobalRules::fromSettings();

    ProjectFolder folder(
        json{{"path", "/a"}, {"excludedFolders", {stored("build")}}, {"rules", {stored("*.c")}}});
    for (const RulesFor purpose : {RulesFor::scan, RulesFor::events, RulesFor::containingFolder}) {
        const FolderRules rules = rulesOfFolder(folder, global, purpose);
        EXPECT_EQ(patterns(rules.rules), "*~- ~*- *.c- ");
        EXPECT_EQ(patterns(rules.foldersToSkip), ".*- build- ");
        EXPECT_TRUE(rules.wantUnmatchedItems);
    }
    folder.ignoreGlobalFolderRules = folder.ignoreGlobalFoldersToSkip = true;
    for (const RulesFor purpose : {RulesFor::scan, RulesFor::events}) {
        EXPECT_EQ(patterns(rulesOfFolder(folder, global, purpose).rules), "*.c- ");
        EXPECT_EQ(patterns(rulesOfFolder(folder, global, purpose).foldersToSkip), "build- ");
    }
}

TEST(GlobalRules, KeepsScansEventsAndLookUpsApart) {
    const GlobalRules global = {.foldersToIgnore = {},
                                .folderRules = matchingRules(json::array_t{stored("*~")}, 0)};
    const auto rules = [&](const ProjectFolder& folder, RulesFor purpose) {
        return rulesOfFolder(folder, global, purpose);
    };
    ProjectFolder include(json{{"path", "/a"}, {"ruleType", 1}, {"rules", {stored("*.c")}}});
    EXPECT_EQ(patterns(rules(include, RulesFor::scan).rules), "*.c+ ");
    EXPECT_EQ(patterns(rules(include, RulesFor::events).rules), "*~- *.c+ ");
    EXPECT_EQ(patterns(rules(include, RulesFor::containingFolder).rules), "*.c+ ");
    EXPECT_FALSE(rules(include, RulesFor::scan).wantUnmatchedItems);
    include.rules.clear();
    EXPECT_TRUE(rules(include, RulesFor::scan).wantUnmatchedItems);
    EXPECT_FALSE(rules(include, RulesFor::events).wantUnmatchedItems);

    const ProjectFolder ignoring(json{{"path", "/a"}, {"ignoreGlobalFolderRules", true}});
    EXPECT_EQ(patterns(rules(ignoring, RulesFor::containingFolder).rules), "*~- ");
}

TEST(GlobalRules, OfNoEffectChangeNothing) {
    const auto rule = [](const char* pattern, int type, int kinds) {
        return json{{"pattern", pattern}, {"patternType", type}, {"fsItemType", kinds}};
    };
    const json base = {rule("*~", 1, 3)};
    const struct {
        json other;
        bool same;
    } cases[] = {
        {nullptr, false},
        {{rule("*~", 1, 3), rule("", 0, 7), rule("", 1, 7), rule("", 2, 7)}, true},
        {{rule("(", 2, 7), rule("*~", 1, 3 | 64), rule("x", 0, 0), rule("*~", 1, 3)}, true},
        {{rule("*~", 1, 7)}, false},
        {{rule("*~", 0, 3)}, false},
        {{rule("*~", 1, 3), rule("*", 1, 7)}, false},
        {{rule("*~", 1, 3), rule("x", 2, 7)}, false}};
    for (const auto& each : cases)
        EXPECT_EQ(haveSameEffect(base, each.other), each.same) << each.other;
    EXPECT_TRUE(haveSameEffect(json::array({rule("", 0, 7)}), nullptr));
}

TEST(CacheMonitor, FollowsItsSettings) {
    World world;
    auto& settings = OVUserDefaults::sharedInstance();
    settings.setBool(true, "debugCache");
    CacheMonitor::sharedInstance();
    EXPECT_TRUE(processFlags.debugCache);
    EXPECT_FALSE(processFlags.dumpCache);
    settings.setBool(false, "debugCache");
    settings.setBool(true, "dumpCache");
    while (world.mainQueue().runPending()) {}
    EXPECT_FALSE(processFlags.debugCache);
    EXPECT_TRUE(processFlags.dumpCache);
    processFlags.dumpCache = false;
}

}  // namespace
