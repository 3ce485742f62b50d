#include "util/queues/MainQueue.h"

#include <atomic>

#include "util/Section.h"
#include "util/TestSupport.h"
#include "util/queues/OperationQueue.h"

using namespace std::chrono_literals;

TEST(MainQueue, RunsBlocksInOrderAndWhatTheyAddNextTime) {
    ManualWorld manual;
    std::string order;
    MainQueue::async([&] {
        order += 'a';
        MainQueue::async([&] { order += 'c'; });
    });
    MainQueue::async([&] { order += 'b'; });
    EXPECT_FALSE(manual.world.isSettled());
    EXPECT_TRUE(manual.world.mainQueue().runPending());
    EXPECT_EQ(order, "ab");
    EXPECT_TRUE(manual.world.mainQueue().runPending());
    EXPECT_EQ(order, "abc");
    EXPECT_FALSE(manual.world.mainQueue().runPending());
    EXPECT_TRUE(manual.world.isSettled());
}

TEST(MainQueue, SyncFromAThreadWaitsForTheMainThread) {
    ManualWorld manual;
    std::atomic<bool> woken = false, over = false;
    manual.world.mainQueue().setWake([&] { woken = true; });
    std::thread::id ranOn;
    std::thread worker([&] {
        EXPECT_FALSE(MainQueue::isMainThread());
        MainQueue::sync([&] { ranOn = std::this_thread::get_id(); });
        over = true;
    });
    EXPECT_TRUE(comesTrue([&] { return woken.load(); }));
    EXPECT_FALSE(over);
    manual.run();
    worker.join();
    EXPECT_EQ(ranOn, std::this_thread::get_id());
    bool atOnce = false;
    MainQueue::sync([&] { atOnce = true; });
    EXPECT_TRUE(atOnce) << "on the main thread itself";
}

TEST(MainQueue, WaitingInsideASectionIsTold) {
    const LogLines log;
    ManualWorld manual;
    Section section("rows");
    section.read([](const ReadSection&) { MainQueue::sync([] {}); });
    EXPECT_EQ(log.count("Waiting for the main thread inside a section"), 1u);
}

TEST(MainQueue, AnExceptionEndsItsBlockAlone) {
    const LogLines log;
    ManualWorld manual;
    bool ran = false;
    MainQueue::async([] { throw std::runtime_error("no luck"); });
    MainQueue::async([&] { ran = true; });
    manual.run();
    EXPECT_TRUE(ran);
    EXPECT_EQ(log.count("Caught exception: no luck"), 1u);
    EXPECT_TRUE(manual.world.isSettled());
}

TEST(MainQueue, ClosingDropsBlocksAndEndsWaits) {
    ManualWorld manual;
    auto held = std::make_shared<OneShotTimer>();
    held->start(1h, [] {});
    bool ran = false;
    MainQueue::async([&ran, held] { ran = true; });
    manual.world.mainQueue().runAt(manual.clock->now() + 1h, [&ran, held] { ran = true; });
    std::thread worker([&] { MainQueue::sync([&] { ran = true; }); });
    std::thread other([&] { MainQueue::async([&] { ran = true; }); });
    other.join();
    manual.world.mainQueue().close();
    worker.join();
    manual.advance(2h);
    EXPECT_FALSE(ran);
    EXPECT_EQ(held.use_count(), 1);
}

TEST(MainQueue, WhatATimerHoldsMayHoldTimers) {
    ManualWorld manual;
    auto held = std::make_shared<OneShotTimer>();
    held->start(1h, [] {});
    const auto timer = manual.world.mainQueue().runAt(manual.clock->now() + 2h, [held] {});
    manual.run();
    held.reset();  // the queue has the last one, and ending it asks the queue
    manual.world.mainQueue().cancel(timer);
    EXPECT_FALSE(manual.world.mainQueue().nextDue());
}

TEST(MainQueue, TimersRunByTheirTime) {
    ManualWorld manual;
    MainQueue& queue = manual.world.mainQueue();
    const auto start = manual.clock->now();
    std::string order;
    queue.runAt(start + 20ms, [&] { order += '2'; });
    MainQueue::TimerId third = 0;
    queue.runAt(start + 10ms, [&] {
        order += '1';
        queue.cancel(third);
    });
    third = queue.runAt(start + 30ms, [&] { order += '3'; });
    EXPECT_EQ(queue.nextDue(), start + 10ms);
    EXPECT_FALSE(manual.world.isSettled(50ms));
    EXPECT_TRUE(manual.world.isSettled(5ms));
    manual.advance(9ms);
    EXPECT_EQ(order, "");
    manual.advance(40ms);
    EXPECT_EQ(order, "12") << "the third was due, but stopped by the first";
    EXPECT_FALSE(queue.nextDue());
    queue.runAt(start, [&] {
        order += '4';
        queue.runAt(start, [&] { order += '5'; });
    });
    queue.runPending();
    EXPECT_EQ(order, "124") << "one that always adds another must not keep the loop";
    queue.runPending();
    EXPECT_EQ(order, "1245");
}

TEST(MainQueue, ARepeatingTimerRunsUntilItsOwnerEnds) {
    ManualWorld manual;
    int runs = 0;
    auto timer = std::make_unique<RepeatingTimer>(10ms, [&] { runs++; });
    for (int i = 0; i < 3; i++) manual.advance(10ms);
    EXPECT_EQ(runs, 3);
    manual.advance(5ms);
    timer->fire();
    EXPECT_EQ(runs, 4);
    manual.advance(9ms);
    EXPECT_EQ(runs, 4) << "a full interval from there";
    manual.advance(1ms);
    EXPECT_EQ(runs, 5);
    timer.reset();
    manual.advance(1h);
    EXPECT_EQ(runs, 5);
    auto text = std::make_shared<std::string>("still here");
    timer = std::make_unique<RepeatingTimer>(10ms, [&timer, &runs, text] {
        timer.reset();
        runs += static_cast<int>(text->size());
    });
    manual.advance(1h);
    EXPECT_EQ(runs, 15) << "it may end itself";
    EXPECT_EQ(text.use_count(), 1);
}

TEST(MainQueue, AOneShotTimerCanBeStartedAgainAndStopped) {
    ManualWorld manual;
    std::string order;
    OneShotTimer timer;
    timer.start(10ms, [&] { order += 'a'; });
    manual.advance(9ms);
    timer.start(10ms, [&] {
        order += 'b';
        EXPECT_FALSE(timer.isRunning());
        timer.start(10ms, [&] { order += 'c'; });
    });
    manual.advance(9ms);
    EXPECT_EQ(order, "");
    manual.advance(1ms);
    EXPECT_EQ(order, "b");
    EXPECT_TRUE(timer.isRunning());
    timer.stop();
    manual.advance(1h);
    EXPECT_EQ(order, "b");
}
