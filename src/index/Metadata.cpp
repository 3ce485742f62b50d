#include "index/Metadata.h"

#include <fcntl.h>

#include <cstdlib>

bool statItem(int relativeTo, const char* path, struct statx& buffer) {
    return statx(relativeTo, path, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT,
                 STATX_BASIC_STATS | STATX_BTIME, &buffer) == 0;
}

bool statItem(const char* path, struct statx& buffer) {
    return statItem(AT_FDCWD, path, buffer);
}

void fillMetadata(fs_item_metadata& metadata, const struct statx& buffer) {
    const bool hasBirth = (buffer.stx_mask & STATX_BTIME) != 0;
    const bool isFolder = S_ISDIR(buffer.stx_mode);
    metadata = {.mtime = buffer.stx_mtime.tv_sec,
                .ctime = buffer.stx_ctime.tv_sec,
                .btime = hasBirth ? buffer.stx_btime.tv_sec : 0,
                .atime = buffer.stx_atime.tv_sec,
                .uid = buffer.stx_uid,
                .gid = buffer.stx_gid,
                .mode = buffer.stx_mode,
                .size = isFolder ? ~uint64_t{0} : buffer.stx_size,
                .nlink = buffer.stx_nlink,
                .attributes = nullptr};
}

metadata_ptr metadataFromStatBuf(const struct statx* buffer) {
    if (!buffer) return nullptr;
    auto* memory = static_cast<fs_item_metadata*>(std::malloc(sizeof(fs_item_metadata)));
    if (memory) fillMetadata(*memory, *buffer);
    return metadata_ptr(memory);
}
