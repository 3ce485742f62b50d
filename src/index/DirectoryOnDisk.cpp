#include "index/DirectoryOnDisk.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <climits>
#include <cstdlib>

#include "index/FolderReader.h"
#include "index/Metadata.h"
#include "util/FileIO.h"

namespace {

FileHandle openDirectory(const FileURL& url) {
    return FileHandle(::open(url.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

}  // namespace

DirectoryOnDisk::DirectoryOnDisk(const FileURL& url) {
    const FileHandle handle = openDirectory(url);
    if (!handle) {
        error_ = errno;
        return;
    }
    FolderReader reader(handle.get());
    while (const auto entry = reader.next()) {
        bool isDirectory = entry->type == DT_DIR;
        struct statx status;
        if (entry->type == DT_UNKNOWN && statItem(handle.get(), entry->name, status))
            isDirectory = S_ISDIR(status.stx_mode);
        entries_.push_back({.name = std::string(entry->nameView()),
                            .type = isDirectory ? ITEM_DIRECTORY : ITEM_FILE,
                            .inode = entry->inode});
    }
}

std::optional<StatusOnDisk> statusOnDisk(const FileURL& url) {
    struct statx status;
    if (!statItem(url.c_str(), status)) return std::nullopt;
    return StatusOnDisk{.type = S_ISDIR(status.stx_mode) ? ITEM_DIRECTORY : ITEM_FILE,
                        .inode = status.stx_ino};
}

bool isGone(const FileURL& url) {
    struct stat status;
    return lstat(url.c_str(), &status) != 0 && (errno == ENOENT || errno == ENOTDIR);
}

std::optional<FileURL> realPath(const FileURL& url) {
    char path[PATH_MAX];
    return realpath(url.c_str(), path) ? std::optional(FileURL(path)) : std::nullopt;
}

bool isDirectoryBehindLinks(const FileURL& url) {
    struct stat status;
    return stat(url.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool isReadableDirectory(const FileURL& url) {
    return static_cast<bool>(openDirectory(url));
}

bool isEmptyDirectory(const FileURL& url) {
    const FileHandle handle = openDirectory(url);
    return handle && !FolderReader(handle.get()).next();
}

bool hasInode(const FileURL& url, uint64_t inode) {
    const std::optional<StatusOnDisk> own = statusOnDisk(url);
    if (!own) return false;
    if (own->inode == inode) return true;
    if (own->type != ITEM_DIRECTORY) return false;
    const FileHandle around = openDirectory(url.deletingLastPathComponent());
    if (!around) return false;
    FolderReader reader(around.get());
    while (const auto entry = reader.next())
        if (entry->nameView() == url.lastPathComponent()) return entry->inode == inode;
    return false;
}
