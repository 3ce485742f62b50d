#include "util/queues/OperationQueue.h"

#include <algorithm>
#include <atomic>
#include <numeric>

#include "util/TestSupport.h"

namespace {

/// Runs a closure as its main.
class TestOperation : public Operation {
  public:
    explicit TestOperation(std::function<void(Operation&)> block) : block_(std::move(block)) {}
    void main() override { block_(*this); }

  private:
    const std::function<void(Operation&)> block_;
};

std::shared_ptr<Operation> operation(std::function<void(Operation&)> block,
                                     std::function<void()> completion = {}) {
    auto made = std::make_shared<TestOperation>(std::move(block));
    made->completionBlock = std::move(completion);
    return made;
}

}  // namespace

TEST(OperationQueue, ASerialQueueKeepsTheOrder) {
    SerialQueue queue("serialQ", Qos::userInitiated);
    std::vector<int> order, expected(500);
    std::iota(expected.begin(), expected.end(), 0);
    for (int i = 0; i < 500; i++) queue.async([&order, i] { order.push_back(i); });
    bool nested = false;
    queue.sync([&] {
        queue.sync([&] { nested = true; });  // at once on its own thread
        EXPECT_STREQ(logging::threadLabel(), "serialQ");
    });
    EXPECT_TRUE(nested);
    EXPECT_EQ(order, expected) << "sync runs behind what was there";
}

TEST(OperationQueue, RunsAsManyAtOnceAsItsWidth) {
    for (const unsigned width : {1u, 3u, OperationQueue::kUnlimited}) {
        OperationQueue queue("wide", width, Qos::userInitiated);
        const int count = 12;
        const int together = width == OperationQueue::kUnlimited ? count : static_cast<int>(width);
        std::atomic<int> running = 0, most = 0;
        std::atomic<bool> full = false;
        for (int i = 0; i < count; i++)
            queue.addBlock([&] {
                const int now = ++running;
                int seen = most;
                while (seen < now && !most.compare_exchange_weak(seen, now)) {}
                if (now == together) full = true;
                EXPECT_TRUE(comesTrue([&] { return full.load(); }));
                running--;
            });
        queue.waitUntilAllOperationsAreFinished();
        EXPECT_EQ(most, together);
        EXPECT_TRUE(queue.isIdle());
    }
}

TEST(OperationQueue, NewestFirstTakesTheLastAdded) {
    OperationQueue queue("stack", 1, Qos::userInitiated, OperationQueue::Order::newestFirst);
    queue.setSuspended(true);
    std::vector<int> order;
    for (int i = 0; i < 3; i++) queue.addBlock([&order, i] { order.push_back(i); });
    std::shared_ptr<Operation> more[] = {operation([&](auto&) { order.push_back(3); }),
                                         operation([&](auto&) { order.push_back(4); })};
    queue.addOperations(more);
    EXPECT_TRUE(order.empty());
    EXPECT_FALSE(queue.isIdle());
    queue.setSuspended(false);
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_EQ(order, (std::vector{4, 3, 2, 1, 0}));
}

TEST(OperationQueue, ACancelledOperationStillCompletesOnce) {
    OperationQueue queue("cancelQ", 1, Qos::userInitiated);
    std::atomic<bool> begun = false;
    std::atomic<int> mains = 0, completions = 0;
    const auto completed = [&] { completions++; };
    queue.addOperation(operation(
        [&](Operation& self) {
            begun = true;
            EXPECT_TRUE(comesTrue([&] { return self.isCancelled(); }));
        },
        completed));
    for (int i = 0; i < 5; i++) queue.addOperation(operation([&](auto&) { mains++; }, completed));
    ASSERT_TRUE(comesTrue([&] { return begun.load(); }));
    queue.cancelAllOperations();
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_EQ(mains, 0);
    EXPECT_EQ(completions, 6);
    queue.addOperation(operation([&](auto&) { mains++; }, completed));
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_EQ(mains, 1) << "what comes later runs";
}

TEST(OperationQueue, AnExceptionEndsItsOperationAlone) {
    const LogLines log;
    OperationQueue queue("throwQ", 1, Qos::userInitiated);
    bool completed = false, ranAfter = false;
    queue.addOperation(
        operation([](auto&) { throw std::runtime_error("no luck"); }, [&] { completed = true; }));
    queue.addBlock([] { throw 7; });
    queue.addBlock([&] { ranAfter = true; });
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_TRUE(completed);
    EXPECT_TRUE(ranAfter);
    EXPECT_EQ(log.count("ERR Caught exception: no luck"), 1u);
    EXPECT_EQ(log.count("throwQ["), 2u);
}

TEST(OperationQueue, DrainDropsWhatWaitsAndEndsWaits) {
    SerialQueue queue("drainQ", Qos::userInitiated);
    auto owner = std::make_shared<int>(1);
    {
        World world;
        SerialQueue registered("registeredQ", Qos::userInitiated);
        std::atomic<bool> begun = false, release = false, droppedRan = false;
        registered.async([&] {
            begun = true;
            EXPECT_TRUE(comesTrue([&] { return release.load(); }));
        });
        ASSERT_TRUE(comesTrue([&] { return begun.load(); }));
        registered.async([&droppedRan, owner] { droppedRan = true; });
        std::thread waiting([&] { registered.sync([&] { droppedRan = true; }); });
        EXPECT_EQ(world.work().busyLabels(), std::vector<std::string>{"registeredQ"});
        std::thread draining([&] { world.work().drainAll(); });
        waiting.join();  // its block was dropped, before or after it came
        release = true;
        draining.join();
        EXPECT_FALSE(droppedRan);
        EXPECT_EQ(owner.use_count(), 1) << "and all that it held";
        registered.async([&] { droppedRan = true; });
        registered.sync([&] { droppedRan = true; });
        EXPECT_FALSE(droppedRan) << "nothing is taken any more";
    }
}

TEST(OperationQueue, AQueueCanEndWhileAllAreDrained) {
    for (int i = 0; i < 20; i++) {
        World world;
        SerialQueue owner("owner", Qos::userInitiated);
        auto owned = std::make_unique<SerialQueue>("owned", Qos::userInitiated);
        std::atomic<bool> begun = false;
        owned->async([] {});
        owner.async([&] {
            begun = true;
            owned.reset();
        });
        ASSERT_TRUE(comesTrue([&] { return begun.load(); }));
        world.work().drainAll();  // "owned" first, unless it has gone
        EXPECT_EQ(owned, nullptr);
    }
}
