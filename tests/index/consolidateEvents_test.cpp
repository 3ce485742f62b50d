#include "index/consolidateEvents.h"

#include <gtest/gtest.h>

#include "index/fsEventFlagNames.h"

namespace {

TEST(consolidateEvents, SortsByIdAndKeepsTheFirstOfEach) {
    FileEventBatch events{{7, 1, "/c"}, {~0ull, 1, "/d"}, {3, 2, "/a"}, {7, 4, "/x"}, {3, 8, "/y"}};
    consolidateEvents(events, false);
    std::string order;
    for (const FileEvent& event : events) order += event.path;
    EXPECT_EQ(order, "/a/c/d");
}

TEST(projectFsEventCallback, EmptyEventsNeverReachTheQueue) {
    std::vector<FileEventBatch> queued;
    const auto add = [&](FileEventBatch batch) { queued.push_back(std::move(batch)); };
    projectFsEventCallback({{1, 0, "/a"}}, add);
    EXPECT_TRUE(queued.empty());
    projectFsEventCallback({{1, 0, "/a"}, {2, 8, "/b"}}, add);
    ASSERT_EQ(queued.size(), 1u);
    EXPECT_EQ(queued[0].at(0).path, "/b");
}

TEST(fsEventFlagNames, AreThereAndBack) {
    EXPECT_EQ(fsEventFlagNames(0x20800),
              "kFSEventStreamEventFlagItemRenamed, kFSEventStreamEventFlagItemIsDir");
    EXPECT_EQ(fsEventFlagWithName("ItemCloned"), 0x400000u);
    EXPECT_EQ(fsEventFlagWithName("Item"), 0u);
}

}  // namespace
