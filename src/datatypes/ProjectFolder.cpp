#include "datatypes/ProjectFolder.h"

#include <nlohmann/json.hpp>

#include "util/Unicode.h"

namespace {

nlohmann::json arrayOf(const MatchingRules& rules) {
    nlohmann::json array = nlohmann::json::array();
    for (const MatchingRule& rule : rules) array.push_back(rule.dictionaryRepresentation());
    return array;
}

}  // namespace

ProjectFolder::ProjectFolder(const nlohmann::json& dictionary)
    : url(FileURL::standardized(textToPath(dictionary::text(dictionary, "path").value_or("")))),
      ruleType(dictionary::byte(dictionary, "ruleType")),
      ignoreGlobalFolderRules(dictionary::flag(dictionary, "ignoreGlobalFolderRules")),
      ignoreGlobalFoldersToSkip(dictionary::flag(dictionary, "ignoreGlobalFoldersToSkip")),
      includeRoot(dictionary::flag(dictionary, "includeRoot")),
      limitSearchDepth(dictionary::number(dictionary, "limitSearchDepth")),
      includeContentsInRecentItems(dictionary::flag(dictionary, "includeContentsInRecentItems")),
      excludedFolders(
          matchingRules(dictionary::array(dictionary, "excludedFolders"), kRuleExclude)),
      rules(matchingRules(dictionary::array(dictionary, "rules"), ruleType)),
      original_(dictionary::original(dictionary)) {}

nlohmann::json ProjectFolder::dictionaryRepresentation() const {
    nlohmann::json out = dictionary::copyOf(original_);
    out["path"] = pathToText(url.path());
    out["ruleType"] = ruleType;
    out["ignoreGlobalFolderRules"] = ignoreGlobalFolderRules;
    out["ignoreGlobalFoldersToSkip"] = ignoreGlobalFoldersToSkip;
    out["includeRoot"] = includeRoot;
    out["limitSearchDepth"] =
        limitSearchDepth ? nlohmann::json(*limitSearchDepth) : nlohmann::json("");
    out["includeContentsInRecentItems"] = includeContentsInRecentItems;
    out["excludedFolders"] = arrayOf(excludedFolders);
    out["rules"] = arrayOf(rules);
    return out;
}
