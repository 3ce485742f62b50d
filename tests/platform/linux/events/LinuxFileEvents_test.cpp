#include "platform/linux/events/LinuxFileEvents.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdio.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include "EventTestSupport.h"
#include "platform/linux/events/MountTable.h"

using Backends = WatchSet::Backends;

class LinuxFileEventsOfBoth : public testing::TestWithParam<Backends> {
  protected:
    LinuxFileEvents::Options options() const { return {.backends = GetParam()}; }
};

INSTANTIATE_TEST_SUITE_P(Backends, LinuxFileEventsOfBoth,
                         testing::Values(Backends::best, Backends::fanotify, Backends::inotify),
                         [](const auto& backends) {
                             return backends.param == Backends::best       ? "best"
                                    : backends.param == Backends::fanotify ? "fanotify"
                                                                           : "inotify";
                         });

TEST_P(LinuxFileEventsOfBoth, OperationsBecomeEvents) {
    struct Row {
        const char* setUp;
        const char* line;
        const char* events;
    };
    const Row rows[] = {
        {":", ": > f", "+f"},
        {": > f", "rm f", "-f"},
        {": > f", "echo x >> f", "~f"},
        {": > f", "chmod 600 f", ""},
        {":", "ln -s nowhere l", "+l@"},
        {":", "mkdir d", "+d/"},
        {"mkdir d", "rmdir d", "-d/"},
        {"mkdir -p d/e; : > d/e/f", "rm -r d", "-d/e/f -d/e/ -d/"},
        {": > f", "mv f g", ">f >g"},
        {": > f; : > g", "mv f g; rm g", ">f >g -g"},
        {"mkdir d e; : > d/f", "mv d/f e/g", ">d/f >e/g"},
        {"mkdir -p d/x/y", "mv d e; : > e/x/y/f", ">d/ >e/ +e/x/y/f"},
        {"mkdir -p d/x e", "mv d/x e; mv e d; : > d/e/x/f",
         ">d/x/ >e/x/ | >e/ >d/e/ *d/e/ +d/e/x/f"},
        // Out of sight and into it.
        {"mkdir d; : > d/f", "mv d ../out; : > ../out/d/g", "-d/"},
        {": > f", "mv f ../out", "-f"},
        {": > ../out/f", "mv ../out/f .", ">f"},
        {"mkdir -p ../out/d/e", "mv ../out/d .; : > d/e/f", ">*d/ +d/e/f"},
        // The place that something leaves or takes is taken or left by something else.
        {"mkdir a b; : > a/f", "mv a c; mv b a; mv c b; : > b/g",
         ">a/ >c/ | >b/ >a/ | >c/ >b/ +b/g"},
        {"mkdir a; : > f", "rmdir a; mv f a", "-a/ | >f >a"},
        // Names are bytes.
        {":", ": > \"$(printf 'a\\nb \\377')\"", "+a\nb \xff"},
        {"mkdir \"$(printf '\\377d')\"", "mv ?d e; : > e/f",
         ">\xff"
         "d/ >e/ +e/f"},
    };
    for (const Row& row : rows) {
        // Line by line, as slowly as a person would: the disk is not ahead of the events.
        WatchedFolder watched(options(), row.setUp);
        std::vector<FileEventBatch> events;
        std::string lines = row.line;
        for (size_t at = 0; at != std::string::npos;) {
            const size_t end = lines.find("; ", at);
            for (FileEventBatch& batch : watched.eventsOf(lines.substr(at, end - at)))
                events.push_back(std::move(batch));
            at = end == std::string::npos ? end : end + 2;
        }
        EXPECT_EQ(shortForm(events, watched.root()), row.events) << row.setUp << " / " << row.line;
        for (const FileEventBatch& batch : events)
            for (const FileEvent& event : batch)
                EXPECT_FALSE(event.flags & kFSEventStreamEventFlagOwnEvent);
    }
}

