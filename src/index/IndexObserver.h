#pragma once
#include "util/FileURL.h"

class Cache;
class WriteSection;
struct fs_item_t;

/// What a Cache must tell those above it, from inside its exclusive sections, and the one thing it
/// asks of them, outside of sections. Implemented by Search mode and Marked Items mode together;
/// tests and the console have their own.
class IndexObserver {
  public:
    virtual ~IndexObserver() = default;
    /// The cache that paths are added to: Search mode's current one.
    virtual Cache* currentCache() = 0;
    /// Before an item's memory goes: drop it from the list that the window shows.
    virtual void removeFilteredItem(const fs_item_t* item) = 0;
    /// After a row of such removals: close the gaps.
    virtual void consolidateFilteredList() = 0;
    /// Whether anything is marked at all, so that the next call can be spared.
    virtual bool hasMarkedPaths() = 0;
    virtual void updatePathCachesAfterRemovePath(const FileURL& url) = 0;
    virtual void updatePathCachesAfterRename(const FileURL& from, const FileURL& to) = 0;
};
