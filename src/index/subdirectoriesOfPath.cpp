#include <dirent.h>
#include <fcntl.h>

#include <cerrno>
#include <cstring>

#include "index/FSScanner.h"
#include "index/FolderReader.h"
#include "index/trace.h"
#include "platform/FileTypes.h"
#include "util/FileIO.h"

namespace {

enum Visible : uint8_t { kNeither = 0, kFile = 1, kFolder = 2 };

Visible kindOf(const FolderReader::Entry& entry, int folder, const FileURL& path,
               bool treatBundlesAsFiles, const FileTypes& fileTypes) {
    bool isFolder = entry.type == DT_DIR;
    if (entry.type == DT_LNK || entry.type == DT_UNKNOWN) {
        struct stat target;
        if (fstatat(folder, entry.name, &target, 0) != 0) {
            traceScan("Failed to stat '%s': %s", path.appending(entry.nameView()).c_str(),
                      std::strerror(errno));
            return kNeither;
        }
        isFolder = S_ISDIR(target.st_mode);
    }
    if (!isFolder) return kFile;
    const bool isBundle = treatBundlesAsFiles &&
                          entry.nameView().find('.') != std::string_view::npos &&
                          fileTypes.isFilePackageAtPath(path.appending(entry.nameView()));
    return isBundle ? kFile : kFolder;
}

}  // namespace

std::vector<std::string> FSScanner::subdirectoriesOfPath(const FileURL& path,
                                                         const Subdirectories& options,
                                                         const FileTypes& fileTypes,
                                                         Relaxed<bool>& abort) {
    abort = false;
    std::vector<std::string> names;
    const FileHandle folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder) return names;
    FolderReader reader(folder.get());
    while (!abort) {
        const auto entry = reader.next();
        if (!entry) break;
        if (options.hideDotFiles && entry->name[0] == '.') continue;
        const Visible kind =
            kindOf(*entry, folder.get(), path, options.treatBundlesAsFiles, fileTypes);
        if (kind & options.visibleItemTypes) names.emplace_back(entry->nameView());
    }
    return names;
}
