#include "shell/preferences/PreferencesRules.h"

#include <nlohmann/json.hpp>

#include "modes/framework/attributeTexts.h"
#include "util/settings/OVUserDefaults.h"

namespace {

constexpr uint8_t kFiles = 1, kFolders = 2;

struct List {
    const char* key;
    const char* title;
    const char* explanation;
    bool hasFileTypes;
    uint8_t fileTypeOfNew;
};
constexpr List kLists[] = {
    {"globalFoldersToIgnore", "Folders that are not searched",
     "What is inside of them is in no list. A folder of a project can opt out.", false, kFolders},
    {"globalFolderRules", "Items that are left out",
     "Files and folders that no project shows. A folder of a project can opt out.", true,
     kFiles | kFolders},
};

const char* warningOf(const MatchingRule& rule) {
    if (!rule.originalPattern || rule.originalPattern->empty()) return "";
    if (rule.patternType == kPatternRegexp && !rule.regexp)
        return "This cannot be read; the rule is passed over.";
    if (rule.patternType == kPatternPrefix && rule.patternSlashLocation != 0 &&
        rule.patternSlashLocation != kNotFound)
        return "This never applies: begin it with “/”.";
    if (rule.fileType == 0) return "This applies to nothing: choose what it is for.";
    return "";
}

}  // namespace

std::vector<std::string> PreferencesRules::settings() {
    std::vector<std::string> keys;
    for (const List& list : kLists) keys.emplace_back(list.key);
    return keys;
}

MatchingRules PreferencesRules::rulesOf(size_t list) const {
    const nlohmann::json stored = settings_.arrayForKey(kLists[list].key);
    const auto* array = stored.get_ptr<const nlohmann::json::array_t*>();
    return array ? matchingRules(*array, kRuleExclude) : MatchingRules();
}

std::vector<PreferencesRuleList> PreferencesRules::lists() const {
    std::vector<PreferencesRuleList> lists;
    for (size_t i = 0; i < std::size(kLists); ++i) {
        auto& list = lists.emplace_back(
            PreferencesRuleList{kLists[i].title, kLists[i].explanation, kLists[i].hasFileTypes});
        for (const MatchingRule& rule : rulesOf(i))
            list.rules.push_back({.pattern = rule.originalPattern.value_or(""),
                                  .patternType = rule.originalPatternType,
                                  .fileTypes = rule.fileType,
                                  .fileTypesText = fileTypeMaskToString(rule.fileType),
                                  .warning = warningOf(rule)});
    }
    return lists;
}

// ---- Edits

void PreferencesRules::store(size_t list, const MatchingRules& rules) {
    nlohmann::json stored = nlohmann::json::array();
    for (const MatchingRule& rule : rules) stored.push_back(rule.dictionaryRepresentation());
    settings_.setObject(std::move(stored), kLists[list].key);
}

void PreferencesRules::change(size_t list, size_t rule,
                              const std::function<void(MatchingRule&)>& edit) {
    if (list >= std::size(kLists)) return;
    MatchingRules rules = rulesOf(list);
    if (rule >= rules.size()) return;
    edit(rules[rule]);
    store(list, rules);
}

void PreferencesRules::add(size_t list) {
    if (list >= std::size(kLists)) return;
    MatchingRules rules = rulesOf(list);
    rules.emplace_back().fileType = kLists[list].fileTypeOfNew;
    store(list, rules);
}

void PreferencesRules::remove(size_t list, size_t rule) {
    if (list >= std::size(kLists)) return;
    MatchingRules rules = rulesOf(list);
    if (rule >= rules.size()) return;
    rules.erase(rules.begin() + static_cast<std::ptrdiff_t>(rule));
    store(list, rules);
}

void PreferencesRules::setPattern(size_t list, size_t rule, const std::string& text) {
    change(list, rule, [&](MatchingRule& changed) { changed.originalPattern = text; });
}

void PreferencesRules::setPatternType(size_t list, size_t rule, size_t type) {
    if (type > kPatternRegexp) return;
    change(list, rule, [&](MatchingRule& changed) {
        changed.originalPatternType = static_cast<uint8_t>(type);
    });
}

void PreferencesRules::flipFileType(size_t list, size_t rule, uint8_t bit) {
    change(list, rule, [&](MatchingRule& changed) { changed.fileType ^= bit; });
}

void PreferencesRules::reset(size_t list) {
    if (list < std::size(kLists)) settings_.removeObjectForKey(kLists[list].key);
}
