#include "platform/linux/events/EventOutbox.h"

void EventOutbox::put(uint32_t flags, std::string path) {
    constexpr uint32_t kWhat = kFSEventStreamEventFlagItemIsDir |
                               kFSEventStreamEventFlagItemIsFile |
                               kFSEventStreamEventFlagItemIsSymlink;
    if ((flags & ~kWhat) == kFSEventStreamEventFlagItemModified) {
        if (!modified_.insert(path).second) return;
    } else {
        modified_.clear();
    }
    open_.push_back({++lastId_, flags, std::move(path)});
}

void EventOutbox::cut() {
    if (!open_.empty()) batches_.push_back(std::move(open_));
    open_.clear();
    modified_.clear();
}

std::vector<FileEventBatch> EventOutbox::take() {
    cut();
    std::vector<FileEventBatch> taken;
    taken.swap(batches_);
    return taken;
}
