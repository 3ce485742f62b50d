#pragma once
#include <string>
#include <string_view>

#include "platform/linux/events/FolderTree.h"
#include "util/FunctionRef.h"

/// What a folder that cannot be watched holds, and all folders below it, to be compared later:
/// names, inode numbers and times of files. Calls `folder` for each folder whose path below the top
/// is wanted, parents first; the top's path is empty. Any thread.
void walkSignatures(
    int top, FunctionRef<bool(std::string_view path)> wanted,
    FunctionRef<void(std::string_view path, uint64_t signature, int handle)> folder);

uint64_t hashOfPath(std::string_view path);
