#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "util/FileURL.h"

/// One directory as it stands on disk at this moment.
/// Threads: any. Types are those of items without the link flag: 1 or 2; a link is a 1, and no
/// folder is a package.
class DirectoryOnDisk {
  public:
    struct Entry {
        std::string name;
        uint8_t type;
        uint64_t inode;  // as the directory has it: at a mount point not the item's own
    };

    explicit DirectoryOnDisk(const FileURL& url);
    /// Why it cannot be read, as errno; 0: it could.
    int error() const { return error_; }
    const std::vector<Entry>& entries() const { return entries_; }

  private:
    int error_ = 0;
    std::vector<Entry> entries_;
};

struct StatusOnDisk {
    uint8_t type;
    uint64_t inode;
};
std::optional<StatusOnDisk> statusOnDisk(const FileURL& url);
/// There is certainly nothing; false when it cannot be told.
bool isGone(const FileURL& url);
/// The path without links; nothing where that fails.
std::optional<FileURL> realPath(const FileURL& url);
bool isDirectoryBehindLinks(const FileURL& url);
bool isReadableDirectory(const FileURL& url);
bool isEmptyDirectory(const FileURL& url);
/// Whether the item has the number, by its own account or by that of the directory around it.
bool hasInode(const FileURL& url, uint64_t inode);
