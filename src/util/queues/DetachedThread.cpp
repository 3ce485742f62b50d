#include "util/queues/DetachedThread.h"

#include "util/queues/Qos.h"
#include "util/queues/runGuarded.h"

DetachedThread::DetachedThread(std::string label, std::chrono::milliseconds interval,
                               std::function<void()> block)
    : label_(std::move(label)),
      interval_(interval),
      block_(std::move(block)),
      thread_([this] { run(); }) {}

DetachedThread::~DetachedThread() {
    {
        std::lock_guard lock(mutex_);
        ending_ = true;
    }
    ended_.notify_one();
    thread_.join();
}

void DetachedThread::run() {
    enterQueueThread(label_.c_str(), Qos::background);
    std::unique_lock lock(mutex_);
    while (!ended_.wait_for(lock, interval_, [this] { return ending_; })) {
        lock.unlock();
        runGuarded(block_);
        lock.lock();
    }
}
