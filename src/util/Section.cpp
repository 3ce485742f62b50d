#include "util/Section.h"

#include <cstdlib>

#include "util/log.h"

namespace {
thread_local const void* innermost = nullptr;  // Section::Inside of this thread
}  // namespace

bool Section::isThreadInside() {
    return innermost != nullptr;
}

Section::Inside::Inside(Section& section, bool exclusive)
    : section_(section),
      exclusive_(exclusive),
      outer_(const_cast<Inside*>(static_cast<const Inside*>(innermost))) {
    for (const Inside* inside = outer_; inside; inside = inside->outer_) {
        if (inside == outer_ && inside->section_.order_ >= section_.order_)
            logError("Section %s entered inside section %s", section_.label_.c_str(),
                     inside->section_.label_.c_str());
        if (&inside->section_ != &section_) continue;
        if (exclusive && !inside->exclusive_) std::abort();  // it would wait for itself
        nested_ = true;
    }
    if (!nested_) section_.enter(exclusive_);
    innermost = this;
}

Section::Inside::Inside(Section& section, bool exclusive, Already)
    : section_(section),
      exclusive_(exclusive),
      outer_(const_cast<Inside*>(static_cast<const Inside*>(innermost))) {
    innermost = this;
}

Section::Inside::~Inside() {
    innermost = outer_;
    if (!nested_) section_.leave(exclusive_);
}

void Section::enter(bool exclusive) {
    std::unique_lock lock(mutex_);
    if (waiting_.empty() && !writing_ && (!exclusive || readers_ == 0)) {
        if (exclusive)
            writing_ = true;
        else
            readers_++;
        return;
    }
    Waiter self{exclusive};
    waiting_.push_back(&self);
    self.condition.wait(lock, [&] { return self.admitted; });
}

bool Section::tryEnter() {
    std::lock_guard lock(mutex_);
    if (!waiting_.empty() || writing_ || readers_ > 0) return false;
    writing_ = true;
    return true;
}

void Section::leave(bool exclusive) {
    std::lock_guard lock(mutex_);
    if (exclusive)
        writing_ = false;
    else
        readers_--;
    admitWaiting();
}

void Section::admitWaiting() {
    while (!waiting_.empty()) {
        Waiter* next = waiting_.front();
        if (writing_ || (next->exclusive && readers_ > 0)) return;
        waiting_.pop_front();
        if (next->exclusive)
            writing_ = true;
        else
            readers_++;
        next->admitted = true;
        next->condition.notify_one();
        if (next->exclusive) return;
    }
}
