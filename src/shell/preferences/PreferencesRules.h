#pragma once
#include <functional>
#include <string>
#include <vector>

#include "datatypes/MatchingRule.h"
#include "screen/PreferencesView.h"

class OVUserDefaults;

/// The pane of the global rules: the two lists of what no project indexes, unless one of its
/// folders opts out. Each edit goes into the settings, whose observer makes the index anew.
/// Owner:   Preferences. Threads: main.
/// Fails:   a pattern that cannot be used is kept, with a warning: the rule is passed over.
class PreferencesRules {
  public:
    explicit PreferencesRules(OVUserDefaults& settings) : settings_(settings) {}
    static std::vector<std::string> settings();

    std::vector<PreferencesRuleList> lists() const;
    void add(size_t list);
    void remove(size_t list, size_t rule);
    void setPattern(size_t list, size_t rule, const std::string& text);
    void setPatternType(size_t list, size_t rule, size_t type);
    void flipFileType(size_t list, size_t rule, uint8_t bit);
    void reset(size_t list);

  private:
    MatchingRules rulesOf(size_t list) const;
    void change(size_t list, size_t rule, const std::function<void(MatchingRule&)>& edit);
    void store(size_t list, const MatchingRules& rules);

    OVUserDefaults& settings_;
};
