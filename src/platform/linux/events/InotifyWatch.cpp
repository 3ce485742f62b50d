#include <sys/inotify.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "platform/FileEvents.h"
#include "platform/linux/events/KernelWatch.h"
#include "util/FileIO.h"

namespace {

constexpr uint32_t kNames = IN_CREATE | IN_DELETE | IN_MOVE;
constexpr uint32_t kContents = IN_MODIFY | IN_CLOSE_WRITE | IN_ATTRIB;
constexpr size_t kHalvesApart = 64;  // other events that may stand between two halves

std::string keyOf(int watch) {
    return {reinterpret_cast<const char*>(&watch), sizeof watch};
}

uint32_t flagsOf(uint32_t mask) {
    uint32_t flags = 0;
    if (mask & IN_ISDIR) flags |= kFSEventStreamEventFlagItemIsDir;
    if (mask & IN_CREATE) flags |= kFSEventStreamEventFlagItemCreated;
    if (mask & IN_DELETE) flags |= kFSEventStreamEventFlagItemRemoved;
    if (mask & IN_MOVE) flags |= kFSEventStreamEventFlagItemRenamed;
    if (mask & (IN_MODIFY | IN_CLOSE_WRITE)) flags |= kFSEventStreamEventFlagItemModified;
    if (mask & IN_ATTRIB) flags |= attributeFlags();
    return flags;
}

class InotifyWatch : public KernelWatch {
  public:
    explicit InotifyWatch(int handle) : handle_(handle) {}
    int handle() const override { return handle_.get(); }

    Added add(int folder, Interest interest) override {
        char path[40];
        std::snprintf(path, sizeof path, "/proc/self/fd/%d", folder);
        const uint32_t mask = interest == Interest::names ? kNames : kNames | kContents;
        const int watch = inotify_add_watch(handle_.get(), path,
                                            mask | IN_MASK_ADD | IN_ONLYDIR | IN_EXCL_UNLINK);
        return watch < 0 ? Added{{}, errno} : Added{keyOf(watch)};
    }

    void drop(const std::string& key) override {
        int watch = -1;
        std::memcpy(&watch, key.data(), sizeof watch);
        inotify_rm_watch(handle_.get(), watch);
    }

    bool read(std::vector<RawEvent>& events) override {
        alignas(inotify_event) char buffer[65536];
        const ssize_t length = ::read(handle_.get(), buffer, sizeof buffer);
        if (length <= 0) return false;
        for (const char* at = buffer; at < buffer + length;) {
            inotify_event event;
            std::memcpy(&event, at, sizeof event);
            take(event, event.len > 0 ? at + sizeof event : "", events);
            at += sizeof event + event.len;
        }
        return true;
    }

  private:
    void take(const inotify_event& event, const char* name, std::vector<RawEvent>& events) {
        RawEvent raw;
        raw.flags = flagsOf(event.mask);
        raw.cookie = event.cookie;
        raw.overflow = (event.mask & IN_Q_OVERFLOW) != 0;
        raw.gone = (event.mask & (IN_IGNORED | IN_UNMOUNT)) != 0;
        if (event.mask & IN_MOVED_TO) {
            raw.newFolder = keyOf(event.wd);
            raw.newName = name;
            if (RawEvent* half = otherHalf(event.cookie, events)) {
                half->newFolder = std::move(raw.newFolder);
                half->newName = std::move(raw.newName);
                return;
            }
        } else {
            raw.folder = keyOf(event.wd);
            raw.name = name;
        }
        events.push_back(std::move(raw));
    }

    static RawEvent* otherHalf(uint32_t cookie, std::vector<RawEvent>& events) {
        const size_t first = events.size() > kHalvesApart ? events.size() - kHalvesApart : 0;
        for (size_t i = events.size(); i-- > first;)
            if (events[i].cookie == cookie && events[i].newFolder.empty()) return &events[i];
        return nullptr;
    }

    FileHandle handle_;
};

}  // namespace

std::unique_ptr<KernelWatch> makeInotifyWatch() {
    const int handle = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    return handle < 0 ? nullptr : std::make_unique<InotifyWatch>(handle);
}

uint32_t attributeFlags() {
    return kFSEventStreamEventFlagItemInodeMetaMod | kFSEventStreamEventFlagItemChangeOwner |
           kFSEventStreamEventFlagItemXattrMod;
}
