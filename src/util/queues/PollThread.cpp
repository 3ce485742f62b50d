#include "util/queues/PollThread.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <utility>

#include "util/World.h"
#include "util/queues/runGuarded.h"

PollThread::PollThread(std::string label, Qos qos)
    : label_(std::move(label)), qos_(qos), wakeHandle_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (World::exists()) {
        registry_ = &World::current().work();
        registry_->add(this);
    }
    thread_ = std::thread([this] { work(); });
}

PollThread::~PollThread() {
    if (registry_) registry_->remove(this);
    drain();
    if (wakeHandle_ >= 0) close(wakeHandle_);
}

void PollThread::drain() {
    std::vector<std::function<void()>> dropped;
    {
        std::lock_guard lock(mutex_);
        ending_ = true;
        dropped.swap(posted_);
    }
    wake();
    if (thread_.joinable()) thread_.join();
}

void PollThread::wake() const {
    const uint64_t one = 1;
    if (wakeHandle_ >= 0 && write(wakeHandle_, &one, sizeof one) < 0) return;  // awake already
}

void PollThread::watch(int handle, short events, std::function<void()> ready) {
    std::lock_guard lock(mutex_);
    watched_.push_back({handle, events, std::make_shared<std::function<void()>>(std::move(ready))});
}

void PollThread::unwatch(int handle) {
    std::lock_guard lock(mutex_);
    std::erase_if(watched_, [handle](const Watched& watched) { return watched.handle == handle; });
}

void PollThread::post(std::function<void()> block) {
    {
        std::lock_guard lock(mutex_);
        if (ending_) return;
        posted_.push_back(std::move(block));
        if (registry_) registry_->noteWorkTaken();
    }
    wake();
}

void PollThread::work() {
    enterQueueThread(label_.c_str(), qos_);
    std::unique_lock lock(mutex_);
    while (!ending_) {
        if (posted_.empty()) {
            sleep(lock);
            continue;
        }
        std::vector<std::function<void()>> blocks;
        blocks.swap(posted_);
        busy_ = true;
        lock.unlock();
        for (auto& block : blocks) {
            if (!ending_) runGuarded(block);
            block = nullptr;
        }
        lock.lock();
        busy_ = false;
    }
}

void PollThread::sleep(std::unique_lock<std::mutex>& lock) {
    const std::vector<Watched> watched = watched_;
    lock.unlock();
    std::vector<pollfd> polls{{wakeHandle_, POLLIN, 0}};
    for (const Watched& one : watched) polls.push_back({one.handle, one.events, 0});
    constexpr int kWithoutWake = 1000;
    const int ready = poll(polls.data(), polls.size(), wakeHandle_ >= 0 ? -1 : kWithoutWake);
    lock.lock();
    if (ready <= 0 || ending_) return;
    busy_ = true;
    const std::vector<std::shared_ptr<std::function<void()>>> told = std::exchange(toldHere_, {});
    if (registry_) registry_->noteWorkTaken();
    lock.unlock();
    uint64_t count = 0;
    if (polls[0].revents && read(wakeHandle_, &count, sizeof count) < 0) count = 0;
    for (size_t i = 0; i < watched.size() && !ending_; i++)
        if (polls[i + 1].revents) runGuarded(*watched[i].ready);
    for (size_t i = 0; i < told.size() && !ending_; i++) runGuarded(*told[i]);
    lock.lock();
    busy_ = false;
}

bool PollThread::isIdle() const {
    std::lock_guard lock(mutex_);
    if (busy_ || !posted_.empty()) return false;
    std::vector<pollfd> polls;
    for (const Watched& watched : watched_) polls.push_back({watched.handle, watched.events, 0});
    if (poll(polls.data(), polls.size(), 0) <= 0) return toldHere_.empty();
    // What stays readable wakes the thread; POLLPRI is told once, to whoever asks first.
    for (size_t i = 0; i < polls.size(); i++)
        if (polls[i].revents && !(watched_[i].events & POLLIN))
            toldHere_.push_back(watched_[i].ready);
    if (!toldHere_.empty()) wake();
    return false;
}
