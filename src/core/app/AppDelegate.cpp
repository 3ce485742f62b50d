#include "core/app/AppDelegate.h"

#include "core/isExcluded.h"
#include "core/state/GlobalState.h"
#include "index/globalRules.h"
#include "platform/StatusBar.h"
#include "shell/commands/commands.h"
#include "shell/registry/ownKeys.h"
#include "shell/registry/shortcutText.h"
#include "util/World.h"
#include "util/settings/OVUserDefaults.h"

namespace {
constexpr auto kCrashTriggerFile = "/tmp/do-crash-trv";
}

AppDelegate::AppDelegate(const Screen& screen, const DesktopPorts& desktop)
    : screen_(screen),
      desktop_(desktop),
      flags_(OVUserDefaults::sharedInstance()),
      markedItemsMode_(World::current().provide<TRVMarkedItemsMode>(
          desktop.fileTypes, OVUserDefaults::sharedInstance())),
      searchMode_(World::current().provide<TRVSearchMode>(desktop.fileTypes, desktop.fileEvents,
                                                          markedItemsMode_)),
      recentMode_(World::current().provide<TRVRecentMode>(searchMode_, desktop.fileTypes)),
      browserMode_(World::current().provide<TRVBrowserMode>(
          TRVBrowserMode::Parts{.home = desktop.home,
                                .fileTypes = desktop.fileTypes,
                                .fileEvents = desktop.fileEvents,
                                .marks = markedItemsMode_})),
      messages_(screen.views.infoBar, [this] { desktop_.application.beep(); }),
      host_(screen.views, desktop.appearance),
      table_(screen.views.table, screen.views.window, host_),
      field_(screen.views.field, screen.views.infoBar, host_, table_),
      toggles_(host_, searchMode_),
      indicators_(
          {.view = screen.views.indicators, .host = host_, .field = field_, .toggles = toggles_}),
      frontmost_(desktop.frontmost),
      guard_([this] {
          field_.focusOnSearchField();
          // What was let go meanwhile, another window heard of.
          keys_.modifierFlagsChanged(desktop_.application.modifierFlags());
      }),
      preview_({.view = screen.preview,
                .previews = desktop.previews,
                .fileTypes = desktop.fileTypes,
                .selection = [this] { return selectedURLs(host_.currentMode()); },
                .error = [this](const std::string& text) { messages_.error(text); }}),
      rowThumbnails_({.thumbnails = desktop.thumbnails,
                      .table = screen.views.table,
                      .rows = table_,
                      .host = host_,
                      .dropExcluded =
                          [this](std::vector<FileURL>& urls) {
                              const GlobalRules global = GlobalRules::fromSettings();
                              std::erase_if(urls, [&](const FileURL& url) {
                                  return isExcluded(url, searchMode_.projects(), global,
                                                    desktop_.fileTypes);
                              });
                          }}),
      window_({.window = screen.views.window,
               .application = desktop.application,
               .field = field_,
               .frontmost = frontmost_,
               .guard = guard_,
               .preview = preview_,
               .updater = desktop.updater}),
      modeSwitcher_({.host = host_,
                     .window = screen.views.window,
                     .table = screen.views.table,
                     .infoBar = screen.views.infoBar,
                     .field = field_,
                     .application = desktop.application}),
      projectSwitcher_(searchMode_, host_),
      itemRenamer_({.searchMode = searchMode_,
                    .marks = markedItemsMode_,
                    .modes = modeSwitcher_,
                    .fileTypes = desktop.fileTypes}),
      scanRefresh_(
          host_, [this] { return static_cast<uint64_t>(searchMode_.scannedCount()); },
          [this] { host_.updateFreshness(); }),
      opener_({.applications = desktop.applications,
               .frontmost = frontmost_,
               .error = [this](const std::string& text) { messages_.error(text); }}),
      itemActions_({.applications = desktop.applications,
                    .pasteboard = desktop.pasteboard,
                    .window = window_,
                    .messages = messages_}),
      projectKeys_({.host = host_,
                    .searchMode = searchMode_,
                    .modeSwitcher = modeSwitcher_,
                    .projectSwitcher = projectSwitcher_,
                    .messages = messages_,
                    .browsePath =
                        [this](const FileURL& folder) {
                            browserMode_.browsePath(folder, TRVBrowserMode::BundleAs::folder);
                        }}),
      help_({.view = screen.help,
             .host = host_,
             .window = window_,
             .application = desktop.application,
             .guard = guard_,
             .shortcuts = KeyboardShortcuts::sharedInstance()}),
      contextMenu_({.host = host_,
                    .shortcuts = KeyboardShortcuts::sharedInstance(),
                    .applications = desktop.applications,
                    .view = screen.menu,
                    .guard = guard_,
                    .field = field_,
                    .window = window_,
                    .actions = itemActions_,
                    .messages = messages_}),
      keys_({.host = host_,
             .searchMode = searchMode_,
             .table = screen.views.table,
             .rows = table_,
             .fieldView = screen.views.field,
             .field = field_,
             .window = window_,
             .modeSwitcher = modeSwitcher_,
             .projectKeys = projectKeys_,
             .opener = opener_,
             .actions = itemActions_,
             .preview = preview_,
             .messages = messages_,
             .guard = guard_,
             .updater = desktop.updater,
             .shortcuts = KeyboardShortcuts::sharedInstance(),
             .openContextMenu = [this] { return contextMenu_.openAtSelection(); }}),
      actionIcons_({.host = host_,
                    .applications = desktop.applications,
                    .modeSwitcher = modeSwitcher_,
                    .keys = keys_,
                    .renew = [this] { table_.updateActionIcons(); }}),
      hotKey_(desktop.hotKeys, KeyboardShortcuts::sharedInstance(), messages_,
              [this] { window_.toggleMainWindow(); }),
      statusItem_(desktop.statusBar,
                  {.toggleMainWindow = [this] { window_.toggleMainWindow(); },
                   .openQuickStart = [this] { quickStart_.openQuickStart(); },
                   .openPreferences = [this] { preferences_.openPreferences(); },
                   .terminate = [this] { desktop_.application.terminate(); }},
                  {.toggleMainWindow =
                       [this] {
                           const HotKey& hotKey = hotKey_.currentShortcut();
                           return hotKey.isNone()
                                      ? std::string()
                                      : shortcutText(hotKey.keyCode, hotKey.modifierFlags);
                       },
                   .openPreferences = shortcutText(ownKeys::kKeyComma, kModifierCommand),
                   .terminate = shortcutText(kKeyQ, kModifierCommand)}),
      quickStart_({.view = screen.quickStart,
                   .hotKey = hotKey_,
                   .currentCache = [this] { return searchMode_.sharedCurrentCache(); },
                   .search = [this](const std::u16string& query) { search(query); },
                   .showMainWindow = [this] { window_.showMainWindow(); }}),
      preferences_({.view = screen.preferences,
                    .alerts = screen.views.alerts,
                    .hotKey = hotKey_,
                    .shortcuts = KeyboardShortcuts::sharedInstance(),
                    .window = window_,
                    .application = desktop.application,
                    .frontmost = frontmost_,
                    .guard = guard_,
                    .searchAgain = [this] { toggles_.searchAgain(); }}),
      fullDiskAccess_(desktop.diskAccess, screen.diskAccess),
      quitByHold_(screen.keyEvents, screen.quitProgress,
                  [this] { desktop_.application.terminate(); }),
      observers_({.host = host_,
                  .searchMode = searchMode_,
                  .projects = projectSwitcher_,
                  .field = field_,
                  .window = window_,
                  .statusItem = statusItem_,
                  .hotKey = hotKey_}),
      crashTrigger_(FileURL(kCrashTriggerFile)) {
    joinParts();
}

