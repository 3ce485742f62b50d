#pragma once
#include <sys/stat.h>

#include <string>

#include "util/FileIO.h"

/// An item of the disk, opened without setting off anything: a pipe, a device or a socket is never
/// opened. Waits as long as its disk does. Threads: the decoder's.
struct OpenedItem {
    FileHandle handle;       // of a file or folder that may be read, else none
    struct stat info = {};   // of what a link leads to, where it leads anywhere
    bool exists = false;     // the item, or for a link what it leads to
    std::string linkTarget;  // of a link, as it is written
    std::string trouble;     // why there is no handle
};
OpenedItem openItem(const std::string& path);
