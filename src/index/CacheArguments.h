#pragma once
#include <cstdint>

#include "index/fs_item.h"

// What Cache's operations are told and what they answer.

struct IndexRange {
    uint64_t location;
    uint64_t length;
};

enum class Create { no, yes };

/// Whether who keeps marks is told of what a removal takes out of the index.
enum class Marks { follow, stay };

/// What addPath is told. The metadata goes over to the Cache in any case.
struct AddPath {
    uint8_t ofType;
    uint64_t inode = 0;
    metadata_ptr metadata = nullptr;
    uint64_t fsEventId = 0;
    uint8_t changeType = 0;  // 0: no entry among the recent items
};
struct AddPathResult {
    /// Null: the folder around it is not there, or the Cache is not the current one.
    fs_item_t* item;
    bool alreadyExists;
};
struct MovePath {
    uint64_t fromInode = 0;  // for the log
    uint64_t toInode = 0;
    uint8_t ofType = ITEM_FILE;
    uint64_t forFsEventId = 0;
    bool includeInRecentItems = false;
};
enum class MoveStatus : int32_t {
    moved = 0,
    sourceRemoved = 1,       // where it went to is outside the index
    unknown = 2,             // neither path is in the index
    destinationExists = -1,  // nothing was done
};
struct RecentItemChange {
    uint64_t inode;
    uint8_t ofType;
    uint8_t change;
};
