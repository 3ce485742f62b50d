#include "index/NamesOnDisk.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <strings.h>
#include <sys/ioctl.h>
#include <sys/vfs.h>

#include <algorithm>
#include <cerrno>
#include <iterator>

#include "index/FolderReader.h"
#include "util/FileIO.h"

namespace {

/// What statfs says of disks that do not tell names apart by case, and have no flag for it: vfat,
/// exfat, HFS, HFS+, SMB in its three forms.
constexpr uint32_t kIgnoringCase[] = {0x4d44,     0x2011BAB0, 0x4244, 0x482b,
                                      0xFF534D42, 0xFE534D42, 0x517B};

FileHandle openFolderAround(const FileURL& url) {
    return FileHandle(
        ::open(url.deletingLastPathComponent().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

}  // namespace

Result<bool> NamesOnDisk::isCaseSensitive(const FileURL& url) const {
    const FileHandle folder = openFolderAround(url);
    struct statfs disk;
    if (!folder || fstatfs(folder.get(), &disk) != 0) return posixError(url.path(), errno);
    const auto type = static_cast<uint32_t>(disk.f_type);
    if (std::find(std::begin(kIgnoringCase), std::end(kIgnoringCase), type) !=
        std::end(kIgnoringCase))
        return false;
    unsigned flags = 0;
    return ioctl(folder.get(), FS_IOC_GETFLAGS, &flags) != 0 || (flags & FS_CASEFOLD_FL) == 0;
}

Result<std::string> NamesOnDisk::nameOf(const FileURL& url) const {
    const FileHandle folder = openFolderAround(url);
    if (!folder) return posixError(url.path(), errno);
    const std::string name(url.lastPathComponent());
    FolderReader reader(folder.get());
    std::string spelt;
    while (const auto entry = reader.next()) {
        if (entry->nameView() == name) return name;
        if (strcasecmp(entry->name, name.c_str()) == 0) spelt = entry->nameView();
    }
    if (spelt.empty()) return posixError(url.path(), ENOENT);
    return spelt;
}
