#pragma once
#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

/// Ends an observation when it goes out of scope; it may outlive what is observed. An owner keeps
/// it as its last member, so that it ends before what the observer uses. On a thread other than the
/// emitting one the end does not wait for a call that is under way.
class Subscription {
  public:
    Subscription() = default;
    explicit Subscription(std::function<void()> end) : end_(std::move(end)) {}
    Subscription(Subscription&& other) noexcept : end_(std::exchange(other.end_, nullptr)) {}
    Subscription& operator=(Subscription&& other) noexcept {
        if (this == &other) return *this;
        cancel();
        end_ = std::exchange(other.end_, nullptr);
        return *this;
    }
    ~Subscription() { cancel(); }
    void cancel() {
        if (auto end = std::exchange(end_, nullptr)) end();
    }

  private:
    std::function<void()> end_;
};

/// A list of closures, called in the order they came, on the thread that emits, before emit
/// returns. Observers may come and go while it runs: one that has gone is not called any more, one
/// that has come is called from the next emission on. Threads: any.
template <class... Args>
class Signal {
  public:
    using Observer = std::function<void(const Args&...)>;

    [[nodiscard]] Subscription observe(Observer observer) {
        auto entry = std::make_shared<Entry>(std::move(observer));
        std::lock_guard lock(list_->mutex);
        list_->entries.push_back(entry);
        return Subscription([list = std::weak_ptr(list_), entry] {
            entry->gone = true;
            if (auto alive = list.lock()) {
                std::lock_guard removing(alive->mutex);
                std::erase(alive->entries, entry);
            }
        });
    }
    void emit(const Args&... args) const {
        std::vector<std::shared_ptr<Entry>> entries;
        {
            std::lock_guard lock(list_->mutex);
            entries = list_->entries;
        }
        for (const auto& entry : entries)
            if (!entry->gone) entry->observer(args...);
    }

  private:
    struct Entry {
        explicit Entry(Observer o) : observer(std::move(o)) {}
        const Observer observer;
        std::atomic<bool> gone = false;  // an earlier observer may have ended this one's owner
    };
    struct List {
        std::mutex mutex;
        std::vector<std::shared_ptr<Entry>> entries;
    };
    std::shared_ptr<List> list_ = std::make_shared<List>();
};

/// A value that tells of its changes: each observer gets the old and the new one, on the thread
/// that sets it, before set returns. Setting an equal value tells too: observers compare.
/// Threads: any; value() is a copy.
template <class T>
class Observable {
  public:
    explicit Observable(T value = {}) : value_(std::move(value)) {}
    T value() const {
        std::lock_guard lock(mutex_);
        return value_;
    }
    /// A value that stands for the same thing: nobody is told.
    void replace(T value) {
        std::lock_guard lock(mutex_);
        value_ = std::move(value);
    }
    void set(T value) {
        T old;
        {
            std::lock_guard lock(mutex_);
            old = std::exchange(value_, value);
        }
        changed_.emit(old, value);
    }
    [[nodiscard]] Subscription observe(std::function<void(const T& old, const T& now)> observer) {
        return changed_.observe(std::move(observer));
    }

  private:
    mutable std::mutex mutex_;
    T value_;
    Signal<T, T> changed_;
};
