#pragma once
#include <sys/stat.h>

#include "index/fs_item.h"

/// What the disk tells of one item. A link is never followed.
/// Threads: any. Fails: false with errno set; null for a null buffer or without memory.

/// relativeTo: a folder's handle or AT_FDCWD.
bool statItem(int relativeTo, const char* path, struct statx& buffer);
bool statItem(const char* path, struct statx& buffer);
metadata_ptr metadataFromStatBuf(const struct statx* buffer);
/// The same into a record of the caller's.
void fillMetadata(fs_item_metadata& metadata, const struct statx& buffer);