AppDelegate::~AppDelegate() {
    GlobalState::sharedInstance().endWork();
    searchMode_.endWork();
    browserMode_.endEventStream();
    World::current().mainQueue().close();
    World::current().work().drainAll();
    searchMode_.endEvents();
    screen_.views.field.setDelegate(nullptr);
    screen_.views.table.setDelegate(nullptr);
    screen_.views.table.setData(nullptr);
    desktop_.hotKeys.unregisterShortcut();
    desktop_.statusBar.removeStatusItem();
}

void AppDelegate::joinParts() {
    host_.join({.messages = messages_,
                .table = table_,
                .field = field_,
                .indicators = indicators_,
                .scanRefresh = scanRefresh_,
                .guard = guard_,
                .modeSwitcher = modeSwitcher_,
                .projectSwitcher = projectSwitcher_,
                .itemRenamer = itemRenamer_,
                .markedItems = markedItemsMode_});
    for (TRVMode* mode :
         {static_cast<TRVMode*>(&searchMode_), static_cast<TRVMode*>(&browserMode_),
          static_cast<TRVMode*>(&recentMode_), static_cast<TRVMode*>(&markedItemsMode_)})
        modeSwitcher_.addMode(*mode);
    table_.setDecoration(
        [this](RowContent& content, size_t row) { rowThumbnails_.addTo(content, row); });
    table_.setActionSource(
        [this](size_t row, const RowContent& shown) { return actionIcons_.actionOf(row, shown); });
    host_.setFreshnessSource([this] { return searchMode_.freshness(); });
    joinKeys();
    screen_.views.field.setDelegate(this);
    screen_.views.table.setDelegate(this);
    screen_.views.table.setData(&table_);
    GlobalState::sharedInstance().setSearchObserver(
        {.started = [this] { host_.startSearchAnimation(); },
         .ended =
             [this](TRVMode&) {
                 host_.stopSearchAnimation();
                 host_.updateTextsOfCurrentMode();
             }});
    scanCompleted_ = searchMode_.scanCompleted().observe([this] { quickStart_.indexChanged(); });
    visibility_ = window_.visibilityChanged().observe([this](bool visible) {
        searchMode_.setWindowVisible(visible);
        if (visible) actionIcons_.windowWasOpened();
        rowThumbnails_.somethingHappened();
        host_.updateFreshness();
        if (!visible) help_.reset();
    });
    keyboardLost_ = window_.keyboardLost().observe([this] {
        keys_.modifierFlagsChanged(0);
        help_.reset();
    });
}

