#include <fcntl.h>
#include <sys/fanotify.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <map>

#include "platform/FileEvents.h"
#include "platform/linux/events/KernelWatch.h"
#include "util/FileIO.h"

namespace {

constexpr uint64_t kNames = FAN_CREATE | FAN_DELETE | FAN_RENAME | FAN_ONDIR;
constexpr uint64_t kContents = FAN_MODIFY | FAN_CLOSE_WRITE | FAN_ATTRIB | FAN_EVENT_ON_CHILD;

int initFanotify(unsigned flags) {
    // With the item's own number in it, events of different items of one name are not merged.
    return fanotify_init(
        FAN_CLASS_NOTIF | FAN_REPORT_DFID_NAME_TARGET | FAN_NONBLOCK | FAN_CLOEXEC | flags,
        O_RDONLY);
}

/// The disk and the folder's number on it, as the events have it.
std::string keyOf(const void* disk, const file_handle* folder) {
    std::string key(static_cast<const char*>(disk), sizeof(fsid_t));
    key.append(reinterpret_cast<const char*>(&folder->handle_type), sizeof folder->handle_type);
    key.append(reinterpret_cast<const char*>(folder->f_handle), folder->handle_bytes);
    return key;
}

uint32_t flagsOf(uint64_t mask) {
    uint32_t flags = 0;
    if (mask & FAN_ONDIR) flags |= kFSEventStreamEventFlagItemIsDir;
    if (mask & FAN_CREATE) flags |= kFSEventStreamEventFlagItemCreated;
    if (mask & FAN_DELETE) flags |= kFSEventStreamEventFlagItemRemoved;
    if (mask & FAN_RENAME) flags |= kFSEventStreamEventFlagItemRenamed;
    if (mask & (FAN_MODIFY | FAN_CLOSE_WRITE)) flags |= kFSEventStreamEventFlagItemModified;
    if (mask & FAN_ATTRIB) flags |= attributeFlags();
    return flags;
}

class FanotifyWatch : public KernelWatch {
  public:
    FanotifyWatch(int handle, bool wholeDisks) : handle_(handle), wholeDisks_(wholeDisks) {}
    int handle() const override { return handle_.get(); }

    Added add(int folder, Interest interest) override {
        alignas(file_handle) char bytes[sizeof(file_handle) + MAX_HANDLE_SZ];
        auto* number = reinterpret_cast<file_handle*>(bytes);
        number->handle_bytes = MAX_HANDLE_SZ;
        int mount = 0;
        struct statfs disk;
        if (name_to_handle_at(folder, "", number, &mount, AT_EMPTY_PATH) != 0 ||
            fstatfs(folder, &disk) != 0)
            return {{}, errno};
        const uint64_t mask = interest == Interest::names ? kNames : kNames | kContents;
        std::string key = keyOf(&disk.f_fsid, number);
        if (wholeDisks_ && markDisk(key.substr(0, sizeof(fsid_t)), mask, folder)) return {key};
        if (fanotify_mark(handle_.get(), FAN_MARK_ADD | FAN_MARK_ONLYDIR, mask, folder, nullptr))
            return {{}, errno};
        return {key};
    }

    /// The mark of a folder that lives on elsewhere stays until the instance ends: to take it off
    /// one would have to find the folder. What it tells is passed over, its key being unknown.
    void drop(const std::string&) override {}

    bool read(std::vector<RawEvent>& events) override {
        alignas(fanotify_event_metadata) char buffer[65536];
        ssize_t length = ::read(handle_.get(), buffer, sizeof buffer);
        if (length <= 0) return false;
        for (auto* event = reinterpret_cast<fanotify_event_metadata*>(buffer);
             FAN_EVENT_OK(event, length); event = FAN_EVENT_NEXT(event, length))
            take(event, events);
        return true;
    }

  private:
    bool markDisk(const std::string& disk, uint64_t mask, int folder) {
        const auto [at, isNew] = marked_.try_emplace(disk, 0);
        if (!isNew && (at->second == kRefused || (mask & ~at->second) == 0))
            return at->second != kRefused;
        // Children and parents are the disk's alike.
        if (fanotify_mark(handle_.get(), FAN_MARK_ADD | FAN_MARK_FILESYSTEM,
                          mask & ~uint64_t{FAN_EVENT_ON_CHILD}, folder, nullptr) == 0) {
            at->second |= mask;
            return true;
        }
        if (at->second == 0) at->second = kRefused;
        return false;
    }

    void take(const fanotify_event_metadata* event, std::vector<RawEvent>& events) {
        RawEvent raw;
        raw.flags = flagsOf(event->mask);
        if (event->pid == self_) raw.flags |= kFSEventStreamEventFlagOwnEvent;
        raw.overflow = (event->mask & FAN_Q_OVERFLOW) != 0;
        const char* const begin = reinterpret_cast<const char*>(event);
        const char* at = begin + event->metadata_len;
        while (at < begin + event->event_len) {
            const auto* info =
                static_cast<const fanotify_event_info_fid*>(static_cast<const void*>(at));
            takePlace(info, raw);
            at += info->hdr.len;
        }
        events.push_back(std::move(raw));
    }

    static void takePlace(const fanotify_event_info_fid* info, RawEvent& raw) {
        const auto* folder =
            static_cast<const file_handle*>(static_cast<const void*>(info->handle));
        const char* name = reinterpret_cast<const char*>(folder->f_handle) + folder->handle_bytes;
        switch (info->hdr.info_type) {
            case FAN_EVENT_INFO_TYPE_DFID_NAME:
            case FAN_EVENT_INFO_TYPE_OLD_DFID_NAME:
                raw.folder = keyOf(&info->fsid, folder);
                raw.name = std::strcmp(name, ".") == 0 ? "" : name;
                break;
            case FAN_EVENT_INFO_TYPE_NEW_DFID_NAME:
                raw.newFolder = keyOf(&info->fsid, folder);
                raw.newName = name;
                break;
            default:
                break;
        }
    }

    static constexpr uint64_t kRefused = ~uint64_t{0};
    FileHandle handle_;
    const bool wholeDisks_;
    std::map<std::string, uint64_t> marked_;  // what is told of a disk
    const pid_t self_ = getpid();
};

}  // namespace

bool hasUnlimitedFanotify() {
    return static_cast<bool>(FileHandle(initFanotify(FAN_UNLIMITED_MARKS)));
}

std::unique_ptr<KernelWatch> makeFanotifyWatch(bool wholeDisks) {
    int handle = wholeDisks ? initFanotify(FAN_UNLIMITED_MARKS) : -1;
    if (handle >= 0) return std::make_unique<FanotifyWatch>(handle, true);
    handle = initFanotify(0);
    return handle < 0 ? nullptr : std::make_unique<FanotifyWatch>(handle, false);
}
