#pragma once
#include <sys/types.h>

#include "util/FunctionRef.h"

/// The entries of an open folder but "." and "..", with their type as in d_type and their inode
/// number. False where it cannot be read to the end. Any thread.
bool listFolder(int folder,
                FunctionRef<void(const char* name, unsigned char type, ino_t inode)> entry);
