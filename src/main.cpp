#include <QApplication>

#include "core/app/AppDelegate.h"
#include "platform/linux/LinuxApplications.h"
#include "platform/linux/LinuxEntryPoints.h"
#include "platform/linux/LinuxFileTypes.h"
#include "platform/linux/LinuxFrontmost.h"
#include "platform/linux/QtMainLoop.h"
#include "platform/linux/TerminationSignals.h"
#include "platform/linux/WindowHints.h"
#include "platform/linux/chooseDisplay.h"
#include "util/UserFolders.h"
#include "util/World.h"
#include "util/log.h"
#include "views/SearchWindow.h"

int main(int argc, char** argv) {
    const DisplayChoice display = chooseDisplay();
    if (display == DisplayChoice::none) return 1;
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
    LinuxApplications applications(display == DisplayChoice::ours);
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
