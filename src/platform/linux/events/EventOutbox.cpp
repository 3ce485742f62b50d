#include "platform/linux/events/EventOutbox.h"

void EventOutbox::put(uint32_t flags, std::string path) {
    constexpr uint32_t kChanges =
        kFSEventStreamEventFlagItemIsDir | kFSEventStreamEventFlagItemIsFile |
        kFSEventStreamEventFlagItemIsSymlink | kFSEventStreamEventFlagOwnEvent |
        kFSEventStreamEventFlagItemModified | kFSEventStreamEventFlagItemInodeMetaMod |
        kFSEventStreamEventFlagItemChangeOwner | kFSEventStreamEventFlagItemXattrMod;
    if ((flags & ~kChanges) == 0) {
        uint32_t& told = changed_[path];
        if ((told & flags) == flags) return;
        told |= flags;
    } else {
        changed_.clear();
    }
    open_.push_back({++lastId_, flags, std::move(path)});
}

void EventOutbox::cut() {
    if (!open_.empty()) batches_.push_back(std::move(open_));
    open_.clear();
    changed_.clear();
}

std::vector<FileEventBatch> EventOutbox::take() {
    cut();
    std::vector<FileEventBatch> taken;
    taken.swap(batches_);
    return taken;
}
