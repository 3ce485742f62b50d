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
/// Work that is not there but told.
struct Source : WorkSource {
    std::function<bool()> idle = [] { return true; };
    std::function<void()> drained = [] {};
    std::string name = "source";
    bool isIdle() const override { return idle(); }
    void drain() override { drained(); }
    const std::string& label() const override { return name; }
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
    Source first, second;
    world.work().add(&first);
    world.work().add(&second);
    EXPECT_TRUE(world.isSettled());
    // The second hands its work to the first after that was asked, and is idle itself then.
    second.idle = [&] {
        world.work().noteWorkTaken();
        return true;
    };
    EXPECT_FALSE(world.isSettled());
    world.work().remove(&second);
    EXPECT_TRUE(world.isSettled());
    world.work().remove(&first);
    SerialQueue queue("asked", Qos::userInitiated);
    const uint64_t before = world.work().workTaken();
    queue.async([] {});
    EXPECT_GT(world.work().workTaken(), before);
    EXPECT_TRUE(comesTrue([&] { return world.isSettled(); }));
}

TEST(World, ASourceThatIsBeingDrainedDoesNotGo) {
    World world;
    Source source;
    std::atomic<bool> gone = false, goneTooEarly = false;
    std::thread other;
    source.drained = [&] {
        other = std::thread([&] {
            world.work().remove(&source);
            gone = true;
        });
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        goneTooEarly = gone.load();
    };
    world.work().add(&source);
    world.work().drainAll();
    other.join();
    EXPECT_FALSE(goneTooEarly);
}
