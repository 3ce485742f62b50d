#include "core/ItemOpener.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "platform/Applications.h"
#include "util/Unicode.h"

bool ItemOpener::openFileInDefaultApplication(const FileURL& url) {
    struct stat info;
    if (lstat(url.c_str(), &info) != 0) {
        error_(errno == ENOENT ? std::string("Cannot open file: it does not exist")
                               : std::string("Cannot open file: ") + std::strerror(errno));
        return false;
    }
    if (S_ISLNK(info.st_mode) && stat(url.c_str(), &info) != 0) {
        error_("Cannot open file: broken symlink");
        return false;
    }
    const auto opened = applications_.openInDefaultApplication(url);
    if (opened) return true;
    const Error& error = opened.error();
    error_(error.failureReason.empty() ? displayText(error.description)
                                       : displayText(error.failureReason));
    return false;
}
