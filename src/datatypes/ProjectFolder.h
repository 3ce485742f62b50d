#pragma once
#include <optional>

#include "datatypes/MatchingRule.h"
#include "util/FileURL.h"

/// One folder of a project and what of it is wanted. A value; a copy is deep.
/// Owner:   Project. Threads: any, to read.
class ProjectFolder {
  public:
    ProjectFolder() = default;
    explicit ProjectFolder(const nlohmann::json& dictionary);
    nlohmann::json dictionaryRepresentation() const;

    FileURL url;
    /// kRuleExclude: what no rule matches is wanted. kRuleInclude: only what one matches.
    uint8_t ruleType = kRuleExclude;
    bool ignoreGlobalFolderRules = false;
    bool ignoreGlobalFoldersToSkip = false;
    bool includeRoot = false;                 // the folder itself is an item of the index
    std::optional<int64_t> limitSearchDepth;  // levels below the folder; none: no limit
    bool includeContentsInRecentItems = false;
    MatchingRules excludedFolders;  // not to descend into
    MatchingRules rules;            // which items to list

  private:
    dictionary::Original original_;
};
