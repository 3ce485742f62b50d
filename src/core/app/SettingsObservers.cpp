#include "core/app/SettingsObservers.h"

#include "core/GlobalHotKey.h"
#include "core/ProjectSwitcher.h"
#include "core/SearchFieldController.h"
#include "core/SearchWindowController.h"
#include "core/StatusItem.h"
#include "core/state/GlobalState.h"
#include "index/globalRules.h"
#include "modes/TRVSearchMode.h"
#include "modes/framework/ModeHost.h"
#include "modes/framework/Notifications.h"
#include "util/Unicode.h"
#include "util/log.h"
#include "util/settings/OVUserDefaults.h"

SettingsObservers::SettingsObservers(const Parts& parts) : parts_(parts) {}

void SettingsObservers::observe(const char* key, std::function<void()> effect) {
    subscriptions_.push_back(OVUserDefaults::sharedInstance().addObserver(
        key, [effect = std::move(effect)](auto&, auto&) { effect(); }));
}

void SettingsObservers::observeMaximized() {
    subscriptions_.push_back(
        GlobalState::sharedInstance().maximized().observe([this](bool, bool maximized) {
            if (!OVUserDefaults::sharedInstance().boolForKey("resizableSearchWindow")) return;
            MainQueue::async([this, maximized] {
                if (!maximized) parts_.window.restoreWindowPosition();
                parts_.host.adjustWindowHeight();
            });
        }));
}

void SettingsObservers::observeProcessMetadata() {
    observe("processMetadata", [this] {
        parts_.field.refreshStyles();
        const auto project = parts_.searchMode.currentProject();
        Notifications::sharedInstance().scanParameterModified.emit(project);
        if (!parts_.searchMode.isActive()) postSearchParameterModified(project);
    });
}

void SettingsObservers::observeTheRest() {
    for (const char* key : {"matchFilenameOnly", "visibleItemType"})
        observe(key, [this] { parts_.host.updateTextsOfCurrentMode(); });
    for (const char* key : {"maxResultsetSize", "recentItemsMaxCount"})
        observe(key, [this] { parts_.host.reloadInBackgroundAnimated(false); });
    for (const char* key : {"globalFoldersToIgnore", "globalFolderRules"})
        subscriptions_.push_back(
            OVUserDefaults::sharedInstance().addObserver(key, [](const auto& old, const auto& now) {
                // While a rule is written, it changes nothing yet.
                if (!haveSameEffect(old, now))
                    Notifications::sharedInstance().scanParameterModified.emit(nullptr);
            }));
    observe("resizableSearchWindow", [this] { parts_.window.setUpResizing(); });
    observe("showMetadata", [this] { parts_.host.reloadInBackgroundAnimated(false); });
    observe("projects", [this] { projectsChanged(); });
    observe("treatBundlesAsFiles", [this] { postSearchParameterModified(nullptr); });
    observe("showStatusMenu", [this] { parts_.statusItem.setupMenuExtraMenuItem(); });
    observe("hotKey", [this] {
        if (GlobalHotKey::storedShortcut() != parts_.hotKey.currentShortcut())
            parts_.hotKey.setupHotKeys();
        parts_.statusItem.keysChanged();
    });
    // The same stored key is another one of the desktop now.
    observe("swapControlAndOption", [this] {
        parts_.hotKey.setupHotKeys();
        parts_.statusItem.keysChanged();
    });
    subscriptions_.push_back(Notifications::sharedInstance().searchParameterModified.observe(
        [this](const auto& project) { searchParameterModified(project); }));
}

void SettingsObservers::projectsChanged() {
    parts_.searchMode.loadProjects();
    parts_.host.updateTextsOfCurrentMode();
    const auto current = parts_.searchMode.currentProject();
    if (!current || current->isVirtualProject()) return;
    const auto stored = parts_.searchMode.projectByUuid(current->uuid);
    if (stored && stored->enabled) {
        if (stored != current) parts_.searchMode.setCurrentProject(stored);
        return;
    }
    TRVMode::switchModeQueue().async([this, reloads = stored != nullptr] {
        parts_.projects.makeCurrentProject(nullptr);
        if (reloads) parts_.host.reloadInBackgroundAnimated(false);
    });
}

void SettingsObservers::postSearchParameterModified(std::shared_ptr<const Project> project) {
    notificationQueue_.async([project = std::move(project)] {
        Notifications::sharedInstance().searchParameterModified.emit(project);
    });
}

void SettingsObservers::searchParameterModified(const std::shared_ptr<const Project>& project) {
    if (MainQueue::isMainThread()) logError("Must not be called on main thread!");
    if (project && project != parts_.searchMode.currentProject()) return;
    MainQueue::async([this] { searchAgain(); });
}

void SettingsObservers::searchAgain() {
    parts_.host.updateTextsOfCurrentMode();
    TRVSearchMode& searchMode = parts_.searchMode;
    if (searchMode.isActive() && isBlank(searchMode.searchString())) return;
    const auto current = searchMode.currentProject();
    if (!current) return;
    for (const auto& folder : current->sorderFoldersDesc()) {
        if (folder->ignoreGlobalFolderRules) continue;
        parts_.host.reloadInBackgroundAnimated(false);
        return;
    }
}
