#include "util/World.h"

#include <atomic>

#include "util/TestSupport.h"
#include "util/queues/OperationQueue.h"

namespace {

std::string* events = nullptr;  // of the running test

struct First {
    First() { *events += "+1"; }
    ~First() { *events += "-1"; }
};
struct Second {
    Second() {
        World::current().shared<First>();
        *events += "+2";
    }
    ~Second() { *events += "-2"; }
    SerialQueue queue{"secondQ", Qos::userInitiated};
};
struct Late {
    ~Late() {
        World::current().shared<First>();
        *events += "-L";
    }
};
struct Named {
    explicit Named(std::string n) : name(std::move(n)) {}
    Named() : Named("default") {}
    std::string name;
};

}  // namespace

TEST(World, SharedObjectsLiveOnceAndEndInReverse) {
    std::string seen;
    events = &seen;
    for (int i = 0; i < 2; i++) {
        EXPECT_FALSE(World::exists());
        World world;
        Second& second = world.shared<Second>();
        EXPECT_EQ(&World::current().shared<Second>(), &second);
        EXPECT_EQ(world.shared<Named>().name, "default");
    }
    EXPECT_EQ(seen, "+1+2-2-1+1+2-2-1") << "two Worlds, one after the other";
}

TEST(World, AnObjectCanBeProvided) {
    World world;
    const Named& given = world.provide<Named>("given");
    EXPECT_EQ(&given, &world.shared<Named>());
    EXPECT_EQ(world.shared<Named>().name, "given");
}

TEST(World, AnEndThatNeedsAnotherObjectGetsOne) {
    std::string seen;
    events = &seen;
    {
        World world;
        world.shared<Late>();
        world.shared<First>();
    }
    EXPECT_EQ(seen, "+1-1+1-L-1");
}

TEST(World, SharedIsOneForAllThreads) {
    std::string seen;
    events = &seen;
    World world;
    std::atomic<Second*> found[4] = {};
    std::vector<std::thread> threads;
    for (auto& mine : found) threads.emplace_back([&] { mine = &world.shared<Second>(); });
    for (auto& thread : threads) thread.join();
    for (auto& mine : found) EXPECT_EQ(mine, found[0]);
    EXPECT_EQ(seen, "+1+2");
}

TEST(World, WorkEndsBeforeTheObjectsItUses) {
    std::string seen;
    events = &seen;
    std::atomic<bool> begun = false;
    {
        World world;
        First& used = world.shared<First>();
        world.shared<Second>().queue.async([&] {
            begun = true;
            MainQueue::sync([] {});  // the main thread is ending the World: must not hang
            EXPECT_EQ(&World::current().shared<First>(), &used);
            seen += "w";
        });
        ASSERT_TRUE(comesTrue([&] { return begun.load(); }));
    }
    EXPECT_EQ(seen, "+1+2w-2-1");
}

TEST(World, IsNotSettledWhileWorkIsHandedOn) {
    World world;
    SerialQueue first("first", Qos::userInitiated), second("second", Qos::userInitiated);
    std::atomic<int> left = 2000;
    // Each runs a moment before it hands on: at any time one of them is busy.
    std::function<void()> ping, pong;
    ping = [&] {
        if (--left > 0) second.async(pong);
    };
    pong = [&] {
        if (--left > 0) first.async(ping);
    };
    first.async(ping);
    bool settled = false;
    while (!settled) {
        const int leftBefore = left;
        settled = world.isSettled();
        ASSERT_TRUE(!settled || left <= 0) << leftBefore;
    }
}
