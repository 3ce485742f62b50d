#include "util/programFolder.h"

#include <limits.h>
#include <unistd.h>

FileURL programFolder() {
    char path[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
    if (length <= 0) return {};
    return FileURL(std::string(path, static_cast<size_t>(length))).deletingLastPathComponent();
}
