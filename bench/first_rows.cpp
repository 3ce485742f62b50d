// bench_first_rows ROOT [QUERY]: starts the application on ROOT as the home folder, on a window
// without a screen, with QUERY already typed, and prints how long after the start the first 5,000
// entries were read and how long after that rows stood in the table, while the scan went on.
#include <chrono>
#include <cstdio>
#include <thread>

#include "core/app/AppDelegate.h"
#include "platform/FileTypes.h"
#include "support/FakeScreen.h"
#include "support/TemporaryFolder.h"
#include "util/Unicode.h"
#include "util/World.h"
#include "util/log.h"

namespace {

struct PlainTypes : FileTypes {
    bool isFilePackageAtPath(const FileURL&) const override { return false; }
    std::string iconNameForItem(const FileURL&, uint8_t) const override { return {}; }
};

double now() {
    return std::chrono::duration<double, std::milli>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return 2;
    const TemporaryFolder outside;
    const Folders folders{.home = FileURL(argv[1]),
                          .configuration = outside.at("config"),
                          .state = outside.at("state")};
    World world;
    openSettingsAndLog(folders);
    FakeWindow window;
    FakeField field;
    FakeTable table;
    FakeInfoBar infoBar;
    RecordingApplications applications;
    RecordingFrontmost frontmost;
    const PlainTypes types;
    AppDelegate app({window, field, table, infoBar}, {applications, types, &frontmost}, folders);
    const double start = now();
    app.launch();
    app.showMainWindow();
    const double launched = now();
    field.type(toUtf16Lenient(argc > 2 ? argv[2] : "main"));
    double read = 0, shown = 0;
    bool scanRan = false;
    while (shown == 0 && now() - start < 30000) {
        world.mainQueue().runPending();
        if (read == 0 && TRVSearchMode::sharedInstance().scannedCount() >= 5000) read = now();
        if (table.data->numberOfRows() > 0) {
            scanRan = infoBar.busy;
            table.data->row(0);
            shown = now();
        }
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    if (read == 0) read = shown;  // rows came before so many were read
    std::printf("launch_ms=%.1f first_5000_ms=%.1f rows_after_ms=%.1f scan_ran=%d\n",
                launched - start, read - start, shown - read, scanRan);
    logging::close();
    return 0;
}
