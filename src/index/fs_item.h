#pragma once
#include <cstdint>
#include <memory>
#include <string_view>

#include "index/fs_item_array.h"
#include "util/FileURL.h"

struct HashMap;
struct fs_item_metadata;

/// Item type values: exactly one of the first three, plus the link flag.
enum ItemType : uint8_t {
    ITEM_FILE = 1,  // anything that is no folder: regular file, socket, and a link
    ITEM_DIRECTORY = 2,
    ITEM_BUNDLE = 4,   // a folder that the desktop takes for one file
    ITEM_SYMLINK = 8,  // the item itself is a symbolic link
};

/// One file, folder or link of the index. A plain record: no path (it is built from the parents on
/// demand), no lock, nothing owned by itself: its Cache owns it, its name, map and metadata.
/// Threads: read in a read section of the Cache, changed in a write section. A pointer is good
///          until the section ends.
struct fs_item_t {
    const char* name;            // last path component, bytes as on disk, NUL-terminated; root: "/"
    uint16_t name_length;        // bytes
    uint8_t type;                // ItemType flags
    HashMap* dircontent;         // children by name; null for what is no folder
    fs_item_t* parent;           // null only at the root
    uint64_t index;              // position in the Cache's array; all ones when it could not grow
    uint64_t inode;              // 0 at the root
    fs_item_metadata* metadata;  // null unless metadata is processed

    std::string_view nameView() const { return {name, name_length}; }
};
static_assert(sizeof(fs_item_t) == 56, "millions of these are kept");

/// What statx tells of an item itself (a link is not followed). Times are whole seconds.
struct fs_item_metadata {
    int64_t mtime, ctime, btime, atime;
    uint32_t uid, gid;
    uint16_t mode;  // type and permission bits
    uint64_t size;  // bytes; all ones for a folder
    int64_t nlink;
    void* attributes;  // owned; nothing in the index fills it
};
static_assert(sizeof(fs_item_metadata) <= 80);

/// Frees the attributes first. Records that stand in a Cache are its own and not freed so.
struct MetadataDeleter {
    void operator()(fs_item_metadata* metadata) const;
};
using metadata_ptr = std::unique_ptr<fs_item_metadata, MetadataDeleter>;

/// The absolute path of an item, or of its parent folder. With includeItself the root gives two
/// slashes.
FileURL fs_item_url(const fs_item_t* item, bool includeItself = true);
/// Number of ancestors, the root included: a child of the root has depth 1.
uint16_t fs_item_depth(const fs_item_t* item);
