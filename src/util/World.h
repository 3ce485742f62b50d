#pragma once
#include <atomic>
#include <cstdlib>
#include <functional>
#include <memory>
#include <mutex>
#include <typeindex>
#include <unordered_map>
#include <vector>

#include "util/Clock.h"
#include "util/WorkRegistry.h"
#include "util/queues/MainQueue.h"

/// Everything that exists once while the program runs: the clock, the main queue, the registry of
/// work, and the shared instances of the classes that have one. It can be made, ended and made
/// again in one process; a test gets a fresh one by declaring a variable.
/// Owner:   main, the console or a test; on the main thread. One at a time.
/// Threads: shared() from any. The end drains all queues, then destroys the shared objects in the
///          reverse of the order in which they were made.
class World {
  public:
    explicit World(std::unique_ptr<Clock> clock = std::make_unique<Clock>());
    ~World();
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    static World& current();
    static bool exists();

    const Clock& clock() const { return *clock_; }
    WorkRegistry& work() { return work_; }
    MainQueue& mainQueue() { return mainQueue_; }

    /// The one T, made with its default constructor at the first call; one without a default
    /// constructor must have been provided.
    template <class T>
    T& shared() {
        std::lock_guard lock(mutex_);
        auto& slot = objects_[typeid(T)];
        if (!slot) {
            if constexpr (std::is_default_constructible_v<T>)
                keep<T>(slot, std::make_unique<T>());
            else
                std::abort();
        }
        return *static_cast<T*>(slot);
    }
    /// Makes the one T with arguments, before its first use.
    template <class T, class... Args>
    T& provide(Args&&... args) {
        auto object = std::make_unique<T>(std::forward<Args>(args)...);
        std::lock_guard lock(mutex_);
        keep<T>(objects_[typeid(T)], std::move(object));
        return *static_cast<T*>(objects_[typeid(T)]);
    }
    /// Nothing waits or runs, and no timer is due within the given time. Main thread.
    bool isSettled(Clock::Duration horizon = std::chrono::milliseconds(50));

  private:
    template <class T>
    void keep(void*& slot, std::unique_ptr<T> object) {
        T* raw = object.release();
        slot = raw;
        destroy_.push_back([this, raw] {
            delete raw;
            objects_.erase(typeid(T));
        });
    }

    std::unique_ptr<Clock> clock_;
    WorkRegistry work_;
    MainQueue mainQueue_;
    std::recursive_mutex mutex_;  // a shared object may ask for another while it is made
    std::unordered_map<std::type_index, void*> objects_;
    std::vector<std::function<void()>> destroy_;
};
