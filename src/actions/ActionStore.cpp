#include "actions/ActionStore.h"

#include "util/log.h"
#include "util/settings/OVUserDefaults.h"

void ActionStore::loadActions() {
    const auto& settings = OVUserDefaults::sharedInstance();
    actions_.clear();
    if (!settings.isTrusted()) {
        logWarning("Others may write the settings: the user's own actions are left out");
        return;
    }
    for (const auto& action : settings.arrayForKey("userDefinedActions"))
        if (action.is_object()) actions_.push_back(action);
}
