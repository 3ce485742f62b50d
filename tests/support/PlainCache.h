#pragma once
#include <memory>
#include <string>

#include "index/Cache.h"
#include "platform/FileTypes.h"
#include "util/World.h"

/// A Cache with nobody above it, filled by paths that need not exist on disk: parents first.
struct PlainCache : IndexObserver {
    struct NoPackages : FileTypes {
        bool isFilePackageAtPath(const FileURL&) const override { return false; }
        std::string iconNameForItem(const FileURL&, uint8_t) const override { return {}; }
    };

    /// False: it was there already.
    bool add(const std::string& path, uint8_t type) {
        return !cache->addPath(FileURL(path), {.ofType = type, .inode = ++lastInode}).alreadyExists;
    }

    Cache* currentCache() override { return cache.get(); }
    void removeFilteredItem(const fs_item_t*) override {}
    void consolidateFilteredList() override {}
    bool hasMarkedPaths() override { return false; }
    void updatePathCachesAfterRemovePath(const FileURL&) override {}
    void updatePathCachesAfterRename(const FileURL&, const FileURL&) override {}

    World world;
    NoPackages fileTypes;
    uint64_t lastInode = 1;
    std::shared_ptr<Cache> cache = std::make_shared<Cache>(*this, fileTypes);
};