TEST_P(LinuxFileEventsOfBoth, WhatIsMadeInABurstIsReadAgain) {
    // The folders are full when their events arrive.
    WatchedFolder watched(options(), "mkdir -p a/b");
    watched.delivered.hold(true);
    shell(watched.root(), ": > begin; sleep 0.1; mkdir -p new/x/y; : > new/x/y/f");
    shell(watched.root(), "mv a/b c; mkdir -p a/b; mv ../out/none . 2>/dev/null || : > end");
    watched.delivered.hold(false);
    watched.waitUntilIdle();
    const std::string events = shortForm(watched.delivered.take(), watched.root());
    EXPECT_NE(events.find("*new/"), std::string::npos) << events;
    // The old path exists again: no half of a rename may name it.
    EXPECT_EQ(events.find(">a/b"), std::string::npos) << events;
    EXPECT_NE(events.find(">*c/"), std::string::npos) << events;
    EXPECT_EQ(shortForm(watched.eventsOf(": > new/x/y/g"), watched.root()), "+new/x/y/g");
    EXPECT_EQ(shortForm(watched.eventsOf(": > a/b/g"), watched.root()), "+a/b/g");
    EXPECT_EQ(shortForm(watched.eventsOf(": > c/g"), watched.root()), "+c/g");
}

TEST_P(LinuxFileEventsOfBoth, FoldersThatChangePlacesAreBothFollowed) {
    WatchedFolder watched(options(), "mkdir -p a/of_a b/of_b ../out/c/of_c");
    const auto swap = [&](const FileURL& one, const FileURL& other) {
        EXPECT_EQ(renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE), 0);
        watched.waitUntilIdle();
    };
    swap(watched.at("a"), watched.at("b"));
    EXPECT_EQ(shortForm(watched.eventsOf(": > a/of_b/f; : > b/of_a/f"), watched.root()),
              "+a/of_b/f +b/of_a/f");
    swap(watched.folder.file("out/c"), watched.at("a"));
    EXPECT_EQ(shortForm(watched.eventsOf(": > a/of_c/f; : > b/of_a/g"), watched.root()),
              "+a/of_c/f +b/of_a/g");
    EXPECT_EQ(shortForm(watched.eventsOf(": > ../out/c/of_b/g"), watched.root()), "");
}

TEST_P(LinuxFileEventsOfBoth, AnOverflowAsksForAFullLook) {
    WatchedFolder watched(options(), "mkdir d");
    watched.delivered.hold(true);
    shell(watched.root(),
          "mkdir late; i=0; while [ $i -lt 12000 ]; do : > d/$i; : > late/$i; "
          "i=$((i+1)); done");
    watched.delivered.hold(false);
    watched.waitUntilIdle();
    std::vector<FileEventBatch> batches = watched.delivered.take();
    ASSERT_FALSE(batches.empty());
    EXPECT_EQ(shortForm({batches.back()}, watched.root()), "K*./");
    EXPECT_EQ(shortForm(watched.eventsOf(": > late/x"), watched.root()), "+late/x");
}

TEST_P(LinuxFileEventsOfBoth, RootsComeAndGo) {
    WatchedFolder watched(options(), "mkdir d");
    const auto around = [&](const char* line) {
        return shortForm(watched.eventsAround(line), watched.root());
    };
    EXPECT_EQ(around("mv in away"), "!-./");
    EXPECT_EQ(around(": > away/d/unseen"), "");
    EXPECT_EQ(around("mkdir in"), "!+*./");
    EXPECT_EQ(around(": > in/seen"), "+seen");
    EXPECT_EQ(around("rm -r in"), "-seen !-./");
    EXPECT_EQ(around("mv away in"), "!+*./");
    EXPECT_EQ(around(": > in/d/seen"), "+d/seen");
}

TEST_P(LinuxFileEventsOfBoth, RootsMayBeLinksAndLieInEachOther) {
    TemporaryFolder links;
    const FileURL link = links.file("link");
    const FileURL target = links.file("target");
    shell(links.url(), "mkdir -p target/sub; ln -s target link");
    FileEvents::Request request;
    request.paths = {link.appending("sub"), link, links.file("missing/later")};
    WatchedFolder watched(options(), ":", request);
    const auto around = [&](const std::string& line) {
        return shortForm(watched.eventsAround("cd '" + links.url().path() + "'; " + line), link);
    };
    EXPECT_EQ(around(": > target/sub/f"), "+sub/f");
    EXPECT_EQ(around("mv target/sub/f link/f"), ">sub/f >f");
    watched.eventsAround("mkdir '" + links.url().path() + "/missing'");
    const auto events = watched.eventsAround("mkdir '" + links.url().path() + "/missing/later'");
    EXPECT_EQ(shortForm(events, request.paths[2]), "!+*./");
}

