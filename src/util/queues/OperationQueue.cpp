#include "util/queues/OperationQueue.h"

#include <algorithm>

#include "util/World.h"
#include "util/queues/ClosureEnd.h"
#include "util/queues/runGuarded.h"

namespace {

thread_local const OperationQueue* ownQueue = nullptr;

class BlockOperation : public Operation {
  public:
    explicit BlockOperation(std::function<void()> block) : block_(std::move(block)) {}
    void main() override { block_(); }

  private:
    const std::function<void()> block_;
};

void run(Operation& operation) {
    if (!operation.isCancelled()) runGuarded([&] { operation.main(); });
    if (operation.completionBlock) runGuarded(operation.completionBlock);
}

}  // namespace

OperationQueue::OperationQueue(std::string name, unsigned width, Qos qos, Order order)
    : name_(std::move(name)), width_(width), qos_(qos), order_(order) {
    if (World::exists()) {
        registry_ = &World::current().work();
        registry_->add(this);
    }
}

OperationQueue::~OperationQueue() {
    if (registry_) registry_->remove(this);
    drain();
}

void OperationQueue::drain() {
    std::deque<std::shared_ptr<Operation>> dropped;
    std::vector<std::thread> threads;
    {
        std::lock_guard lock(mutex_);
        ending_ = true;
        dropped.swap(waiting_);
        for (Operation* operation : running_) operation->cancel();
        threads.swap(threads_);
    }
    changed_.notify_all();
    dropped.clear();  // whoever waits for one of these may be what a running one waits for
    for (std::thread& thread : threads) thread.join();
    finished_.notify_all();
}

void OperationQueue::addOperation(std::shared_ptr<Operation> operation) {
    addOperations({&operation, 1});
}

void OperationQueue::addOperations(std::span<std::shared_ptr<Operation>> operations) {
    std::lock_guard lock(mutex_);
    if (ending_) return;
    if (registry_) registry_->noteWorkTaken();
    for (auto& operation : operations) {
        if (order_ == Order::newestFirst)
            waiting_.push_front(std::move(operation));
        else
            waiting_.push_back(std::move(operation));
    }
    startThreads(operations.size());
}

void OperationQueue::addBlock(std::function<void()> block) {
    addOperation(std::make_shared<BlockOperation>(std::move(block)));
}

/// Wakes sleepers for what was added, and makes threads where these are not enough.
void OperationQueue::startThreads(size_t added) {
    if (suspended_) return;
    for (size_t i = std::min(added, sleeping_); i > 0; i--) changed_.notify_one();
    while (threads_.size() < width_ && waiting_.size() > sleeping_ &&
           threads_.size() < running_.size() + waiting_.size())
        threads_.emplace_back([this] { work(); });
}

void OperationQueue::work() {
    enterQueueThread(name_.c_str(), qos_);
    ownQueue = this;
    std::unique_lock lock(mutex_);
    for (;;) {
        sleeping_++;
        changed_.wait(lock, [this] { return ending_ || (!waiting_.empty() && !suspended_); });
        sleeping_--;
        if (waiting_.empty()) return;
        std::shared_ptr<Operation> operation = std::move(waiting_.front());
        waiting_.pop_front();
        running_.push_back(operation.get());
        lock.unlock();
        run(*operation);
        lock.lock();
        std::erase(running_, operation.get());
        const bool idle = waiting_.empty() && running_.empty();
        lock.unlock();
        operation.reset();  // what it held may be large
        if (idle) finished_.notify_all();
        lock.lock();
    }
}

void OperationQueue::cancelAllOperations() {
    std::lock_guard lock(mutex_);
    for (auto& operation : waiting_) operation->cancel();
    for (Operation* operation : running_) operation->cancel();
}

void OperationQueue::waitUntilAllOperationsAreFinished() {
    std::unique_lock lock(mutex_);
    finished_.wait(lock, [this] { return waiting_.empty() && running_.empty(); });
}

void OperationQueue::setSuspended(bool suspended) {
    std::lock_guard lock(mutex_);
    suspended_ = suspended;
    if (!suspended) {
        startThreads(waiting_.size());
        changed_.notify_all();
    }
}

bool OperationQueue::isOwnThread() const {
    return ownQueue == this;
}

bool OperationQueue::isIdle() const {
    std::lock_guard lock(mutex_);
    return waiting_.empty() && running_.empty();
}

void SerialQueue::sync(const std::function<void()>& block) {
    if (queue_.isOwnThread()) {
        block();
        return;
    }
    ClosureEnd end;
    queue_.addBlock([&block, token = end.token()] { block(); });
    end.wait();
}
