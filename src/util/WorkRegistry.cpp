#include "util/WorkRegistry.h"

#include <algorithm>

void WorkRegistry::add(WorkSource* source) {
    std::lock_guard lock(mutex_);
    entries_.push_back({source});
}

void WorkRegistry::remove(WorkSource* source) {
    std::unique_lock lock(mutex_);
    drainOver_.wait(lock, [&] { return draining_ != source; });
    std::erase_if(entries_, [source](const Entry& entry) { return entry.source == source; });
}

bool WorkRegistry::isIdle() const {
    std::lock_guard lock(mutex_);
    return std::all_of(entries_.begin(), entries_.end(),
                       [](const Entry& entry) { return entry.source->isIdle(); });
}

std::vector<std::string> WorkRegistry::busyLabels() const {
    std::lock_guard lock(mutex_);
    std::vector<std::string> labels;
    for (const Entry& entry : entries_)
        if (!entry.source->isIdle()) labels.push_back(entry.source->label());
    return labels;
}

void WorkRegistry::drainAll() {
    std::unique_lock lock(mutex_);
    for (;;) {
        // Looked up anew each time: what a source drops may end other sources.
        auto next = std::find_if(entries_.rbegin(), entries_.rend(),
                                 [](const Entry& entry) { return !entry.drained; });
        if (next == entries_.rend()) return;
        next->drained = true;
        WorkSource* source = next->source;
        draining_ = source;
        lock.unlock();
        source->drain();
        lock.lock();
        draining_ = nullptr;
        drainOver_.notify_all();
    }
}
