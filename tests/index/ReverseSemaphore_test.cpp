#include "index/ReverseSemaphore.h"

#include <gtest/gtest.h>

#include <limits>

#include "util/World.h"
#include "util/queues/OperationQueue.h"

namespace {

TEST(ReverseSemaphore, WaitsForTheLastSignal) {
    World world;
    auto semaphore = ReverseSemaphore::initWithCount(2);
    semaphore->signal();
    EXPECT_FALSE(semaphore->waitWithTimeout(0));
    EXPECT_FALSE(semaphore->waitWithTimeout(-1));
    SerialQueue queue("signals", Qos::utility);
    queue.async([semaphore] { semaphore->signal(); });
    EXPECT_TRUE(semaphore->waitWithTimeout(std::numeric_limits<double>::infinity()));
    semaphore->wait();
    EXPECT_TRUE(semaphore->waitWithTimeout(0)) << "it stays complete";
    semaphore->signal();
    EXPECT_TRUE(semaphore->waitWithTimeout(0)) << "one too many changes nothing";
}

TEST(ReverseSemaphore, ACountThatIsNotPositiveIsRefused) {
    EXPECT_EQ(ReverseSemaphore::initWithCount(0), nullptr);
    EXPECT_EQ(ReverseSemaphore::initWithCount(-3), nullptr);
}

}  // namespace
