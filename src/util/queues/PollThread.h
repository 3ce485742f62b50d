#pragma once
#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "util/WorkRegistry.h"
#include "util/queues/Qos.h"

/// A thread that sleeps until a handle has something to say or a block is posted. While it sleeps
/// it counts as idle and costs nothing.
/// Owner:   whoever makes it; the end waits for what runs and drops what waits.
/// Threads: post, isEnding, isIdle: any. watch and unwatch: its own thread. The end: not its own.
/// Units:   poll events (POLLIN, POLLPRI).
/// Fails:   without a handle to wake it by, what is posted runs late: at the next event.
class PollThread : public WorkSource {
  public:
    PollThread(std::string label, Qos qos);
    ~PollThread() override;
    PollThread(const PollThread&) = delete;
    PollThread& operator=(const PollThread&) = delete;

    /// Calls ready each time one of the events holds, until unwatch.
    void watch(int handle, short events, std::function<void()> ready);
    void unwatch(int handle);
    void post(std::function<void()> block);
    /// Long work on the thread asks this now and then, and returns.
    bool isEnding() const { return ending_.load(std::memory_order_relaxed); }

    /// Asks the handles too: what they have not yet been asked for is work to do.
    bool isIdle() const override;
    void drain() override;
    const std::string& label() const override { return label_; }

  private:
    struct Watched {
        int handle;
        short events;
        std::shared_ptr<std::function<void()>> ready;
    };
    void work();
    void sleep(std::unique_lock<std::mutex>& lock);
    void wake() const;

    const std::string label_;
    const Qos qos_;
    const int wakeHandle_;
    mutable std::mutex mutex_;
    std::vector<Watched> watched_;
    std::vector<std::function<void()>> posted_;
    /// Told to isIdle instead of to the thread.
    mutable std::vector<std::shared_ptr<std::function<void()>>> toldHere_;
    bool busy_ = false;
    std::atomic<bool> ending_ = false;
    WorkRegistry* registry_ = nullptr;
    std::thread thread_;
};
