#include "util/FileIO.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <ctime>
#include <memory>
#include <utility>

namespace {

constexpr int kMaxTries = 100;
constexpr std::time_t kStaleSeconds = 600;

std::string temporaryPrefix(const FileURL& url) {
    return "." + std::string(url.lastPathComponent()) + ".new-";
}

FileURL temporaryBeside(const FileURL& url) {
    unsigned char random[8] = {};
    if (getrandom(random, sizeof random, 0) < 0) return {};
    std::string name = temporaryPrefix(url);
    for (const unsigned char byte : random) {
        char hex[3];
        std::snprintf(hex, sizeof hex, "%02x", byte);
        name += hex;
    }
    return url.deletingLastPathComponent().appending(name);
}

/// A new file of ours under a random name beside url.
FileHandle makeTemporary(const FileURL& url, mode_t mode, FileURL& temporary) {
    for (int i = 0; i < kMaxTries; i++) {
        temporary = temporaryBeside(url);
        if (temporary.empty()) break;
        FileHandle handle(open(temporary.c_str(),
                               O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode & 0700));
        if (handle || errno != EEXIST) return handle;
    }
    return FileHandle();
}

bool syncFolder(const FileURL& folder) {
    const FileHandle handle(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return handle && fsync(handle.get()) == 0;
}

/// Gives url's file a second name, in one step also where that name is taken.
void keepUnder(const FileURL& url, const FileURL& keep) {
    const FileURL link = temporaryBeside(url);
    if (link.empty() || ::link(url.c_str(), link.c_str()) != 0) return;
    (void)rename(link.c_str(), keep.c_str());
    unlink(link.c_str());  // still there if that failed, or if both were one file already
}

}  // namespace

void FileHandle::reset(int handle) {
    if (handle_ >= 0) close(handle_);
    handle_ = handle;
}

int FileHandle::release() {
    return std::exchange(handle_, -1);
}

Error posixError(std::string description, int code) {
    return {"posix", code, std::move(description), std::strerror(code)};
}

Result<FileContent> readFile(const FileURL& url, size_t limit) {
    auto failed = [&](int code) { return posixError("Failed to read '" + url.path() + "'", code); };
    const FileHandle handle(open(url.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!handle) return failed(errno);
    struct stat info;
    if (fstat(handle.get(), &info) != 0) return failed(errno);
    if (S_ISDIR(info.st_mode)) return failed(EISDIR);
    if (!S_ISREG(info.st_mode)) return failed(EINVAL);
    if (static_cast<uint64_t>(info.st_size) > limit) return failed(EFBIG);
    FileContent content{{}, info.st_uid, info.st_mode & 07777};
    content.bytes.resize(static_cast<size_t>(info.st_size) + 1);  // one more: whether it grew
    size_t length = 0;
    for (;;) {
        const ssize_t got =
            read(handle.get(), content.bytes.data() + length, content.bytes.size() - length);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return failed(errno);
        length += static_cast<size_t>(got);
        if (length > limit) return failed(EFBIG);
        if (got == 0) break;
        if (length == content.bytes.size()) content.bytes.resize(length * 2);
    }
    content.bytes.resize(length);
    return content;
}

Result<void> writeAll(int handle, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(handle, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return posixError("Failed to write", errno);
        bytes.remove_prefix(static_cast<size_t>(written));
    }
    return {};
}

Result<void> replaceFile(const FileURL& url, std::string_view bytes, mode_t mode,
                         const FileURL& keep) {
    FileURL temporary;
    auto failed = [&](int code) {
        if (!temporary.empty()) unlink(temporary.c_str());
        return posixError("Failed to write '" + url.path() + "'", code);
    };
    FileHandle handle = makeTemporary(url, mode, temporary);
    if (!handle) {
        const int code = errno;
        temporary = {};
        return failed(code);
    }
    if (const auto written = writeAll(handle.get(), bytes); !written)
        return failed(written.error().code);
    if (fchmod(handle.get(), mode) != 0 || fdatasync(handle.get()) != 0) return failed(errno);
    if (close(handle.release()) != 0) return failed(errno);
    if (!keep.empty()) keepUnder(url, keep);
    if (rename(temporary.c_str(), url.c_str()) != 0) return failed(errno);
    temporary = {};
    if (!syncFolder(url.deletingLastPathComponent())) return failed(errno);
    return {};
}

void removeStaleReplacements(const FileURL& url) {
    const FileURL folder = url.deletingLastPathComponent();
    const std::unique_ptr<DIR, int (*)(DIR*)> list(opendir(folder.c_str()), closedir);
    if (!list) return;
    const std::string prefix = temporaryPrefix(url);
    while (const dirent* entry = readdir(list.get())) {
        if (!std::string_view(entry->d_name).starts_with(prefix)) continue;
        struct stat info;
        const int handle = dirfd(list.get());
        if (fstatat(handle, entry->d_name, &info, AT_SYMLINK_NOFOLLOW) == 0 &&
            S_ISREG(info.st_mode) && info.st_uid == geteuid() &&
            info.st_mtime + kStaleSeconds < std::time(nullptr))
            unlinkat(handle, entry->d_name, 0);
    }
}

Result<void> makePrivateFolder(const FileURL& url) {
    FileURL at("/");
    for (const std::string_view name : url.pathComponents()) {
        at = at.appending(name);
        if (mkdir(at.c_str(), 0700) != 0 && errno != EEXIST) {
            const int code = errno;
            struct stat info;  // a folder there may be behind one that we may not write to
            if (stat(at.c_str(), &info) == 0 && S_ISDIR(info.st_mode)) continue;
            return posixError("Failed to create folder '" + at.path() + "'", code);
        }
    }
    const FileHandle handle(open(url.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    struct stat info;
    if (!handle || fstat(handle.get(), &info) != 0)
        return posixError("Failed to create folder '" + url.path() + "'", errno);
    if (info.st_uid == geteuid() && (info.st_mode & 077)) fchmod(handle.get(), 0700);
    return {};
}
