#include "EventStorm.h"

#include <gtest/gtest.h>

#include "EventTestSupport.h"
#include "PathSetReader.h"

namespace {

unsigned number(const char* variable, unsigned otherwise) {
    const char* text = std::getenv(variable);
    return text ? static_cast<unsigned>(std::atoi(text)) : otherwise;
}

/// On a disk in memory where there is one, unless told otherwise: there the writers set the pace.
void chooseDisk() {
    if (access("/dev/shm", W_OK) == 0) setenv("TEST_TMPDIR", "/dev/shm/", 0);
}

/// Two writers at full speed; the reader is then compared with the disk.
void storm(unsigned seed, const LinuxFileEvents::Options& options, int operations,
           bool readerSleeps) {
    chooseDisk();
    TemporaryFolder folder;
    shell(folder.url(), "mkdir -p in/start out");
    const FileURL root = folder.file("in"), outside = folder.file("out");
    EventStorm first(root, outside, seed * 2, operations);
    EventStorm second(root, outside, seed * 2 + 1, operations);

    World world;
    Delivered delivered;
    LinuxFileEvents source(options);
    FileEvents::Request request;
    request.paths = {root};
    request.callback = delivered.callback();
    auto stream = source.streamCreate(request);
    // Without a wait: the reader and the watches begin while the writers are at work.
    stream->start();
    first.begin();
    PathSetReader reader(root);
    second.begin();
    if (readerSleeps) delivered.hold(true);
    size_t events = 0;
    const auto read = [&] {
        for (const FileEventBatch& batch : delivered.take()) {
            events += batch.size();
            reader.take(batch);
        }
    };
    if (readerSleeps) {
        first.wait();
        second.wait();
        delivered.hold(false);
    }
    while (!first.hasEnded() || !second.hasEnded()) read();
    const auto compare = [&] {
        EXPECT_TRUE(comesTrue([&] { return world.work().isIdle(); }));
        read();
        const PathSetReader disk(root);
        const std::vector<std::string> differences = reader.differences(disk);
        EXPECT_TRUE(differences.empty())
            << "seed " << seed << ": " << differences.size() << " of " << disk.count()
            << " differ after " << events << " events, first " << differences[0];
    };
    compare();
    first.unmountAll();
    compare();
}

}  // namespace

class EventStorms : public testing::TestWithParam<WatchSet::Backends> {};
INSTANTIATE_TEST_SUITE_P(Backends, EventStorms,
                         testing::Values(WatchSet::Backends::best, WatchSet::Backends::fanotify,
                                         WatchSet::Backends::inotify));

TEST_P(EventStorms, AReaderOfPathsEndsEqualToTheDisk) {
    const unsigned first = number("TROVAST_STORM_SEED", 1), count = number("TROVAST_STORMS", 10);
    for (unsigned seed = first; seed < first + count; seed++)
        storm(seed, {.backends = GetParam()}, 2000, false);
}

TEST_P(EventStorms, AlsoWhenTheReaderSleeps) {
    const unsigned first = number("TROVAST_STORM_SEED", 1),
                   count = number("TROVAST_STORMS", 10) / 5;
    for (unsigned seed = first; seed < first + count; seed++)
        storm(seed, {.backends = GetParam()}, 3000, true);
}
