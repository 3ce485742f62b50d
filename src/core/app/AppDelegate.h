#pragma once
#include <memory>
#include <optional>

#include "actions/ActionStore.h"
#include "core/CoreModeHost.h"
#include "core/FrontmostApplication.h"
#include "core/GlobalHotKey.h"
#include "core/HidingGuard.h"
#include "core/Indicators.h"
#include "core/ItemOpener.h"
#include "core/ItemRenamer.h"
#include "core/ModeSwitcher.h"
#include "core/PreviewController.h"
#include "core/ProjectSwitcher.h"
#include "core/QuickStart.h"
#include "core/ResultTableController.h"
#include "core/RowThumbnails.h"
#include "core/RowsFile.h"
#include "core/ScanRefresh.h"
#include "core/SearchFieldController.h"
#include "core/SearchToggles.h"
#include "core/SearchWindowController.h"
#include "core/StatusItem.h"
#include "core/UserMessages.h"
#include "core/app/CrashTrigger.h"
#include "core/app/QuitByHold.h"
#include "core/app/SettingsObservers.h"
#include "fulldiskaccess/FullDiskAccess.h"
#include "modes/TRVBrowserMode.h"
#include "modes/TRVMarkedItemsMode.h"
#include "modes/TRVRecentMode.h"
#include "modes/TRVSearchMode.h"
#include "shell/ActionIcons.h"
#include "shell/ContextMenu.h"
#include "shell/Help.h"
#include "shell/ItemActions.h"
#include "shell/ProjectKeys.h"
#include "shell/SearchFieldKeys.h"
#include "shell/preferences/Preferences.h"
#include "util/settings/ProcessFlagsMirror.h"

class Applications;
class FileEvents;
class FileTypes;
class Pasteboard;

/// The desktop, as far as the program asks it for something. All outlive the AppDelegate.
struct DesktopPorts {
    OwnApplication& application;
    Applications& applications;
    Pasteboard& pasteboard;
    const FileTypes& fileTypes;
    FileEvents& fileEvents;
    Frontmost& frontmost;
    HotKeys& hotKeys;
    StatusBar& statusBar;
    Appearance& appearance;
    Updater& updater;
    DiskAccess& diskAccess;
    Previews& previews;
    Thumbnails& thumbnails;
    FileURL home;  // the user's
};

/// The program's own windows.
struct Screen {
    CoreModeHost::Views views;
    KeyEvents& keyEvents;
    QuitProgressView& quitProgress;
    QuickStartView& quickStart;
    PreviewView& preview;
    DiskAccessView& diskAccess;
    PreferencesView& preferences;
    HelpView& help;
    MenuView& menu;
};

/// Where the user's things are.
struct Folders {
    FileURL home;
    FileURL configuration;  // of this program: settings.json
    FileURL state;          // of this program: the log
    KeyLayout layout = KeyLayout::qwerty;
};

/// Owns the application's parts and joins them; decides nothing. Members stand in the order in
/// which they are made.
/// Owner:   main, the console or a test, inside a World. Threads: main.
class AppDelegate : private SearchFieldViewDelegate, private ResultTableViewDelegate {
  public:
    AppDelegate(const Screen& screen, const DesktopPorts& desktop);
    ~AppDelegate();

    /// The launch, step by step. A scan goes on behind; the gate may put off stage two.
    void applicationDidFinishLaunching();
    /// Stage two is through.
    bool isLaunched() const { return isLaunched_; }

    SearchWindowController& window() { return window_; }
    ResultTableController& table() { return table_; }
    SearchFieldController& field() { return field_; }
    ModeSwitcher& modeSwitcher() { return modeSwitcher_; }
    ProjectSwitcher& projectSwitcher() { return projectSwitcher_; }
    TRVSearchMode& searchMode() { return searchMode_; }
    SearchToggles& toggles() { return toggles_; }
    TRVBrowserMode& browserMode() { return browserMode_; }
    TRVRecentMode& recentMode() { return recentMode_; }
    TRVMarkedItemsMode& markedItemsMode() { return markedItemsMode_; }
    HidingGuard& hidingGuard() { return guard_; }
    ModeHost& modeHost() { return host_; }

