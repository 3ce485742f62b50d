#include "platform/linux/events/EventRecorder.h"

#include <poll.h>

#include <algorithm>

namespace {
constexpr size_t kMostAPass = 20'000;  // raw events
}

EventRecorder::EventRecorder(FileEvents::Request request, std::shared_ptr<EventSourceState> state)
    : request_(std::move(request)),
      state_(std::move(state)),
      outbox_(state_->lastId),
      ring_(state_->lastId, state_->ringSize),
      thread_("fileEvents", Qos::utility) {
    // The clock that the disks' times are taken from.
    clock_gettime(CLOCK_REALTIME_COARSE, &begin_);
    thread_.post([this] { begin(); });
}

EventRecorder::~EventRecorder() {
    thread_.drain();
}

void EventRecorder::begin() {
    if (mounts_.handle() >= 0)
        thread_.watch(mounts_.handle(), POLLPRI, [this] { mountsChanged(); });
    if (!request_.fileEvents) return;
    tree_ = std::make_unique<WatchedTree>(
        WatchedTree::Options{request_.paths, request_.shouldWatch, state_->backends,
                             [this] { return thread_.isEnding(); }},
        state_->budget);
    translator_ = std::make_unique<EventTranslator>(*tree_, outbox_, request_.markSelf);
    tree_->build(begin_);
    // Nobody can say what happened in these: perhaps a scan saw it, perhaps it came too late.
    for (std::string& path : tree_->takeChangedPaths())
        outbox_.put(attributeFlags() | kFSEventStreamEventFlagItemIsDir, std::move(path));
    std::vector<RawEvent> none;
    translate(none);
}

void EventRecorder::pump() {
    std::vector<RawEvent> events;
    tree_->read(events, kMostAPass);
    translate(events);
}

void EventRecorder::translate(std::vector<RawEvent>& events) {
    for (;;) {
        translator_->translate(events);
        flush();
        if (!tree_->hasBacklog() || thread_.isEnding()) break;
        tree_->read(events, kMostAPass);
    }
    followHandle();
    if (!tree_->takeUnwatchedChanged()) return;
    std::vector<FileURL> folders = tree_->unwatchedFolders();
    std::lock_guard lock(unwatchedMutex_);
    unwatched_ = folders.empty() ? nullptr
                                 : std::make_shared<const std::vector<FileURL>>(std::move(folders));
}

/// An instance that was made anew has another handle, or the same number for another one.
void EventRecorder::followHandle() {
    if (handle_ >= 0) thread_.unwatch(handle_);
    handle_ = tree_->handle();
    if (handle_ >= 0) thread_.watch(handle_, POLLIN, [this] { pump(); });
}

void EventRecorder::mountsChanged() {
    if (tree_) pump();  // what was renamed before
    for (const MountTable::Change& change : mounts_.changes()) mountChanged(change);
    if (!tree_) return flush();
    // A mount point that was moved with a folder above it has gone from another path than the one
    // that the table had.
    for (std::string& path : tree_->lostMounts(mounts_)) mountChanged({std::move(path), false});
    std::vector<RawEvent> none;
    translate(none);
}

void EventRecorder::mountChanged(const MountTable::Change& change) {
    const FileURL mount(change.path);
    const bool concerns = std::any_of(
        request_.paths.begin(), request_.paths.end(),
        [&](const FileURL& root) { return mount.isAtOrBelow(root) || root.isAtOrBelow(mount); });
    if (!concerns) return;
    outbox_.cut();
    outbox_.put((change.isThere ? kFSEventStreamEventFlagMount : kFSEventStreamEventFlagUnmount) |
                    kFSEventStreamEventFlagItemIsDir,
                change.path);
    outbox_.cut();
    if (translator_) translator_->mounted(change.path, change.isThere);
}

void EventRecorder::deliver(uint64_t since, bool isReplay,
                            std::function<void(FileEventBatch)> callback) {
    std::lock_guard lock(deliveryMutex_);
    const uint64_t turn = ++turn_;
    thread_.post([this, turn, since, isReplay, callback = std::move(callback)] {
        {
            std::lock_guard inner(deliveryMutex_);
            if (turn != turn_) return;  // taken back meanwhile
            callback_ = callback;
        }
        replay(since, isReplay);
    });
}

void EventRecorder::replay(uint64_t since, bool isReplay) {
    if (auto batches = ring_.since(since)) {
        for (FileEventBatch& batch : *batches) hand(std::move(batch));
    } else {
        FileEventBatch batch;
        for (const FileURL& path : request_.paths)
            batch.push_back({++state_->lastId,
                             kFSEventStreamEventFlagMustScanSubDirs |
                                 kFSEventStreamEventFlagUserDropped |
                                 kFSEventStreamEventFlagItemIsDir,
                             path.path()});
        hand(std::move(batch));
    }
    if (isReplay && !request_.paths.empty())
        hand({{++state_->lastId, kFSEventStreamEventFlagHistoryDone, request_.paths[0].path()}});
}

uint64_t EventRecorder::pause(uint64_t since) {
    std::lock_guard lock(deliveryMutex_);
    turn_++;
    callback_ = nullptr;
    const uint64_t delivered = std::exchange(deliveredId_, 0);
    return delivered != 0 ? delivered : since;
}

void EventRecorder::flush() {
    for (FileEventBatch& batch : outbox_.take()) {
        ring_.append(batch);
        hand(std::move(batch));
    }
}

void EventRecorder::hand(FileEventBatch batch) {
    std::lock_guard lock(deliveryMutex_);
    if (!callback_ || batch.empty()) return;
    deliveredId_ = batch.back().id;
    callback_(std::move(batch));
}

SharedFolders EventRecorder::unwatchedFolders() const {
    std::lock_guard lock(unwatchedMutex_);
    return unwatched_;
}

void EventRecorder::recheckUnwatched() {
    thread_.post([this] {
        if (!tree_) return;
        for (std::string& path : tree_->recheckUnwatched())
            outbox_.put(kFSEventStreamEventFlagMustScanSubDirs | kFSEventStreamEventFlagItemIsDir,
                        std::move(path));
        std::vector<RawEvent> none;
        translate(none);
    });
}

bool EventRecorder::isFor(const FileEvents::Request& request) const {
    return request.paths == request_.paths && request.fileEvents == request_.fileEvents &&
           request.markSelf == request_.markSelf;
}
