#pragma once
#include <nlohmann/json_fwd.hpp>

#include "datatypes/MatchingRule.h"

class ProjectFolder;

/// What is to be done with the items of one project folder: its own rules with the global ones of
/// the settings ahead of them, so that these win.
/// A value, made once a scan, and once a folder for a batch of events. Threads: any, to read.
struct FolderRules {
    MatchingRules foldersToSkip;  // not to descend into
    MatchingRules rules;          // which items to list
    bool wantUnmatchedItems = true;
};

/// The global lists of the settings, prepared; all of them exclude. Read once a scan or batch.
struct GlobalRules {
    MatchingRules foldersToIgnore;
    MatchingRules folderRules;
    static GlobalRules fromSettings();
};

/// Whether two stored lists exclude the same items: rules that apply to none have no say.
bool haveSameEffect(const nlohmann::json& a, const nlohmann::json& b);

/// Who asks: each composes in its own way.
enum class RulesFor {
    scan,              // of a whole project
    events,            // and what they scan
    containingFolder,  // which folder would index a path
};
FolderRules rulesOfFolder(const ProjectFolder& folder, const GlobalRules& global,
                          RulesFor purpose = RulesFor::scan);
