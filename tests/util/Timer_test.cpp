#include "util/Timer.h"

#include "util/ProcessFlags.h"
#include "util/TestSupport.h"

using namespace std::chrono_literals;

TEST(Timer, MeasuresBetweenStartAndStop) {
    const LogLines log;
    ManualWorld manual;
    Timer& timer = Timer::sharedInstance();
    EXPECT_EQ(timer.stop("SCAN", Timer::Force::yes), 0.0) << "never started";
    timer.start("SCAN", Timer::Force::yes);
    manual.clock->advance(1s);
    timer.start("SEARCH", Timer::Force::yes);
    timer.start("SCAN", Timer::Force::yes);  // the later start counts
    manual.clock->advance(1500ms);
    EXPECT_DOUBLE_EQ(timer.stop("SCAN", Timer::Force::yes), 1.5);
    EXPECT_EQ(timer.stop("SCAN", Timer::Force::yes), 0.0) << "stopped already";
    EXPECT_DOUBLE_EQ(timer.stop("SEARCH", Timer::Force::yes), 1.5);
    EXPECT_EQ(log.lines().size(), 0u) << "forced, but not switched on";
}

TEST(Timer, MeasuresNothingUnlessSwitchedOn) {
    const LogLines log;
    ManualWorld manual;
    Timer& timer = Timer::sharedInstance();
    timer.start("SCAN");
    EXPECT_EQ(timer.stop("SCAN"), -1.0);
    EXPECT_EQ(timer.stop("SCAN", Timer::Force::yes), 0.0);
    processFlags.debugPerformance = true;
    EXPECT_EQ(timer.stop("SCAN"), 0.0);
    EXPECT_EQ(log.lines().size(), 0u);
    timer.start("SCAN");
    manual.clock->advance(2s);
    EXPECT_DOUBLE_EQ(timer.stop("SCAN"), 2.0);
    processFlags.debugPerformance = false;
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_EQ(log.count("INF Timer SCAN: CPU: 0."), 1u);
    EXPECT_EQ(log.count(" secs, WALL: 2.000000 secs"), 1u);
}

TEST(Timer, CanBeUsedFromManyThreads) {
    World world;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; t++)
        threads.emplace_back([name = std::to_string(t)] {
            for (int i = 0; i < 200; i++) {
                Timer::sharedInstance().start(name, Timer::Force::yes);
                EXPECT_GT(Timer::sharedInstance().stop(name, Timer::Force::yes), 0.0);
            }
        });
    for (auto& thread : threads) thread.join();
}
