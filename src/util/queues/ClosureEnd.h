#pragma once
#include <condition_variable>
#include <memory>
#include <mutex>

/// Waits until a closure that was queued is gone, whether it ran or was dropped: the closure holds
/// the token, which says so when it goes.
/// Owner:   who waits. Threads: the token may go on any.
class ClosureEnd {
  public:
    std::shared_ptr<void> token() const {
        return std::shared_ptr<void>(nullptr, [state = state_](void*) {
            std::lock_guard lock(state->mutex);
            state->isOver = true;
            state->over.notify_one();
        });
    }
    void wait() {
        std::unique_lock lock(state_->mutex);
        state_->over.wait(lock, [this] { return state_->isOver; });
    }

  private:
    struct State {
        std::mutex mutex;
        std::condition_variable over;
        bool isOver = false;
    };
    const std::shared_ptr<State> state_ = std::make_shared<State>();
};
