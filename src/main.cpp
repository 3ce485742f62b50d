#include <unistd.h>

#include <QApplication>
#include <QIcon>
#include <QLocale>

#include "core/app/AppDelegate.h"
#include "platform/linux/FullAccess.h"
#include "platform/linux/LinuxAppearance.h"
#include "platform/linux/LinuxApplication.h"
#include "platform/linux/LinuxApplications.h"
#include "platform/linux/LinuxEntryPoints.h"
#include "platform/linux/LinuxFileTypes.h"
#include "platform/linux/LinuxFrontmost.h"
#include "platform/linux/LinuxHotKeys.h"
#include "platform/linux/LinuxPasteboard.h"
#include "platform/linux/LinuxPreviews.h"
#include "platform/linux/LinuxStatusBar.h"
#include "platform/linux/LinuxThumbnails.h"
#include "platform/linux/NoUpdater.h"
#include "platform/linux/QtMainLoop.h"
#include "platform/linux/TerminationSignals.h"
#include "platform/linux/WindowHints.h"
#include "platform/linux/chooseDisplay.h"
#include "platform/linux/commandLine.h"
#include "platform/linux/decoder/ThumbnailStore.h"
#include "platform/linux/events/LinuxFileEvents.h"
#include "platform/linux/followLink.h"
#include "util/UserFolders.h"
#include "util/World.h"
#include "util/log.h"
#include "views/AlertDialogs.h"
#include "views/DiskAccessDialog.h"
#include "views/HelpSheet.h"
#include "views/KeyMonitor.h"
#include "views/ProgramIcon.h"
#include "views/QuickStartWindow.h"
#include "views/QuitProgress.h"
#include "views/RowMenu.h"
#include "views/SearchWindow.h"
#include "views/preferences/PreferencesWindow.h"

namespace {

/// The real desktop: what the program asks of it, and the program's own windows.
struct Desktop {
    explicit Desktop(DisplayChoice display)
        : applications(display == DisplayChoice::ours),
          application([this](uintptr_t id) { frontmost.activateOwnWindow(id); }) {}

    WindowSystem windowSystem() {
        return {.isComposited = [this] { return frontmost.composited(); },
                .prepare = WindowHints::prepareWindow,
                .takeClicksIn = WindowHints::takeClicksIn,
                .activate = [this](uintptr_t id) { application.activateWindow(id); },
                .followLink = followLink,
                .keySymbols = WindowHints::keySymbols(),
                .look =
                    [this] {
                        return DesktopLook{.isDark = appearance.isDark(),
                                           .highContrast = appearance.wantsHighContrast(),
                                           .lessMotion = appearance.wantsLessMotion(),
                                           .textScale = appearance.textScale()};
                    }};
    }
    DesktopPorts ports(Previews& previews, Thumbnails& thumbnails) {
        return {.application = application,
                .applications = applications,
                .pasteboard = pasteboard,
                .fileTypes = fileTypes,
                .fileEvents = fileEvents,
                .frontmost = frontmost,
                .hotKeys = hotKeys,
                .statusBar = statusBar,
                .appearance = appearance,
                .updater = updater,
                .diskAccess = diskAccess,
                .previews = previews,
                .thumbnails = thumbnails,
                .home = userFolders::home()};
    }
    Screen screen() {
        return {.views = {.window = window,
                          .field = window.field(),
                          .table = window.table(),
                          .infoBar = window.infoBar(),
                          .indicators = window.indicators(),
                          .alerts = alerts},
                .keyEvents = keyEvents,
                .quitProgress = quitProgress,
                .quickStart = quickStart,
                .preview = window.preview(),
                .diskAccess = diskAccessDialog,
                .preferences = preferences,
                .help = help,
                .menu = menu};
    }

