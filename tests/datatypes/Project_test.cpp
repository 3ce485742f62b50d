#include "datatypes/Project.h"

#include <gtest/gtest.h>

namespace {

nlohmann::json folder(const std::string& path) {
    return {{"path", path}};
}

TEST(Project, ANestedFolderComesFirstInDescendingOrder) {
    Project project(nlohmann::json{{"folders", {folder("/a"), folder("/b"), folder("/a/b")}}});
    ASSERT_EQ(project.sorderFoldersDesc().size(), 3u);
    EXPECT_EQ(project.sorderFoldersDesc()[1]->url.path(), "/a/b");
    EXPECT_EQ(project.sorderFoldersDesc()[2]->url.path(), "/a");
    project.removeFolder(project.sorderFoldersAsc()[0].get());
    EXPECT_EQ(project.sorderFoldersAsc()[0]->url.path(), "/a/b");
}

TEST(Project, NoDepthLimitIsStoredAsAnEmptyString) {
    EXPECT_EQ(ProjectFolder(folder("/a")).dictionaryRepresentation()["limitSearchDepth"], "");
    for (const auto& [stored, limit] :
         std::initializer_list<std::pair<nlohmann::json, std::optional<int64_t>>>{
             {"", std::nullopt},
             {"3", std::nullopt},
             {nullptr, std::nullopt},
             {0, 0},
             {2, 2},
             {2.9, 2},
             {1e300, std::nullopt}}) {
        nlohmann::json dictionary = folder("/a");
        dictionary["limitSearchDepth"] = stored;
        EXPECT_EQ(ProjectFolder(dictionary).limitSearchDepth, limit) << stored;
    }
}

TEST(Project, RulesTakeTheirTypeFromTheFolderAndSkippedFoldersAlwaysExclude) {
    const nlohmann::json rules = {{{"pattern", "*.c"}, {"patternType", 1}, {"fsItemType", 1}}};
    const ProjectFolder made(nlohmann::json{
        {"path", "/a/"}, {"ruleType", 1}, {"rules", rules}, {"excludedFolders", rules}});
    EXPECT_EQ(made.url.path(), "/a");
    EXPECT_EQ(made.rules.at(0).type, kRuleInclude);
    EXPECT_EQ(made.excludedFolders.at(0).type, kRuleExclude);
    EXPECT_EQ(made.rules.at(0).patternType, kPatternSuffix);
}

TEST(Project, WhatIsReadIsWrittenBack) {
    const nlohmann::json stored = {
        {"name", "Work"},
        {"uuid", "6A"},
        {"enabled", true},
        {"matchFilenameOnly", true},
        {"visibleItemType", 3},
        {"ignoreDiacritics", true},
        {"actions", {{{"name", "x"}}}},
        {"fromANewerVersion", 7},
        {"folders",
         {{{"path", "/w"},
           {"ruleType", 1},
           {"ignoreGlobalFolderRules", true},
           {"ignoreGlobalFoldersToSkip", true},
           {"includeRoot", true},
           {"limitSearchDepth", 4},
           {"includeContentsInRecentItems", true},
           {"excludedFolders", nlohmann::json::array()},
           {"comment", "mine"},
           {"rules",
            {{{"pattern", "*.c"}, {"patternType", 1}, {"fsItemType", 1}, {"why", "noise"}}}}}}}};
    const Project read(stored);
    EXPECT_EQ(read.dictionaryRepresentation(), stored);
    EXPECT_EQ(Project(read).dictionaryRepresentation(), stored);
}

TEST(Project, WhatIsNoFolderIsNotSearchedAndNotLost) {
    Project project(nlohmann::json{{"folders", {folder(""), folder("b"), 7, folder("/a")}}});
    ASSERT_EQ(project.sorderFoldersDesc().size(), 1u);
    EXPECT_EQ(project.sorderFoldersDesc()[0]->url.path(), "/a");
    EXPECT_EQ(project.dictionaryRepresentation()["folders"][1]["path"], "b");
    project.addFolder(project.folders()[2]);
    EXPECT_EQ(project.folders().size(), 3u) << "a folder is there once";
}

TEST(Project, OneNamedByAPathIsVirtual) {
    EXPECT_TRUE(Project(nlohmann::json{{"uuid", "/tmp"}}).isVirtualProject());
    EXPECT_FALSE(Project(nlohmann::json{{"uuid", "6A"}}).isVirtualProject());
    EXPECT_FALSE(Project(nlohmann::json("not a dictionary")).isVirtualProject());
}

}  // namespace
