#pragma once
#include <string>
#include <string_view>

#include "platform/linux/events/FolderTree.h"
#include "util/FunctionRef.h"

/// What a folder that cannot be watched holds, and all folders below it, to be compared later:
/// names, inode numbers and times of files. Any thread.
struct SignatureWalk {
    FunctionRef<bool(std::string_view path)> wanted;  // a path below the top: go into it?
    FunctionRef<void(std::string_view path, uint64_t signature, int folder)> folder;
};
/// Calls walk.folder for each folder, parents first; the top's path is empty.
void walkSignatures(int top, const SignatureWalk& walk);

uint64_t hashOfPath(std::string_view path);
