#pragma once
#include <cstdint>
#include <ctime>
#include <functional>
#include <memory>
#include <string>

#include "index/fs_item.h"
#include "searchmodes/IndexSet.h"
#include "util/FileURL.h"

/// A row of a mode other than Search: what matched, how well, and where. Two rows are the same if
/// their items are equal, whatever list they stand in.
/// Owner:   the mode's filtered items, shared with who looks at a row.
/// Threads: made by a search, then only read.
struct MatchingItem {
    virtual ~MatchingItem() = default;
    virtual bool isEqual(const MatchingItem& other) const { return this == &other; }
    virtual size_t hash() const { return std::hash<const void*>()(this); }

    double score = 0;
    IndexSet indexes;  // matched UTF-16 units
};

struct MatchingFileSystemItem : MatchingItem {
    metadata_ptr metadata;  // a copy, or null
    IndexSet matching_metadata_criterions;
    uint8_t itemType = 0;  // as it was on the disk when it was found; 0: not there
};

struct MatchingRecentItem : MatchingFileSystemItem {
    bool isEqual(const MatchingItem& other) const override {
        const auto* item = dynamic_cast<const MatchingRecentItem*>(&other);
        return item && item->inode == inode;
    }
    size_t hash() const override { return std::hash<uint64_t>()(inode); }

    bool matchFilenameOnly = false;
    uint8_t change = 0;
    uint64_t inode = 0;
    FileURL url;
    std::time_t timestamp = 0;
};

/// Equal where the paths are.
struct MatchingPathItem : MatchingFileSystemItem {
    bool isEqual(const MatchingItem& other) const override {
        const auto* item = dynamic_cast<const MatchingPathItem*>(&other);
        return item && item->url == url;
    }
    size_t hash() const override { return std::hash<std::string>()(url.path()); }

    FileURL url;
};

struct MatchingMarkedItem : MatchingPathItem {
    bool matchFilenameOnly = false;
};

struct MatchingBrowserItem : MatchingPathItem {};
