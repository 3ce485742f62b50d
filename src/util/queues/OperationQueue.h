#pragma once
#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include "util/WorkRegistry.h"
#include "util/queues/Qos.h"

/// One piece of work for an OperationQueue. main() polls isCancelled() where it can end early.
class Operation {
  public:
    virtual ~Operation() = default;
    virtual void main() = 0;
    void cancel() { cancelled_.store(true, std::memory_order_relaxed); }
    bool isCancelled() const { return cancelled_.load(std::memory_order_relaxed); }

    /// Called once on the queue's thread after main, also when a cancelled operation never ran it.
    /// Set before the operation is queued.
    std::function<void()> completionBlock;

  private:
    std::atomic<bool> cancelled_ = false;
};

/// Operations that run on threads of this queue's own, as many at once as its width, made on
/// demand: jobs here block on locks, disks and other queues, so a pool that queues share would
/// deadlock. Owner:   whoever makes it; the end waits for what runs and drops what waits. Threads:
/// any; the end and the waits not from the queue's own threads.
class OperationQueue : public WorkSource {
  public:
    static constexpr unsigned kUnlimited = ~0u;
    enum class Order { oldestFirst, newestFirst };

    OperationQueue(std::string name, unsigned width, Qos qos, Order order = Order::oldestFirst);
    ~OperationQueue() override;
    OperationQueue(const OperationQueue&) = delete;
    OperationQueue& operator=(const OperationQueue&) = delete;

    void addOperation(std::shared_ptr<Operation> operation);
    /// As if added one after another, at the cost of one.
    void addOperations(std::span<std::shared_ptr<Operation>> operations);
    void addBlock(std::function<void()> block);
    /// What has not begun never runs its main; what runs is asked to end.
    void cancelAllOperations();
    void waitUntilAllOperationsAreFinished();
    void setSuspended(bool suspended);
    bool isOwnThread() const;

    bool isIdle() const override;
    void drain() override;
    const std::string& label() const override { return name_; }

  private:
    void work();
    void startThreads(size_t added);

    const std::string name_;
    const unsigned width_;
    const Qos qos_;
    const Order order_;
    mutable std::mutex mutex_;
    std::condition_variable changed_;   // there is work, or the end has come
    std::condition_variable finished_;  // an operation has ended
    std::deque<std::shared_ptr<Operation>> waiting_;
    std::vector<Operation*> running_;
    std::vector<std::thread> threads_;
    size_t sleeping_ = 0;
    bool suspended_ = false;
    bool ending_ = false;
    WorkRegistry* registry_ = nullptr;
};

/// Blocks one after another on one thread, in the order they came.
class SerialQueue {
  public:
    SerialQueue(std::string label, Qos qos) : queue_(std::move(label), 1, qos) {}
    void async(std::function<void()> block) { queue_.addBlock(std::move(block)); }
    /// Waits until the block, and so all before it, has run. Runs it at once on the queue's own
    /// thread.
    void sync(const std::function<void()>& block);
    void waitUntilAllOperationsAreFinished() { queue_.waitUntilAllOperationsAreFinished(); }
    const std::string& label() const { return queue_.label(); }

  private:
    OperationQueue queue_;
};
