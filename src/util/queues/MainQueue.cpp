#include "util/queues/MainQueue.h"

#include <algorithm>
#include <tuple>

#include "util/Section.h"
#include "util/World.h"
#include "util/log.h"
#include "util/queues/ClosureEnd.h"
#include "util/queues/runGuarded.h"

MainQueue::MainQueue(const Clock& clock) : clock_(clock) {}

void MainQueue::async(Block block) {
    World::current().mainQueue().add(std::move(block));
}

void MainQueue::sync(Block block) {
    if (Section::isThreadInside()) logError("Waiting for the main thread inside a section");
    World::current().mainQueue().addAndWait(block);
}

bool MainQueue::isMainThread() {
    return World::current().mainQueue().thread_ == std::this_thread::get_id();
}

void MainQueue::add(Block block) {
    Block wake;
    {
        std::lock_guard lock(mutex_);
        if (closed_) return;
        blocks_.push_back(std::move(block));
        wake = wake_;
    }
    if (wake) wake();
}

void MainQueue::addAndWait(const Block& block) {
    if (thread_ == std::this_thread::get_id()) {
        block();
        return;
    }
    ClosureEnd end;
    add([&block, token = end.token()]() mutable {
        block();
        token.reset();
    });
    end.wait();
}

bool MainQueue::runPending() {
    const Clock::TimePoint now = clock_.now();
    std::unique_lock lock(mutex_);
    bool ran = false;
    auto run = [&](Block block) {
        ran = running_ = true;
        lock.unlock();
        runGuarded(block);
        block = nullptr;  // its captures go before anybody is told that it is over
        lock.lock();
    };
    for (size_t left = blocks_.size(); left > 0 && !blocks_.empty(); left--) {
        Block block = std::move(blocks_.front());
        blocks_.pop_front();
        run(std::move(block));
    }
    // One by one: a timer that another block stops must not run any more.
    const TimerId last = lastTimer_;
    for (;;) {
        auto next =
            std::min_element(timers_.begin(), timers_.end(), [](const Due& a, const Due& b) {
                return std::tie(a.time, a.id) < std::tie(b.time, b.id);
            });
        if (next == timers_.end() || next->time > now || next->id > last) break;
        Block block = std::move(next->block);
        timers_.erase(next);
        run(std::move(block));
    }
    running_ = false;
    return ran;
}

std::optional<Clock::TimePoint> MainQueue::nextDue() const {
    std::lock_guard lock(mutex_);
    std::optional<Clock::TimePoint> next;
    for (const Due& due : timers_)
        if (!next || due.time < *next) next = due.time;
    return next;
}

bool MainQueue::isIdle(Clock::Duration horizon) const {
    {
        std::lock_guard lock(mutex_);
        if (!blocks_.empty() || running_) return false;
    }
    const auto next = nextDue();
    return !next || *next > clock_.now() + horizon;
}

void MainQueue::setWake(Block wake) {
    std::lock_guard lock(mutex_);
    wake_ = std::move(wake);
}

void MainQueue::close() {
    // What they hold goes outside the lock: it may hold timers.
    std::deque<Block> dropped;
    std::vector<Due> droppedTimers;
    std::lock_guard lock(mutex_);
    closed_ = true;
    dropped.swap(blocks_);
    droppedTimers.swap(timers_);
}

MainQueue::TimerId MainQueue::runAt(Clock::TimePoint time, Block block) {
    Block wake;
    TimerId id;
    {
        std::lock_guard lock(mutex_);
        if (closed_) return 0;
        id = ++lastTimer_;
        timers_.push_back({time, id, std::move(block)});
        wake = wake_;
    }
    if (wake) wake();
    return id;
}

void MainQueue::cancel(TimerId timer) {
    Block dropped;  // goes outside the lock, as above
    std::lock_guard lock(mutex_);
    const auto found = std::find_if(timers_.begin(), timers_.end(),
                                    [timer](const Due& due) { return due.id == timer; });
    if (found == timers_.end()) return;
    dropped = std::move(found->block);
    timers_.erase(found);
}

RepeatingTimer::RepeatingTimer(Clock::Duration interval, MainQueue::Block block)
    : interval_(interval), block_(std::make_shared<const MainQueue::Block>(std::move(block))) {
    schedule();
}

RepeatingTimer::~RepeatingTimer() {
    if (World::exists()) World::current().mainQueue().cancel(timer_);
}

void RepeatingTimer::fire() {
    World::current().mainQueue().cancel(timer_);
    schedule();
    const auto block = block_;
    (*block)();
}

void RepeatingTimer::schedule() {
    const Clock::TimePoint time = World::current().clock().now() + interval_;
    timer_ = World::current().mainQueue().runAt(time, [this, block = block_] {
        schedule();
        (*block)();
    });
}

void OneShotTimer::start(Clock::Duration delay, MainQueue::Block block) {
    stop();
    timer_ = World::current().mainQueue().runAt(World::current().clock().now() + delay,
                                                [this, block = std::move(block)] {
                                                    timer_ = 0;
                                                    block();
                                                });
}

void OneShotTimer::stop() {
    if (timer_ && World::exists()) World::current().mainQueue().cancel(timer_);
    timer_ = 0;
}
