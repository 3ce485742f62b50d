#include "fileops/moveItem.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

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
    if (error == 0) return {};
    return posixError("Cannot rename " + displayText(from.lastPathComponent()), error);
}