  private:
    // Stage one.
    void joinParts();
    void joinKeys();
    void setUpWindow();
    void resetWindowIfAsked();
    void keepOneWayIn();
    void passGate();
    // Stage two.
    void applicationDidFinishLaunching2();
    void setUpEntryPoints();
    void hideOrOpenQuickStart();
    void makeSearchModeCurrent();
    void watchTheme();
    void watchRows();

    void search(const std::u16string& query);

    void searchFieldSelectionDidChange(TextRange selection) override {
        rowThumbnails_.somethingHappened();
        field_.selectionChanged(selection);
    }
    bool searchFieldKeyDown(const KeyEvent& event) override {
        return keys_.searchFieldKeyDown(event);
    }
    void tableViewSelectionDidChange() override;
    void clipViewBoundsDidChange() override;
    bool rowEditDoCommand(RowEditCommand command, const std::u16string& text) override;
    void rowEditDidEnd() override;
    void contextMenuWanted(Point place) override { contextMenu_.openAt(place); }
    void rowDoubleClicked(size_t) override {
        keys_.openSelection(SearchFieldKeys::OpenWith::defaultApplication);
    }

    const Screen screen_;
    const DesktopPorts desktop_;
    const ProcessFlagsMirror flags_;  // settings that hot paths look at
    TRVMarkedItemsMode& markedItemsMode_;
    TRVSearchMode& searchMode_;  // the first mode
    TRVRecentMode& recentMode_;
    TRVBrowserMode& browserMode_;
    UserMessages messages_;            // texts in the info bar
    CoreModeHost host_;                // what the modes ask of us
    ResultTableController table_;      // rows and window height
    SearchFieldController field_;      // the text and its searches
    SearchToggles toggles_;            // switches of what is listed
    Indicators indicators_;            // the buttons that show them
    FrontmostApplication frontmost_;   // who had the keyboard
    HidingGuard guard_;                // what keeps the window from going
    PreviewController preview_;        // what the selected item holds
    RowThumbnails rowThumbnails_;      // pictures instead of icons
    SearchWindowController window_;    // showing and hiding
    ModeSwitcher modeSwitcher_;        // which mode is in it
    ProjectSwitcher projectSwitcher_;  // which project is searched
    ItemRenamer itemRenamer_;          // new names on the disk and everywhere
    ScanRefresh scanRefresh_;          // the list while a scan runs
    ItemOpener opener_;                // Return
    ItemActions itemActions_;          // items in other programs
    ProjectKeys projectKeys_;          // the digits
    Help help_;                        // which keys there are
    ContextMenu contextMenu_;          // what can be done to a row
    SearchFieldKeys keys_;             // what keys do
    ActionIcons actionIcons_;          // what Return does
    ActionStore actions_;              // the user's own actions
    GlobalHotKey hotKey_;              // brings the window up
    StatusItem statusItem_;            // does so too
    QuickStart quickStart_;            // the page of the first run
    Preferences preferences_;          // their window
    FullDiskAccess fullDiskAccess_;    // the gate at launch
    QuitByHold quitByHold_;            // the quit key
    SettingsObservers observers_;      // what a change of settings sets off
    CrashTrigger crashTrigger_;        // for trying crash reports
    std::unique_ptr<RowsFile> rowsFile_;
    OneShotTimer quickStartTimer_;
    bool isLaunched_ = false;
    Subscription theme_, fontWeight_, visibility_, keyboardLost_, scanCompleted_;
};

/// The settings and the log, before anything else is made: the settings in a file of the folder, or
/// in memory where there is none. Inside a World, on the main thread.
void openSettingsAndLog(const Folders& folders);