void AppDelegate::joinKeys() {
    bindCommands(KeyboardShortcuts::sharedInstance(), {.host = host_,
                                                       .searchMode = searchMode_,
                                                       .table = table_,
                                                       .field = field_,
                                                       .window = window_,
                                                       .modeSwitcher = modeSwitcher_,
                                                       .projectSwitcher = projectSwitcher_,
                                                       .toggles = toggles_,
                                                       .actions = itemActions_,
                                                       .help = help_,
                                                       .preview = preview_,
                                                       .messages = messages_});
    // Before quitByHold_ goes, it takes the monitor away.
    screen_.keyEvents.setMonitor([this](const KeyEvent& event) {
        keys_.modifierFlagsChanged(event.modifierFlags);
        if (quitByHold_.sendEvent(event)) return true;
        // An open menu has all the keys.
        return !contextMenu_.isOpen() && (preferences_.sendEvent(event) || help_.sendEvent(event));
    });
}

void AppDelegate::tableViewSelectionDidChange() {
    table_.tableViewSelectionDidChange();
    help_.selectionDidChange();
    preview_.selectionMayHaveChanged();
    rowThumbnails_.somethingHappened();
}

void AppDelegate::clipViewBoundsDidChange() {
    table_.clipViewBoundsDidChange();
    rowThumbnails_.somethingHappened();
}

bool AppDelegate::rowEditDoCommand(RowEditCommand command, const std::u16string& text) {
    auto* files = dynamic_cast<TRVModeRepresentingFiles*>(host_.currentMode());
    return files && files->controlDoCommandBySelector(command, text);
}

void AppDelegate::rowEditDidEnd() {
    auto* files = dynamic_cast<TRVModeRepresentingFiles*>(host_.currentMode());
    if (files) files->controlTextDidEndEditing();
    table_.updateActionIcons();
}

void AppDelegate::search(const std::u16string& query) {
    if (!searchMode_.isActive()) modeSwitcher_.switchToMode(searchMode_);
    field_.updateSearchString(query);
    field_.searchStringDidChange();
    window_.showMainWindow();
}
