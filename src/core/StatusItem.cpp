#include "core/StatusItem.h"

#include "util/log.h"
#include "util/settings/OVUserDefaults.h"

void StatusItem::setupMenuExtraMenuItem() {
    const bool shows = OVUserDefaults::sharedInstance().boolForKey("showStatusMenu");
    logAt(Debug, "Setting up Status Item: %s", shows ? "YES" : "NO");
    if (shows == isShown_) return;
    isShown_ = shows;
    if (!shows) {
        logAt(Debug, "Disabling status item");
        bar_.removeStatusItem();
        return;
    }
    logAt(Debug, "Enabling status item");
    bar_.showStatusItem(
        {.toolTip = "Trovast", .action = actions_.toggleMainWindow, .menu = menu()});
}

void StatusItem::keysChanged() {
    if (isShown_) bar_.setStatusMenu(menu());
}

std::vector<StatusItemContent::Entry> StatusItem::menu() const {
    return {{"Show or Hide Trovast", actions_.toggleMainWindow, keys_.toggleMainWindow()},
            {"Quick Start", actions_.openQuickStart},
            {"Preferences…", actions_.openPreferences, keys_.openPreferences},
            {"", {}},
            {"Quit Trovast", actions_.terminate, keys_.terminate}};
}
