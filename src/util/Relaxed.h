#pragma once
#include <atomic>

/// One word that several threads read and write without a lock and without any order between it
/// and other memory: a flag or a counter. Reads and writes look like those of a plain variable.
template <class T>
class Relaxed {
  public:
    constexpr Relaxed(T value = {}) : value_(value) {}  // NOLINT(google-explicit-constructor)
    Relaxed(const Relaxed&) = delete;
    Relaxed& operator=(const Relaxed&) = delete;
    // NOLINTNEXTLINE(google-explicit-constructor)
    operator T() const { return value_.load(std::memory_order_relaxed); }
    Relaxed& operator=(T value) {
        value_.store(value, std::memory_order_relaxed);
        return *this;
    }
    /// Adds and answers the new value.
    T add(T amount) { return value_.fetch_add(amount, std::memory_order_relaxed) + amount; }

    T exchange(T value) { return value_.exchange(value, std::memory_order_relaxed); }

  private:
    std::atomic<T> value_;
};
