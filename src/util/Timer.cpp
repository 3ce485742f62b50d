#include "util/Timer.h"

#include "util/ProcessFlags.h"
#include "util/World.h"
#include "util/log.h"

Timer& Timer::sharedInstance() {
    return World::current().shared<Timer>();
}

void Timer::start(const std::string& name, Force force) {
    if (force == Force::no && !processFlags.debugPerformance) return;
    queue_.sync([&] { dict_[name] = {std::clock(), World::current().clock().now()}; });
}

double Timer::stop(const std::string& name, Force force) {
    if (force == Force::no && !processFlags.debugPerformance) return -1.0;
    double wall = 0.0;
    queue_.sync([&] {
        const Clock::TimePoint nowWall = World::current().clock().now();
        const std::clock_t nowCpu = std::clock();
        const auto entry = dict_.find(name);
        if (entry == dict_.end()) return;
        wall = std::chrono::duration<double>(nowWall - entry->second.wall).count();
        const double cpu = static_cast<double>(nowCpu - entry->second.cpu) / CLOCKS_PER_SEC;
        dict_.erase(entry);
        logIf(processFlags.debugPerformance, Info, "Timer %s: CPU: %lf secs, WALL: %lf secs",
              name.c_str(), cpu, wall);
    });
    return wall;
}
