#include "platform/linux/events/WatchSet.h"

#include <linux/magic.h>
#include <poll.h>
#include <sys/epoll.h>
#include <sys/vfs.h>

#include <cerrno>
#include <cstring>

#include "platform/FileEvents.h"
#include "util/log.h"

namespace {

constexpr int kPartnerDelay = 5;  // milliseconds between the halves of a rename, at most

bool tellsNothing(int folder) {
    struct statfs disk;
    if (fstatfs(folder, &disk) != 0) return false;
    switch (static_cast<unsigned long>(disk.f_type)) {
        case PROC_SUPER_MAGIC:
        case SYSFS_MAGIC:
        case CGROUP_SUPER_MAGIC:
        case CGROUP2_SUPER_MAGIC:
        case DEBUGFS_MAGIC:
        case TRACEFS_MAGIC:
        case SECURITYFS_MAGIC:
        case BPF_FS_MAGIC:
        case PSTOREFS_MAGIC:
            return true;
        default:
            return false;
    }
}

/// Whether the last events hold the first half of a rename alone.
bool endsInsideRename(const std::vector<RawEvent>& events) {
    constexpr size_t kLast = 64;
    const size_t first = events.size() > kLast ? events.size() - kLast : 0;
    for (size_t i = events.size(); i-- > first;)
        if (events[i].cookie != 0 && events[i].newFolder.empty() &&
            (events[i].flags & kFSEventStreamEventFlagItemRenamed))
            return true;
    return false;
}

}  // namespace

WatchSet::WatchSet(Backends backends, WatchBudget& budget)
    : backends_(backends), budget_(budget), poll_(epoll_create1(EPOLL_CLOEXEC)) {}

WatchSet::~WatchSet() {
    for (const auto kind : {WatchBudget::kFanotify, WatchBudget::kInotify})
        budget_.giveBack(kind, taken_[kind]);
}

WatchBudget::Kind WatchSet::kindOf(const std::string& key) {
    return key.size() == sizeof(int) ? WatchBudget::kInotify : WatchBudget::kFanotify;
}

KernelWatch* WatchSet::instance(WatchBudget::Kind kind) {
    Instance& instance = instances_[kind];
    if (!instance.tried) {
        instance.tried = true;
        const bool inotify = kind == WatchBudget::kInotify;
        instance.watch =
            inotify ? makeInotifyWatch() : makeFanotifyWatch(backends_ == Backends::best);
        if (!instance.watch) {
            logWarning("File events: no %s: %s", inotify ? "inotify" : "fanotify", strerror(errno));
            return nullptr;
        }
        epoll_event event{};
        event.events = EPOLLIN;
        epoll_ctl(poll_.get(), EPOLL_CTL_ADD, instance.watch->handle(), &event);
    }
    return instance.watch.get();
}

WatchSet::Way WatchSet::wayFor(int folder, dev_t device) {
    Way& way = ways_[device];
    if (way != Way::unknown) return way;
    if (tellsNothing(folder))
        way = Way::silent;
    else if (backends_ != Backends::inotify && instance(WatchBudget::kFanotify))
        way = Way::fanotify;
    else
        way = Way::inotify;
    return way;
}

WatchSet::Added WatchSet::add(int folder, dev_t device, KernelWatch::Interest interest,
                              bool evenIfFull) {
    const Way way = wayFor(folder, device);
    if (way == Way::silent) return {Outcome::silent, {}};
    if (way == Way::fanotify) {
        Added added = addTo(WatchBudget::kFanotify, folder, interest, evenIfFull);
        const bool refused = added.outcome == Outcome::failed && errno != ENOENT &&
                             errno != ESTALE && errno != EACCES && errno != ENOMEM;
        if (!refused || backends_ == Backends::fanotify) return added;
        // This disk has no folder numbers, or gives them to nobody: overlays, FUSE, subvolumes.
        ways_[device] = Way::inotify;
    }
    return addTo(WatchBudget::kInotify, folder, interest, evenIfFull);
}

WatchSet::Added WatchSet::addTo(WatchBudget::Kind kind, int folder, KernelWatch::Interest interest,
                                bool evenIfFull) {
    KernelWatch* watch = instance(kind);
    if (!watch) return {Outcome::full, {}};
    const bool counted = budget_.take(kind);
    if (!counted && !evenIfFull) return {Outcome::full, {}};
    KernelWatch::Added added = watch->add(folder, interest);
    if (added.error == 0) {
        if (!counted) budget_.takeAnyway(kind);
        taken_[kind]++;
        return {Outcome::watched, std::move(added.key)};
    }
    if (counted) budget_.giveBack(kind);
    errno = added.error;
    return {added.error == ENOSPC ? Outcome::full : Outcome::failed, {}};
}

void WatchSet::uncount(WatchBudget::Kind kind) {
    if (taken_[kind] == 0) return;
    taken_[kind]--;
    budget_.giveBack(kind);
}

void WatchSet::drop(const std::string& key, bool dead) {
    const WatchBudget::Kind kind = kindOf(key);
    if (!instances_[kind].watch) return;
    instances_[kind].watch->drop(key);
    if (kind == WatchBudget::kInotify || dead) uncount(kind);  // else it stays, and counts
}

bool WatchSet::read(std::vector<RawEvent>& events, size_t most) {
    const size_t before = events.size();
    for (Instance& instance : instances_)
        while (instance.watch && events.size() < before + most && instance.watch->read(events)) {}
    KernelWatch* inotify = instances_[WatchBudget::kInotify].watch.get();
    if (inotify && endsInsideRename(events)) {
        pollfd more{inotify->handle(), POLLIN, 0};
        if (poll(&more, 1, kPartnerDelay) > 0) inotify->read(events);
    }
    return events.size() > before;
}

bool WatchSet::hasRoomFor(size_t count) const {
    const auto kind = backends_ == Backends::inotify || !instances_[WatchBudget::kFanotify].watch
                          ? WatchBudget::kInotify
                          : WatchBudget::kFanotify;
    return budget_.room(kind) >= count;
}
