#include "core/ItemRenamer.h"

#include <sys/stat.h>

#include <cerrno>

#include "core/ModeSwitcher.h"
#include "fileops/moveItem.h"
#include "index/projectFolderContainingURL.h"
#include "modes/TRVMarkedItemsMode.h"
#include "modes/TRVSearchMode.h"
#include "util/FileIO.h"

Result<void> ItemRenamer::renameItem(const FileURL& from, const FileURL& to) {
    struct stat info;
    if (lstat(from.c_str(), &info) != 0) return posixError("Cannot rename", errno);
    if (const Result<void> moved = moveItem(from, to); !moved) return moved.error();
    renameQ_.async([this, from, to, inode = uint64_t{info.st_ino}] {
        tellIndex(from, to, inode);
        parts_.marks.updatePathCachesAfterRename(from, to);
        MainQueue::async([this, rename = ItemRename{from, to, false}] {
            for (TRVMode* mode : parts_.modes.modes())
                if (auto* files = dynamic_cast<TRVModeRepresentingFiles*>(mode))
                    files->itemRenamedFrom(rename);
        });
    });
    return {};
}

void ItemRenamer::tellIndex(const FileURL& from, const FileURL& to, uint64_t fromInode) {
    struct stat info;
    if (lstat(to.c_str(), &info) != 0) return;
    const auto project = parts_.searchMode.currentProject();
    const auto cache = parts_.searchMode.sharedCurrentCache();
    if (!project || !cache) return;
    const auto folderOfFrom = projectFolderContainingURL(*project, from, parts_.fileTypes);
    const auto folderOfTo = projectFolderContainingURL(*project, to, parts_.fileTypes);
    if (!folderOfFrom && !folderOfTo) return;
    const auto counts = [](const auto& folder) {
        return folder && folder->includeContentsInRecentItems;
    };
    cache->movePath(from, to,
                    {.fromInode = fromInode,
                     .toInode = info.st_ino,
                     .ofType = S_ISDIR(info.st_mode) ? ITEM_DIRECTORY : ITEM_FILE,
                     .includeInRecentItems = counts(folderOfFrom) || counts(folderOfTo)});
}
