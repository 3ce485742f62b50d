#include "index/FolderReader.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cstring>
#include <memory>

namespace {

/// As the kernel writes them (getdents64).
struct KernelEntry {
    uint64_t inode;
    int64_t offset;
    uint16_t length;
    uint8_t type;
    char name[1];
};

constexpr size_t kBufferSize = 64 * 1024;  // more brings nothing

char* buffer() {
    thread_local std::unique_ptr<char[]> ofThread;
    if (!ofThread) ofThread.reset(new char[kBufferSize]);
    return ofThread.get();
}

bool isSelfOrParent(const char* name) {
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

}  // namespace

bool FolderReader::fill() {
    const long got = syscall(SYS_getdents64, handle_, buffer(), kBufferSize);
    at_ = 0;
    filled_ = got > 0 ? static_cast<size_t>(got) : 0;
    return got > 0;
}

std::optional<FolderReader::Entry> FolderReader::next() {
    for (;;) {
        if (at_ >= filled_ && !fill()) return std::nullopt;
        const char* record = buffer() + at_;
        KernelEntry head;
        std::memcpy(&head, record, offsetof(KernelEntry, name));
        at_ += head.length;
        const char* name = record + offsetof(KernelEntry, name);
        if (!isSelfOrParent(name)) return Entry{name, std::strlen(name), head.inode, head.type};
    }
}
