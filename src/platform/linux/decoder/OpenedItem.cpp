#include "platform/linux/decoder/OpenedItem.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>

namespace {

std::string troubleText(int code) {
    switch (code) {
        case ENOENT:
        case ENOTDIR:
            return "It is no longer there.";
        case EACCES:
        case EPERM:
            return "You may not read it.";
        case ESTALE:
        case EIO:
        case ENOTCONN:
        case EHOSTDOWN:
            return "Its disk does not answer.";
        default:
            return std::string("It cannot be read: ") + std::strerror(code) + ".";
    }
}

const char* specialText(mode_t mode) {
    if (S_ISFIFO(mode)) return "A named pipe: there is nothing to see until programs use it.";
    if (S_ISSOCK(mode)) return "A socket: programs talk to each other through it.";
    if (S_ISCHR(mode) || S_ISBLK(mode)) return "A device.";
    return nullptr;
}

}  // namespace

OpenedItem openItem(const std::string& path) {
    OpenedItem item;
    char target[PATH_MAX];
    const ssize_t length = readlink(path.c_str(), target, sizeof target);
    if (length > 0) item.linkTarget.assign(target, static_cast<size_t>(length));
    // A handle for the place alone: what it is is known before it is opened, and it stays the same.
    const FileHandle place(open(path.c_str(), O_PATH | O_CLOEXEC));
    if (!place || fstat(place.get(), &item.info) != 0) {
        const int code = errno;
        const bool isBroken = length > 0 && (code == ENOENT || code == ENOTDIR || code == ELOOP);
        item.trouble = isBroken ? "The link leads nowhere." : troubleText(code);
        return item;
    }
    item.exists = true;
    if (const char* special = specialText(item.info.st_mode)) {
        item.trouble = special;
        return item;
    }
    const std::string name = "/proc/self/fd/" + std::to_string(place.get());
    item.handle.reset(open(name.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!item.handle) item.trouble = troubleText(errno);
    return item;
}
