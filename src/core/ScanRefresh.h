#pragma once
#include <cstdint>
#include <memory>

#include "modes/framework/ModeHost.h"
#include "util/queues/MainQueue.h"

/// Keeps the list fresh while a scan fills the index: the first rows come as soon as there are any,
/// also from a slow disk, and then a few times a second as long as items arrive.
/// Owner:   AppDelegate. Threads: main.
class ScanRefresh {
  public:
    /// itemCount tells how far the scan is; told is called each time it has got further.
    ScanRefresh(ModeHost& host, std::function<uint64_t()> itemCount, std::function<void()> told)
        : host_(host), itemCount_(std::move(itemCount)), told_(std::move(told)) {}

    void start();
    void stop() { timer_.reset(); }

  private:
    void tick();

    ModeHost& host_;
    const std::function<uint64_t()> itemCount_;
    const std::function<void()> told_;
    std::unique_ptr<RepeatingTimer> timer_;
    uint64_t itemsSearched_ = 0;
    int ticksToWait_ = 0;
    int ticks_ = 0;
};
