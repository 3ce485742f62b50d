#pragma once
#include <nlohmann/json.hpp>
#include <vector>

/// The user's own actions as the settings have them, in their order. A group has "children".
/// Owner:   AppDelegate. Threads: main.
/// Fails:   what is no dictionary is left out; settings that somebody else may have written give
///          none, with a line in the log: actions run programs.
class ActionStore {
  public:
    /// From the setting userDefinedActions.
    void loadActions();
    const std::vector<nlohmann::json>& userDefinedActions() const { return actions_; }

  private:
    std::vector<nlohmann::json> actions_;
};
