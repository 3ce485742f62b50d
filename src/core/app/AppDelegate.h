#pragma once
#include <memory>

#include "core/CoreModeHost.h"
#include "core/ItemOpener.h"
#include "core/ResultTableController.h"
#include "core/RowsFile.h"
#include "core/ScanRefresh.h"
#include "core/SearchFieldController.h"
#include "core/SearchWindowController.h"
#include "core/UserMessages.h"
#include "modes/TRVSearchMode.h"
#include "shell/SearchFieldKeys.h"
#include "util/settings/ProcessFlagsMirror.h"

class Applications;
class FileTypes;
class Frontmost;

/// The desktop, as far as the program asks it for something. All outlive the AppDelegate.
struct DesktopPorts {
    Applications& applications;
    const FileTypes& fileTypes;
    Frontmost* frontmost;  // null where the desktop cannot tell who is in front
};

/// Where the user's things are.
struct Folders {
    FileURL home;
    FileURL configuration;  // of this program: settings.json
    FileURL state;          // of this program: the log
};

/// Owns the application's parts and joins them; decides nothing. Members stand in the order in
/// which they are made.
/// Owner:   main, the console or a test, inside a World. Threads: main.
class AppDelegate : private SearchFieldViewDelegate, private ResultTableViewDelegate {
  public:
    AppDelegate(const CoreModeHost::Views& views, const DesktopPorts& desktop,
                const Folders& folders);
    ~AppDelegate();

    /// The launch, step by step. The window can be shown when it returns; a scan goes on behind.
    void launch();
    void showMainWindow() { window_.showMainWindow(); }
    void toggleMainWindow() { window_.toggleMainWindow(); }

  private:
    void joinViews();
    void makeSearchModeCurrent();
    void watchRows();

    void searchFieldTextDidChange() override { field_.searchStringDidChange(); }
    bool searchFieldKeyDown(const KeyEvent& event) override {
        return keys_.handleSearchFieldKeyDownEvent(event);
    }
    void tableViewSelectionDidChange() override { searchMode_.saveSelection(); }
    void rowDoubleClicked(size_t) override { keys_.openSelection(); }

    const CoreModeHost::Views views_;
    const ProcessFlagsMirror flags_;  // settings that hot paths look at
    TRVSearchMode& searchMode_;       // the one mode
    UserMessages messages_;           // texts in the info bar
    CoreModeHost host_;               // what the modes ask of us
    ResultTableController table_;     // rows and window height
    SearchFieldController field_;     // the text and its searches
    SearchWindowController window_;   // showing and hiding
    ScanRefresh scanRefresh_;         // the list while a scan runs
    ItemOpener opener_;               // Return
    SearchFieldKeys keys_;            // what keys do
    std::unique_ptr<RowsFile> rowsFile_;
};

/// The settings and the log, before anything else is made: the settings in a file of the folder, or
/// in memory where there is none. Inside a World, on the main thread.
void openSettingsAndLog(const Folders& folders);