TEST_P(LinuxFileEventsOfBoth, ReplaysWhatCameSinceAnId) {
    WatchedFolder watched(options());
    FileEvents::Request request;
    request.paths = {watched.at("p")};
    shell(watched.root(), "mkdir p");
    watched.source.startRecording(request);
    watched.waitUntilIdle();
    const uint64_t since = watched.source.currentEventId();
    shell(watched.at("p"), ": > a");
    watched.waitUntilIdle();  // what has gone again before it is told is not told
    shell(watched.at("p"), "mv a b");
    watched.waitUntilIdle();

    Delivered delivered;
    request.sinceWhen = since;
    request.callback = delivered.callback();
    auto stream = watched.source.streamCreate(request);
    stream->start();
    watched.waitUntilIdle();
    EXPECT_EQ(shortForm(delivered.take(), request.paths[0]), "+a | >a >b H.");

    stream->stop();
    shell(watched.at("p"), ": > c");
    watched.waitUntilIdle();
    EXPECT_TRUE(delivered.take().empty());
    stream->start();
    watched.waitUntilIdle();
    EXPECT_EQ(shortForm(delivered.take(), request.paths[0]), "+c H.");
    EXPECT_EQ(shortForm(watched.eventsOf("rm p/c"), request.paths[0]), "-c");  // two streams
    EXPECT_EQ(shortForm(delivered.take(), request.paths[0]), "-c");

    // Nobody watched for the next one, since no recording stands any more.
    stream = watched.source.streamCreate(request);
    stream->start();
    watched.waitUntilIdle();
    EXPECT_EQ(shortForm(delivered.take(), request.paths[0]), "D*./ H.");
}

TEST_P(LinuxFileEventsOfBoth, ARingThatIsTooShortAsksForAFullLook) {
    LinuxFileEvents::Options small = options();
    small.ringSize = 10;
    WatchedFolder watched(small);
    watched.stream->stop();
    watched.eventsOf("for i in 1 2 3 4 5 6 7 8 9 10 11 12; do : > $i; sleep 0.01; done");
    watched.stream->start();
    watched.waitUntilIdle();
    EXPECT_EQ(shortForm(watched.delivered.take(), watched.root()), "D*./ H.");
}

TEST_P(LinuxFileEventsOfBoth, FoldersBeyondTheLimitAreListedInstead) {
    LinuxFileEvents::Options few = options();
    TemporaryFolder alike;
    // The root of all, the way down, "in" and two more: one watch too few.
    few.mostWatches = 1 + alike.url().pathComponents().size() + 3;
    WatchedFolder watched(few, "mkdir a b c; : > a/f; : > b/f; : > c/f");
    const SharedFolders unwatched = watched.stream->unwatchedFolders();
    ASSERT_TRUE(unwatched && unwatched->size() == 1);
    const std::string name(unwatched->front().lastPathComponent());
    const auto recheck = [&] {
        watched.stream->recheckUnwatched();
        watched.waitUntilIdle();
        return shortForm(watched.delivered.take(), watched.root());
    };
    EXPECT_EQ(recheck(), "");
    EXPECT_EQ(shortForm(watched.eventsOf(": > " + name + "/new"), watched.root()), "");
    EXPECT_EQ(recheck(), "*" + name + "/");
    EXPECT_EQ(recheck(), "");
    watched.eventsOf("sleep 0.02; echo x > " + name + "/new");
    EXPECT_EQ(recheck(), "*" + name + "/");
    EXPECT_EQ(shortForm(watched.eventsOf("mv " + name + " moved"), watched.root()),
              ">" + name + "/ >moved/");
    EXPECT_EQ(*watched.stream->unwatchedFolders(), std::vector{watched.at("moved")});
    // A watch becomes free.
    watched.eventsOf(name == "a" ? "rm -r b" : "rm -r a");
    EXPECT_EQ(recheck(), "*moved/");
    EXPECT_EQ(watched.stream->unwatchedFolders(), nullptr);
    EXPECT_EQ(shortForm(watched.eventsOf(": > moved/x"), watched.root()), "+moved/x");
}

TEST_P(LinuxFileEventsOfBoth, ExcludedFoldersAreNotWatched) {
    FileEvents::Request request;
    request.shouldWatch = [](std::string_view path) { return !path.ends_with("/no"); };
    WatchedFolder watched(options(), "mkdir -p no/x yes", request);
    EXPECT_EQ(shortForm(watched.eventsOf(": > no/f; : > no/x/f; : > yes/f"), watched.root()),
              "+yes/f");
    EXPECT_EQ(shortForm(watched.eventsOf("mv no seen"), watched.root()), ">no/ >seen/");
    EXPECT_EQ(shortForm(watched.eventsOf(": > seen/x/g"), watched.root()), "+seen/x/g");
    EXPECT_EQ(shortForm(watched.eventsOf("mv seen no"), watched.root()), ">seen/ >no/");
    EXPECT_EQ(shortForm(watched.eventsOf(": > no/x/h"), watched.root()), "");
}

