#include "fileops/moveItem.h"

#include <dirent.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

#include "util/FileIO.h"
#include "util/Unicode.h"

namespace {

/// For disks that cannot rename without replacing: the name is held by an empty file or folder of
/// our own, which the rename then replaces. 0 or errno.
int renameOverHolder(const FileURL& from, const FileURL& to) {
    struct stat info;
    if (lstat(from.c_str(), &info) != 0) return errno;
    const bool isFolder = S_ISDIR(info.st_mode);
    if (isFolder) {
        if (mkdir(to.c_str(), 0700) != 0) return errno;
    } else {
        const FileHandle holder(
            ::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600));
        if (!holder) return errno;
    }
    if (::rename(from.c_str(), to.c_str()) == 0) return 0;
    const int error = errno;
    // A folder that somebody has filled meanwhile stays.
    unlinkat(AT_FDCWD, to.c_str(), isFolder ? AT_REMOVEDIR : 0);
    return error;
}

std::u16string withoutCase(const FileURL& url) {
    return lowerCasedUnits(ruleText(url.lastPathComponent()));
}

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

bool isListed(const FileURL& url) {
    const std::unique_ptr<DIR, CloseFolder> folder(
        opendir(url.deletingLastPathComponent().c_str()));
    if (!folder) return true;
    while (const dirent* const entry = readdir(folder.get()))
        if (url.lastPathComponent() == entry->d_name) return true;
    return false;
}

/// On a disk that takes both names for one. Where case counts, two names of one item are two links,
/// and both are in the folder's list.
bool isSameEntry(const FileURL& from, const FileURL& to) {
    if (from.deletingLastPathComponent() != to.deletingLastPathComponent() ||
        withoutCase(from) != withoutCase(to))
        return false;
    struct stat one, other;
    return lstat(from.c_str(), &one) == 0 && lstat(to.c_str(), &other) == 0 &&
           one.st_dev == other.st_dev && one.st_ino == other.st_ino && !isListed(to);
}

}  // namespace

Result<void> moveItem(const FileURL& from, const FileURL& to) {
    int error = 0;
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) != 0)
        error = errno;
    if (error == EINVAL || error == ENOSYS) {
        // Also what is asked for a folder that would go into itself: no other call helps there.
        if (to.isAtOrBelow(from)) return posixError("Cannot move into itself", EINVAL);
        error = renameOverHolder(from, to);
    }
    // Only the case of the name changes: nothing is replaced.
    if (error == EEXIST && isSameEntry(from, to)) {
        error = ::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
        if (error == 0 && !isListed(to)) error = EEXIST;  // two names of one item: nothing was done
    }
    if (error == 0) return {};
    return posixError("Cannot rename " + displayText(from.lastPathComponent()), error);
}
