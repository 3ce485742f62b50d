// bench_watch FOLDER [FOLDERS [FILES]]: makes a tree of FOLDERS folders (100,000) in FOLDER and
// prints a line of NAME=VALUE words for each interface: seconds until all are watched and until the
// watches are dropped, milliseconds from the making of one file to its event (median and 99 of
// 100), and seconds until FILES files (100,000) that a process makes at once are told.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "platform/linux/events/LinuxFileEvents.h"
#include "util/World.h"

namespace {

using Time = std::chrono::steady_clock::time_point;

Time now() {
    return std::chrono::steady_clock::now();
}

double secondsSince(Time begin) {
    return std::chrono::duration<double>(now() - begin).count();
}

void makeFile(const std::string& path) {
    const int file = open(path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
    if (file >= 0) close(file);
}

/// Ten folders in each folder, level by level.
void makeFolders(const std::string& top, size_t count) {
    std::vector<std::string> folders{top};
    mkdir(top.c_str(), 0700);
    for (size_t i = 0; folders.size() < count; i++)
        for (int child = 0; child < 10 && folders.size() < count; child++) {
            folders.push_back(folders[i] + "/" + std::to_string(child));
            mkdir(folders.back().c_str(), 0700);
        }
}

struct Reader {
    std::atomic<size_t> created = 0, scans = 0;
    std::atomic<Time> last{};

    void take(const FileEventBatch& batch) {
        size_t count = 0;
        for (const FileEvent& event : batch) {
            count += (event.flags & kFSEventStreamEventFlagItemCreated) != 0;
            scans += (event.flags & kFSEventStreamEventFlagMustScanSubDirs) != 0;
        }
        last = now();
        created += count;
    }
};

void waitUntilIdle() {
    while (!World::current().work().isIdle())
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

void measure(const char* name, WatchSet::Backends backends, const std::string& top, size_t files) {
    World world;
    Reader reader;
    LinuxFileEvents source({.backends = backends});
    FileEvents::Request request;
    request.paths = {FileURL(top)};
    request.callback = [&reader](const FileEventBatch& batch) { reader.take(batch); };
    auto stream = source.streamCreate(request);
    const Time begin = now();
    stream->start();
    waitUntilIdle();
    const double start = secondsSince(begin);

    std::vector<double> delays;
    for (int i = 0; i < 1000; i++) {
        const size_t before = reader.created;
        const Time made = now();
        makeFile(top + "/1/1/" + name + std::to_string(i));
        while (reader.created == before && secondsSince(made) < 1) std::this_thread::yield();
        delays.push_back(secondsSince(made) * 1000);
    }
    std::sort(delays.begin(), delays.end());
    waitUntilIdle();

    const size_t before = reader.created, scansBefore = reader.scans;
    const Time burst = now();
    const pid_t child = fork();
    if (child == 0) {
        for (size_t i = 0; i < files; i++) makeFile(top + "/2/many" + std::to_string(i));
        _exit(0);
    }
    waitpid(child, nullptr, 0);
    const double made = secondsSince(burst);
    waitUntilIdle();
    const double told = std::chrono::duration<double>(reader.last.load() - burst).count();

    const size_t unwatched = stream->unwatchedFolders().size();
    const Time end = now();
    stream.reset();
    const double drop = secondsSince(end);
    std::printf(
        "%s start=%.2f drop=%.2f median_ms=%.2f p99_ms=%.2f made=%.2f told=%.2f "
        "created=%zu scans=%zu unwatched=%zu\n",
        name, start, drop, delays[500], delays[990], made, told, reader.created - before,
        reader.scans - scansBefore, unwatched);
    std::fflush(stdout);
}

}  // namespace

int main(int count, char** arguments) {
    if (count < 2) return 2;
    const std::string top = std::string(arguments[1]) + "/watched";
    const size_t folders = count > 2 ? std::strtoul(arguments[2], nullptr, 10) : 100'000;
    const size_t files = count > 3 ? std::strtoul(arguments[3], nullptr, 10) : 100'000;
    makeFolders(top, folders);
    const std::string clear = "rm -rf '" + top + "/2'; mkdir '" + top + "/2'";
    for (const auto& [name, backends] : {std::pair{"fanotify", WatchSet::Backends::fanotify},
                                         std::pair{"inotify", WatchSet::Backends::inotify}}) {
        measure(name, backends, top, files);
        if (std::system(clear.c_str()) != 0) return 1;
    }
    return std::system(("rm -rf '" + top + "'").c_str());
}
