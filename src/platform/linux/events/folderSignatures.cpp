#include "platform/linux/events/folderSignatures.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <memory>

#include "platform/linux/events/listFolder.h"
#include "util/FileIO.h"

namespace {

struct Place {
    std::shared_ptr<FileHandle> parent;
    std::string path;
};

uint64_t mixed(uint64_t value) {
    value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9u;
    value = (value ^ (value >> 27)) * 0x94D049BB133111EBu;
    return value ^ (value >> 31);
}

/// Of a folder the names and numbers; its time is what it holds, and that is its own affair.
uint64_t signatureOf(const char* name, const struct stat& item) {
    uint64_t value = mixed(hashOfPath(name) ^ item.st_ino);
    if (!S_ISDIR(item.st_mode))
        value ^= mixed(static_cast<uint64_t>(item.st_mtim.tv_sec) * 1'000'000'007u +
                       static_cast<uint64_t>(item.st_mtim.tv_nsec));
    return mixed(value);
}

}  // namespace

uint64_t hashOfPath(std::string_view path) {
    return std::hash<std::string_view>{}(path);
}

void walkSignatures(
    int top, FunctionRef<bool(std::string_view path)> wanted,
    FunctionRef<void(std::string_view path, uint64_t signature, int handle)> folder) {
    std::vector<Place> places{{nullptr, {}}};
    while (!places.empty()) {
        const Place place = std::move(places.back());
        places.pop_back();
        const std::string name = place.path.substr(place.path.rfind('/') + 1);
        const auto handle = std::make_shared<FileHandle>(
            openat(place.parent ? place.parent->get() : top, name.empty() ? "." : name.c_str(),
                   O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (!*handle) continue;
        uint64_t signature = 1;
        listFolder(handle->get(), [&](const char* entry, unsigned char, ino_t) {
            struct stat item;
            if (fstatat(handle->get(), entry, &item, AT_SYMLINK_NOFOLLOW) != 0) return;
            signature += signatureOf(entry, item);
            if (!S_ISDIR(item.st_mode)) return;
            std::string path = place.path.empty() ? entry : place.path + "/" + entry;
            if (wanted(path)) places.push_back({handle, std::move(path)});
        });
        folder(place.path, signature, handle->get());
    }
}
