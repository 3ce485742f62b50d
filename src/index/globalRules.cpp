#include "index/globalRules.h"

#include <nlohmann/json.hpp>

#include "datatypes/ProjectFolder.h"
#include "util/settings/OVUserDefaults.h"

namespace {

MatchingRules storedRules(const char* key) {
    const nlohmann::json stored = OVUserDefaults::sharedInstance().arrayForKey(key);
    const auto* array = stored.get_ptr<const nlohmann::json::array_t*>();
    return array ? matchingRules(*array, kRuleExclude) : MatchingRules();
}

void append(MatchingRules& rules, const MatchingRules& more) {
    rules.insert(rules.end(), more.begin(), more.end());
}

/// Kept: the three do not agree. Events put the global rules ahead of an include list too, where a
/// scan takes none; who looks for the containing folder does not ask whether it wants them.
bool takesGlobalRules(const ProjectFolder& folder, RulesFor purpose) {
    if (purpose != RulesFor::containingFolder && folder.ignoreGlobalFolderRules) return false;
    return purpose == RulesFor::events || folder.ruleType == kRuleExclude;
}

}  // namespace

GlobalRules GlobalRules::fromSettings() {
    return {.foldersToIgnore = storedRules("globalFoldersToIgnore"),
            .folderRules = storedRules("globalFolderRules")};
}

FolderRules rulesOfFolder(const ProjectFolder& folder, const GlobalRules& global,
                          RulesFor purpose) {
    FolderRules out;
    if (!folder.ignoreGlobalFoldersToSkip) append(out.foldersToSkip, global.foldersToIgnore);
    append(out.foldersToSkip, folder.excludedFolders);
    if (takesGlobalRules(folder, purpose)) append(out.rules, global.folderRules);
    append(out.rules, folder.rules);
    // Kept: to a scan, and to it alone, an include list with nothing in it lets everything through.
    out.wantUnmatchedItems =
        folder.ruleType == kRuleExclude || (purpose == RulesFor::scan && folder.rules.empty());
    return out;
}
