#include "index/globalRules.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <tuple>

#include "datatypes/ProjectFolder.h"
#include "util/settings/OVUserDefaults.h"

namespace {

MatchingRules excludingRules(const nlohmann::json& stored) {
    const auto* array = stored.get_ptr<const nlohmann::json::array_t*>();
    return array ? matchingRules(*array, kRuleExclude) : MatchingRules();
}

MatchingRules storedRules(const char* key) {
    return excludingRules(OVUserDefaults::sharedInstance().arrayForKey(key));
}

/// What the rule means; nothing: it applies to no item.
using Meaning = std::tuple<std::string, uint8_t, int>;
std::optional<Meaning> meaningOf(const MatchingRule& rule) {
    constexpr int kKinds = 7;
    const bool matches =
        rule.patternType == kPatternAnything ||
        (rule.patternType == kPatternRegexp ? rule.regexp != nullptr
                                            : rule.pattern && !rule.pattern->empty());
    if (!rule.originalPattern || !matches || !(rule.fileType & kKinds)) return std::nullopt;
    return Meaning(*rule.originalPattern, rule.originalPatternType, rule.fileType & kKinds);
}

/// Where all rules exclude, their order and their number have no say.
std::set<Meaning> meaningsOf(const nlohmann::json& stored) {
    std::set<Meaning> meanings;
    for (const MatchingRule& rule : excludingRules(stored))
        if (auto meaning = meaningOf(rule)) meanings.insert(std::move(*meaning));
    return meanings;
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

bool haveSameEffect(const nlohmann::json& a, const nlohmann::json& b) {
    return meaningsOf(a) == meaningsOf(b);
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
