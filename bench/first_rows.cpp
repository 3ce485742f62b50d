// bench_first_rows ROOT [QUERY]: starts the application on ROOT as the home folder, on a window
// without a screen, with QUERY already typed, and prints how long after the start the first 5,000
// entries were read and how long after that rows stood in the table, while the scan went on.
#include <chrono>
#include <cstdio>
#include <thread>

#include "AppSession.h"
#include "support/TemporaryFolder.h"
#include "util/Unicode.h"

namespace {

double now() {
    return std::chrono::duration<double, std::milli>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return 2;
    const TemporaryFolder outside;
    const double start = now();
    AppSession session({.home = outside.url(),
                        .settings = {{"currentProject",
                                      {{"uuid", argv[1]},
                                       {"name", argv[1]},
                                       {"enabled", true},
                                       {"matchFilenameOnly", true},
                                       {"folders", {{{"path", argv[1]}}}}}}},
                        .followsDisk = false});
    session.app().window().showMainWindow();
    const double launched = now();
    SimulatedScreen& screen = session.screen();
    screen.field.type(toUtf16Lenient(argc > 2 ? argv[2] : "main"));
    double read = 0, shown = 0;
    bool scanRan = false;
    while (shown == 0 && now() - start < 30000) {
        session.world().mainQueue().runPending();
        if (read == 0 && TRVSearchMode::sharedInstance().scannedCount() >= 5000) read = now();
        if (screen.table.numberOfRows() > 0) {
            scanRan = screen.infoBar.scanning;
            (void)screen.table.row(0);
            shown = now();
        }
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    if (read == 0) read = shown;  // rows came before so many were read
    std::printf("launch_ms=%.1f first_5000_ms=%.1f rows_after_ms=%.1f scan_ran=%d\n",
                launched - start, read - start, shown - read, scanRan);
    return 0;
}
