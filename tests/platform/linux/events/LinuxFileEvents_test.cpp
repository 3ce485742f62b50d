#include "platform/linux/events/LinuxFileEvents.h"

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include "EventTestSupport.h"

using Backends = WatchSet::Backends;

class LinuxFileEventsOfBoth : public testing::TestWithParam<Backends> {
  protected:
    LinuxFileEvents::Options options() const { return {.backends = GetParam()}; }
};

INSTANTIATE_TEST_SUITE_P(Backends, LinuxFileEventsOfBoth,
                         testing::Values(Backends::fanotify, Backends::inotify),
                         [](const auto& backends) {
                             return backends.param == Backends::inotify ? "inotify" : "fanotify";
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
        {"mkdir -p d/x e", "mv d/x e; mv e d; : > d/e/x/f", ">d/x/ >e/x/ | >e/ >d/e/ +d/e/x/f"},
        // Out of sight and into it.
        {"mkdir d; : > d/f", "mv d ../out; : > ../out/d/g", "-d/"},
        {": > f", "mv f ../out", "-f"},
        {": > ../out/f", "mv ../out/f .", ">f"},
        {"mkdir -p ../out/d/e", "mv ../out/d .; : > d/e/f", ">*d/ +d/e/f"},
        // The place that something leaves or takes is taken or left by something else.
        {"mkdir a b; : > a/f", "mv a c; mv b a; mv c b; : > b/g", ">a/ >c/ | >b/ >a/ | >c/ >b/ +b/g"},
        {"mkdir a; : > f", "rmdir a; mv f a", "-a/ | >f >a"},
        // Names are bytes.
        {":", ": > \"$(printf 'a\\nb \\377')\"", "+a\nb \xff"},
        {"mkdir \"$(printf '\\377d')\"", "mv ?d e; : > e/f", ">\xff""d/ >e/ +e/f"},
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