TEST_P(LinuxFileEventsOfBoth, FoldersThatCannotBeReadAreWatchedWhenTheyCan) {
    const WithoutPrivileges likeAnyUser;
    WatchedFolder watched(options(), "mkdir -p d/e; chmod 0 d");
    std::vector<FileEventBatch> events = watched.eventsOf("chmod 700 d");
    if (GetParam() != Backends::inotify) {
        // Tells nothing of a folder without a watch of its own.
        watched.stream->recheckUnwatched();
        watched.waitUntilIdle();
        events = watched.delivered.take();
    }
    EXPECT_EQ(shortForm(events, watched.root()), "*d/");
    EXPECT_EQ(shortForm(watched.eventsOf(": > d/e/f"), watched.root()), "+d/e/f");
}

TEST_P(LinuxFileEventsOfBoth, MountsHideWhatStoodThere) {
    WatchedFolder watched(options(), "mkdir -p m/under 'm n'");
    if (mount("none", watched.at("m").c_str(), "tmpfs", 0, "") != 0)
        GTEST_SKIP() << "this machine does not let us mount";
    watched.waitUntilIdle();
    EXPECT_TRUE(
        comesTrue([&] { return shortForm(watched.delivered.take(), watched.root()) == "Mm/"; }));
    EXPECT_EQ(shortForm(watched.eventsOf(": > m/f"), watched.root()), "+m/f");
    umount2(watched.at("m").c_str(), MNT_DETACH);
    std::string events;
    EXPECT_TRUE(comesTrue([&] {
        events += shortForm(watched.delivered.take(), watched.root());
        return events.find("Um/") != std::string::npos && events.find("+*m/") != std::string::npos;
    })) << events;
    EXPECT_EQ(shortForm(watched.eventsOf(": > m/under/f"), watched.root()), "+m/under/f");
}

TEST_P(LinuxFileEventsOfBoth, AttributesOfAnyItemAreTold) {
    WatchedFolder watched(options(), "mkdir d; : > d/f");
    const struct {
        const char* line;
        FileURL path;
        uint32_t kind;
    } rows[] = {{"chmod 600 d/f", watched.at("d/f"), kFSEventStreamEventFlagItemIsFile},
                {"chmod 700 d", watched.at("d"), kFSEventStreamEventFlagItemIsDir},
                {"chmod 700 .", watched.root(), kFSEventStreamEventFlagItemIsDir}};
    for (const auto& row : rows) {
        const std::vector<FileEventBatch> events = watched.eventsOf(row.line);
        ASSERT_EQ(events.size(), 1u) << row.line;
        ASSERT_EQ(events[0].size(), 1u) << row.line;
        EXPECT_EQ(events[0][0].path, row.path.path());
        EXPECT_EQ(events[0][0].flags, attributeFlags() | row.kind);
    }
}

TEST(LinuxFileEvents, MarksWhatThisProcessDoes) {
    WatchedFolder watched({.backends = Backends::fanotify});
    setContent(watched.at("own"), "x");
    watched.waitUntilIdle();
    bool any = false;
    for (const FileEventBatch& batch : watched.delivered.take())
        for (const FileEvent& event : batch)
            any = any || (event.flags & kFSEventStreamEventFlagOwnEvent);
    EXPECT_TRUE(any);
}

TEST(LinuxFileEvents, AStreamWithoutFilesTellsMountsAlone) {
    FileEvents::Request request;
    request.fileEvents = false;
    WatchedFolder watched({}, "mkdir m", request);
    EXPECT_EQ(shortForm(watched.eventsOf(": > f"), watched.root()), "");
}

TEST(MountTable, PathsAreUnescaped) {
    const auto mounts = MountTable::parse(
        "36 35 98:0 /mnt1 /mnt/a\\040b\\134 rw,noatime master:1 - ext3 /dev/root rw\n"
        "37 35 0:5 / /\\ rw - proc\n\n39 x\n");
    EXPECT_EQ(mounts, (std::map<int, std::string>{{36, "/mnt/a b\\"}, {37, "/\\"}}));
}
