#include <QApplication>
#include <cstdio>
#include <cstdlib>

#include "core/app/AppDelegate.h"
#include "platform/linux/LinuxApplications.h"
#include "platform/linux/LinuxEntryPoints.h"
#include "platform/linux/LinuxFileTypes.h"
#include "platform/linux/LinuxFrontmost.h"
#include "platform/linux/QtMainLoop.h"
#include "platform/linux/TerminationSignals.h"
#include "platform/linux/WindowHints.h"
#include "util/UserFolders.h"
#include "util/World.h"
#include "util/log.h"
#include "views/SearchWindow.h"

namespace {

/// A Wayland session lets no window stand where it wants or say who was in front; X clients may.
void choosePlatform() {
    const char* display = std::getenv("DISPLAY");
    if (std::getenv("WAYLAND_DISPLAY") && display && *display && !std::getenv("QT_QPA_PLATFORM"))
        setenv("QT_QPA_PLATFORM", "xcb", 1);
}

bool hasDisplay() {
    return std::getenv("DISPLAY") || std::getenv("WAYLAND_DISPLAY") ||
           std::getenv("QT_QPA_PLATFORM");
}

}  // namespace

int main(int argc, char** argv) {
    choosePlatform();
    if (!hasDisplay()) {
        std::fputs("Trovast needs a display: neither DISPLAY nor WAYLAND_DISPLAY is set.\n",
                   stderr);
        return 1;
    }
    QApplication application(argc, argv);
    QApplication::setApplicationName("Trovast");
    QApplication::setDesktopFileName("com.orrinvale.Trovast");
    QApplication::setQuitOnLastWindowClosed(false);

    World world;
    const Folders folders{.home = userFolders::home(),
                          .configuration = userFolders::configuration(),
                          .state = userFolders::state()};
    LinuxEntryPoints entryPoints;
    AppDelegate* delegate = nullptr;
    const bool first = entryPoints.claim(
        [&] {
            if (delegate) delegate->showMainWindow();
        },
        [&] {
            if (delegate) delegate->toggleMainWindow();
        });
    if (!first) return 0;  // the one that runs shows its window

    openSettingsAndLog(folders);
    LinuxApplications applications;
    LinuxFileTypes fileTypes;
    LinuxFrontmost frontmost;
    SearchWindow window({.isComposited = [&] { return frontmost.composited(); },
                         .prepare = WindowHints::prepareWindow,
                         .takeClicksIn = WindowHints::takeClicksIn,
                         .activate = [&](uintptr_t id) { frontmost.activateOwnWindow(id); },
                         .keySymbols = WindowHints::keySymbol});
    QtMainLoop loop(world.mainQueue(), world.clock());
    TerminationSignals signals([] { QApplication::quit(); });
    AppDelegate app({.window = window,
                     .field = window.field(),
                     .table = window.table(),
                     .infoBar = window.infoBar()},
                    {.applications = applications, .fileTypes = fileTypes, .frontmost = &frontmost},
                    folders);
    delegate = &app;
    app.launch();
    app.showMainWindow();
    const int status = QApplication::exec();
    delegate = nullptr;
    logging::close();
    return status;
}
