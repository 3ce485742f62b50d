#include "util/World.h"

#include <cstdlib>

#include "util/log.h"

namespace {
std::atomic<World*> theWorld = nullptr;
}  // namespace

World& World::current() {
    World* world = theWorld.load(std::memory_order_acquire);
    if (!world) {
        logError("There is no World");
        std::abort();
    }
    return *world;
}

bool World::exists() {
    return theWorld.load(std::memory_order_acquire) != nullptr;
}

World::World(std::unique_ptr<Clock> clock) : clock_(std::move(clock)), mainQueue_(*clock_) {
    World* none = nullptr;
    if (!theWorld.compare_exchange_strong(none, this)) {
        logError("There is a World already");
        std::abort();
    }
}

World::~World() {
    mainQueue_.close();
    work_.drainAll();
    // One by one: the end of an object may bring another to life.
    while (!destroy_.empty()) {
        const auto destroy = std::move(destroy_.back());
        destroy_.pop_back();
        destroy();
    }
    theWorld.store(nullptr, std::memory_order_release);
}

bool World::isSettled(Clock::Duration horizon) {
    const uint64_t before = work_.workTaken();
    return mainQueue_.isIdle(horizon) && work_.isIdle() && mainQueue_.isIdle(horizon) &&
           work_.workTaken() == before;
}
