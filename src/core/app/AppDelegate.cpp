#include "core/app/AppDelegate.h"

#include <cstdlib>

#include "core/state/GlobalState.h"
#include "shell/registry/PreferencesController.h"
#include "util/World.h"
#include "util/log.h"
#include "util/settings/OVUserDefaults.h"
#include "util/settings/SettingsFile.h"

void openSettingsAndLog(const Folders& folders) {
    logging::open({.folder = folders.state.path(), .systemLog = true, .standardError = true});
    auto& settings = World::current().provide<OVUserDefaults>(
        std::make_unique<SettingsFile>(folders.configuration.appending("settings.json")));
    PreferencesController::setupUserDefaults(settings,
                                             {.home = folders.home, .onlyExistingFolders = true});
}

AppDelegate::AppDelegate(const CoreModeHost::Views& views, const DesktopPorts& desktop,
                         const Folders&)
    : views_(views),
      flags_(OVUserDefaults::sharedInstance()),
      searchMode_(World::current().provide<TRVSearchMode>(desktop.fileTypes)),
      messages_(views.infoBar),
      host_(views, messages_),
      table_(views.table, views.window),
      field_(views.field, host_, table_),
      window_(views.window, field_, desktop.frontmost),
      scanRefresh_(host_, [this] { return static_cast<uint64_t>(searchMode_.scannedCount()); }),
      opener_(desktop.applications, [this](const std::string& text) { messages_.error(text); }),
      keys_({.host = host_,
             .searchMode = searchMode_,
             .table = views.table,
             .field = field_,
             .window = window_,
             .opener = opener_,
             .messages = messages_}) {}

AppDelegate::~AppDelegate() {
    searchMode_.abortScan();
    World::current().mainQueue().close();
    World::current().work().drainAll();
    views_.field.setDelegate(nullptr);
    views_.table.setDelegate(nullptr);
    views_.table.setData(nullptr);
    views_.window.setDelegate(nullptr);
}

void AppDelegate::launch() {
    logInfo("Started %s %s", "Trovast", TROVAST_VERSION);
    joinViews();
    watchRows();
    searchMode_.loadProjects();
    makeSearchModeCurrent();
    searchMode_.initSelectedProject();
}

void AppDelegate::joinViews() {
    host_.join(table_, scanRefresh_);
    searchMode_.setHost(&host_);
    views_.field.setDelegate(this);
    views_.table.setDelegate(this);
    views_.table.setData(&table_);
    GlobalState::sharedInstance().setSearchObserver(
        {.started = [] {}, .ended = [this](TRVMode&) { host_.updateTextsOfCurrentMode(); }});
}

void AppDelegate::makeSearchModeCurrent() {
    GlobalState::sharedInstance().setCurrentMode(&searchMode_);
    FSScanner::sharedInstance().setSearchModeActive(true);
    host_.updateTextsOfCurrentMode();
}

void AppDelegate::watchRows() {
    const char* path = std::getenv("TROVAST_ROWS_TO");
    if (!path || !*path) return;
    rowsFile_ = std::make_unique<RowsFile>(path);
    table_.setReloadedBlock([this] { rowsFile_->write(table_); });
}
