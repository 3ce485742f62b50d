#pragma once
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

/// A thread that looks after something every now and then, beside all queues and not part of
/// "settled": its block is called after each interval until the owner goes.
/// Owner:   who makes it; the end waits for a call that runs. Real time, also where the program's
///          clock is moved by hand.
class DetachedThread {
  public:
    DetachedThread(std::string label, std::chrono::milliseconds interval,
                   std::function<void()> block);
    ~DetachedThread();
    DetachedThread(const DetachedThread&) = delete;
    DetachedThread& operator=(const DetachedThread&) = delete;

  private:
    void run();

    const std::string label_;
    const std::chrono::milliseconds interval_;
    const std::function<void()> block_;
    std::mutex mutex_;
    std::condition_variable ended_;
    bool ending_ = false;
    std::thread thread_;
};
