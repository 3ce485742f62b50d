#include <sys/utsname.h>

#include <cstdio>
#include <cstdlib>

#include "core/app/AppDelegate.h"
#include "modes/framework/Notifications.h"
#include "platform/Appearance.h"
#include "platform/Updater.h"
#include "shell/registry/PreferencesController.h"
#include "util/World.h"
#include "util/log.h"
#include "util/settings/OVUserDefaults.h"
#include "util/settings/SettingsFile.h"

// The launch: what starts in which order.

using namespace std::chrono_literals;

namespace {

enum FullDiskAccessSetting : int64_t { kNeverAsked, kSkipped, kGranted };

void logStart() {
    utsname system{};
    int major = 0, minor = 0, patch = 0;
    if (uname(&system) == 0) (void)std::sscanf(system.release, "%d.%d.%d", &major, &minor, &patch);
    logInfo("Started %s %s (%s) on Linux %d.%d.%d", "Trovast", TROVAST_VERSION, TROVAST_VERSION,
            major, minor, patch);
}

int64_t setting(const char* key) {
    return OVUserDefaults::sharedInstance().integerForKey(key);
}

}  // namespace

void openSettingsAndLog(const Folders& folders) {
    logging::open({.folder = folders.state.path(), .systemLog = true, .standardError = true});
    auto& settings = World::current().provide<OVUserDefaults>(
        std::make_unique<SettingsFile>(folders.configuration.appending("settings.json")));
    PreferencesController::setupUserDefaults(
        settings, {.home = folders.home, .onlyExistingFolders = true, .layout = folders.layout});
    World::current().provide<KeyboardShortcuts>(settings, folders.layout);
}

// ---- Stage one: all that needs no file of the user's

void AppDelegate::applicationDidFinishLaunching() {
    logStart();
    setUpWindow();
    observers_.observeProcessMetadata();
    resetWindowIfAsked();
    keepOneWayIn();
    passGate();
}

void AppDelegate::setUpWindow() {
    observers_.observeMaximized();
    window_.setUpResizing();
}

void AppDelegate::resetWindowIfAsked() {
    if (desktop_.application.modifierFlags() != kModifierOption) return;
    auto& settings = OVUserDefaults::sharedInstance();
    settings.removeObjectForKey("searchPanelTopLeft");
    settings.removeObjectForKey("searchPanelWidth");
    window_.restoreWindowPosition();
}

void AppDelegate::keepOneWayIn() {
    auto& settings = OVUserDefaults::sharedInstance();
    if (GlobalHotKey::storedShortcut().isNone() && !settings.boolForKey("showStatusMenu"))
        settings.setBool(true, "showStatusMenu");
}

void AppDelegate::passGate() {
    const bool firstRun = setting("numberOfInvocations") == 0;
    const int64_t asked = setting("fullDiskAccess");
    const bool asks = (firstRun && asked == kNeverAsked) || asked == kGranted;
    if (fullDiskAccess_.enabled() || !asks) {
        applicationDidFinishLaunching2();
        return;
    }
    const auto goOn = [this](FullDiskAccessSetting answer) {
        OVUserDefaults::sharedInstance().setInteger(answer, "fullDiskAccess");
        applicationDidFinishLaunching2();
    };
    fullDiskAccess_.runFullDiskAccessCheckWithOkBlock([goOn] { goOn(kGranted); },
                                                      [goOn] { goOn(kSkipped); });
}

// ---- Stage two: projects, the ways in, the first mode

void AppDelegate::applicationDidFinishLaunching2() {
    searchMode_.loadProjects();
    setUpEntryPoints();
    observers_.observeTheRest();
    desktop_.updater.start();
    hideOrOpenQuickStart();
    watchRows();
    makeSearchModeCurrent();
    watchTheme();
    isLaunched_ = true;
}

void AppDelegate::setUpEntryPoints() {
    actions_.loadActions();
    hotKey_.setupHotKeys();
    statusItem_.setupMenuExtraMenuItem();
}

void AppDelegate::hideOrOpenQuickStart() {
    const bool firstRun = setting("numberOfInvocations") == 0;
    if (firstRun && OVUserDefaults::sharedInstance().boolForKey("showStatusMenu"))
        quickStartTimer_.start(1s, [this] { quickStart_.openQuickStart(); });
    else
        desktop_.application.hide();
}

void AppDelegate::makeSearchModeCurrent() {
    searchMode_.initSelectedProject();
    modeSwitcher_.begin(searchMode_);
    FSScanner::sharedInstance().setSearchModeActive(true);
}

void AppDelegate::watchTheme() {
    theme_ = desktop_.appearance.observe([this] { modeSwitcher_.themeChanged(); });
    fontWeight_ = Notifications::sharedInstance().fontWeightChanged.observe(
        [this] { MainQueue::async([this] { modeSwitcher_.themeChanged(); }); });
}

void AppDelegate::watchRows() {
    const char* path = std::getenv("TROVAST_ROWS_TO");
    if (path && *path) rowsFile_ = std::make_unique<RowsFile>(path);
    table_.setReloadedBlock([this](const ChangedRows&) {
        preview_.selectionMayHaveChanged();
        rowThumbnails_.somethingHappened();
        if (rowsFile_) rowsFile_->write(table_);
    });
}
