#include "platform/linux/QtMainLoop.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTimer>
#include <thread>

#include "util/World.h"

namespace {

class QtMainLoopTest : public testing::Test {
  protected:
    /// Runs Qt's loop until a block ends it; false when none did.
    bool runLoop() {
        QTimer giveUp;
        QObject::connect(&giveUp, &QTimer::timeout, [] { QCoreApplication::exit(1); });
        giveUp.start(std::chrono::seconds(20));
        return QCoreApplication::exec() == 0;
    }

    int count_ = 1;
    char name_[5] = "test";
    char* values_[2] = {name_, nullptr};
    QCoreApplication application_{count_, values_};
    World world;
};

}  // namespace

TEST_F(QtMainLoopTest, RunsWhatOtherThreadsSendInItsOrder) {
    constexpr int kBlocks = 20000;
    int next = 0;
    bool inOrder = true;
    MainQueue::async([&] { inOrder = next == 0; });  // before there is a loop
    QtMainLoop loop(world.mainQueue(), world.clock());
    std::thread sender([&] {
        for (int i = 0; i < kBlocks; ++i)
            MainQueue::async([&, i] {
                inOrder = inOrder && next == i;
                if (++next == kBlocks) QCoreApplication::quit();
            });
    });
    EXPECT_TRUE(runLoop());
    sender.join();
    EXPECT_TRUE(inOrder);
    EXPECT_EQ(next, kBlocks);
}

TEST_F(QtMainLoopTest, RunsTimersWhenTheyAreDueAndNotBefore) {
    using std::chrono::milliseconds;
    QtMainLoop loop(world.mainQueue(), world.clock());
    const auto begin = world.clock().now();
    std::vector<int> fired;
    OneShotTimer late, early, stopped;
    Clock::Duration earlyTook{};
    late.start(milliseconds(40), [&] {
        fired.push_back(2);
        QCoreApplication::quit();
    });
    early.start(milliseconds(10), [&] {
        fired.push_back(1);
        earlyTook = world.clock().now() - begin;
        MainQueue::async([&] { fired.push_back(0); });  // from inside a run
    });
    stopped.start(milliseconds(20), [&] { fired.push_back(-1); });
    stopped.stop();
    EXPECT_TRUE(runLoop());
    EXPECT_EQ(fired, (std::vector<int>{1, 0, 2}));
    EXPECT_GE(earlyTook, milliseconds(10));
    EXPECT_GE(world.clock().now() - begin, milliseconds(40));
}

TEST_F(QtMainLoopTest, AWindowsOwnLoopInsideABlockIsServedToo) {
    QtMainLoop loop(world.mainQueue(), world.clock());
    bool served = false;
    MainQueue::async([&] {
        MainQueue::async([&] { served = true; });
        while (!served) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 1000);
        QCoreApplication::quit();
    });
    EXPECT_TRUE(runLoop());
    EXPECT_TRUE(served);
}

TEST_F(QtMainLoopTest, NothingIsRungOnceItIsGone) {
    { const QtMainLoop loop(world.mainQueue(), world.clock()); }
    bool ran = false;
    MainQueue::async([&] { ran = true; });
    QCoreApplication::processEvents();
    EXPECT_FALSE(ran);
}