    LinuxFrontmost frontmost;
    LinuxApplications applications;
    LinuxPasteboard pasteboard;
    LinuxApplication application;
    LinuxFileTypes fileTypes;
    LinuxFileEvents fileEvents;
    LinuxHotKeys hotKeys;
    LinuxStatusBar statusBar{programIcon()};
    LinuxAppearance appearance;
    NoUpdater updater;
    FullAccess diskAccess;
    SearchWindow window{windowSystem()};
    AlertDialogs alerts{windowSystem()};
    KeyMonitor keyEvents{WindowHints::keySymbols()};
    QuitProgress quitProgress{windowSystem()};
    QuickStartWindow quickStart{windowSystem()};
    DiskAccessDialog diskAccessDialog{windowSystem()};
    PreferencesWindow preferences{windowSystem()};
    RowMenu menu{windowSystem()};
    HelpSheet help{windowSystem(), [this] { return window.sheetPlace(); }};
};

/// What may be asked from outside; of no effect before the launch is through, and after the end.
EntryPoints::Requests requestsTo(AppDelegate*& delegate) {
    const auto ask = [&delegate](auto what) {
        return [&delegate, what] {
            if (delegate && delegate->isLaunched()) what(*delegate);
        };
    };
    const auto show = [](AppDelegate& app) {
        // Only the toggle remembers who had the keyboard.
        app.window().isMainWindowVisible() ? app.window().showMainWindow()
                                           : app.window().toggleMainWindow();
    };
    const auto showIn = [&](ModeIdentifier identifier) {
        return ask([show, identifier](AppDelegate& app) {
            if (TRVMode* const mode = app.modeSwitcher().modeWithIdentifier(identifier))
                app.modeSwitcher().switchToMode(*mode);
            show(app);
        });
    };
    return {.activate = ask(show),
            .actions = {{"toggle", ask([](AppDelegate& app) { app.window().toggleMainWindow(); })},
                        {"search", showIn(kSearchMode)},
                        {"browse", showIn(kBrowserMode)},
                        {"recent", showIn(kRecentMode)},
                        {"marked", showIn(kMarkedItemsMode)}},
            .open = [show = ask(show)](const std::vector<std::string>&) { show(); }};
}

void fulfil(const EntryPoints::Wish& wish, const EntryPoints::Requests& requests) {
    if (!wish.urls.empty())
        requests.open(wish.urls);
    else if (const auto found = requests.actions.find(wish.action); found != requests.actions.end())
        found->second();
}

/// Whether the key at the place of Y writes a z.
KeyLayout keyLayout() {
    constexpr uint32_t kPlaceOfY = 29;
    return WindowHints::keySymbol(kPlaceOfY, 0) == 'z' ? KeyLayout::other : KeyLayout::qwerty;
}

constexpr unsigned kLongestEndSeconds = 30;

}  // namespace

int main(int argc, char** argv) {
    const CommandLine commandLine = parseCommandLine(argc, argv);
    if (commandLine.status) return *commandLine.status;
    const DisplayChoice display = chooseDisplay();
    if (display == DisplayChoice::none) return 1;
    QApplication application(argc, argv);
    QApplication::setApplicationName("Trovast");
    QApplication::setDesktopFileName("com.orrinvale.Trovast");
    QApplication::setWindowIcon(programIcon());
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setLayoutDirection(QLocale::system().textDirection());

    LinuxEntryPoints entryPoints;
    AppDelegate* delegate = nullptr;
    const EntryPoints::Requests requests = requestsTo(delegate);
    if (!entryPoints.claim(requests, commandLine.wish)) return 0;

    // The desktop outlives all that uses it, the log all that writes to it.
    struct LogEnd {
        ~LogEnd() { logging::close(); }
    } logEnd;
    Desktop desktop(display);
    World world;
    openSettingsAndLog({.home = userFolders::home(),
                        .configuration = userFolders::configuration(),
                        .state = userFolders::state(),
                        .layout = keyLayout()});
    QtMainLoop loop(world.mainQueue(), world.clock());
    TerminationSignals signals([&desktop] { desktop.application.terminate(); });
    LinuxPreviews previews;
    LinuxThumbnails thumbnails(thumbnailStore::folder());
    AppDelegate app(desktop.screen(), desktop.ports(previews, thumbnails));
    delegate = &app;
    app.applicationDidFinishLaunching();
    if (!qEnvironmentVariableIsSet("TROVAST_HIDDEN")) fulfil(commandLine.wish, requests);
    const int status = QApplication::exec();
    delegate = nullptr;
    // A thread that asks a disk which answers nobody cannot be ended; the program can.
    alarm(kLongestEndSeconds);
    return status;
}
