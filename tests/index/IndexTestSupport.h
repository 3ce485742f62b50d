#pragma once
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "index/Cache.h"
#include "index/checkTree.h"
#include "platform/FileTypes.h"
#include "support/TemporaryFolder.h"
#include "util/FileIO.h"
#include "util/World.h"
#include "util/log.h"
#include "util/settings/OVUserDefaults.h"

/// Seconds that pass only when a test says so.
struct SettableClock : Clock {
    std::time_t time() const override { return seconds; }
    std::time_t seconds = 1'700'000'000;
};

struct AppPackages : FileTypes {
    bool isFilePackageAtPath(const FileURL& url) const override {
        return url.pathExtension() == "app";
    }
    std::string iconNameForItem(const FileURL&, uint8_t) const override { return {}; }
};

/// Notes what it is told, in order.
struct RecordingObserver : IndexObserver {
    Cache* currentCache() override { return cache; }
    void removeFilteredItem(const fs_item_t* item) override {
        calls.push_back("remove " + std::string(item->nameView()));
    }
    void consolidateFilteredList() override { calls.push_back("consolidate"); }
    bool hasMarkedPaths() override { return marked; }
    void updatePathCachesAfterRemovePath(const FileURL& url) override {
        calls.push_back("unmark " + url.path());
    }
    void updatePathCachesAfterRename(const FileURL& from, const FileURL& to) override {
        calls.push_back("rename " + from.path() + " " + to.path());
    }

    Cache* cache = nullptr;
    bool marked = false;
    std::vector<std::string> calls;
};

/// The log's lines while this lives; none of them reaches standard error.
class LogOf {
  public:
    LogOf() {
        logging::open({.folder = {}, .systemLog = false});
        logging::setListener([](logging::Flag, const std::string& line,
                                void* self) { static_cast<LogOf*>(self)->lines.push_back(line); },
                             this);
    }
    ~LogOf() {
        logging::setListener(nullptr, nullptr);
        logging::close();
    }
    bool holds(std::string_view text) const {
        return std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
            return line.find(text) != std::string::npos;
        });
    }
    std::vector<std::string> lines;
};

/// A Cache that is the current one, and a folder on disk to index.
class IndexTest : public testing::Test {
  protected:
    IndexTest() {
        OVUserDefaults::sharedInstance().setInteger(100, "recentItemsMaxCount");
        cache = std::make_shared<Cache>(observer, types);
        observer.cache = cache.get();
    }
    ~IndexTest() override {
        if (cache) {
            EXPECT_EQ(checkTree(*cache), "");
        }
        cache.reset();
        processFlags.processMetadata = false;
        processFlags.debugCache = false;
        processFlags.debugScan = false;
    }

    fs_item_t* find(const FileURL& url) const {
        return cache->performBlockReadOnly(
            [&](const ReadSection& section) { return cache->fsItemWithURL(section, url); });
    }
    /// Each item at or below the folder as "path type inode", sorted.
    static std::vector<std::string> dump(Cache& of, const FileURL& below) {
        return of.performBlockReadOnly([&](const ReadSection& section) {
            std::vector<std::string> lines;
            for (const fs_item_t* item : of.items(section)) {
                const FileURL url = fs_item_url(item);
                if (!url.isAtOrBelow(below)) continue;
                lines.push_back(url.path() + " " + std::to_string(item->type) + " " +
                                std::to_string(item->inode) + " " +
                                (item->metadata ? std::to_string(item->metadata->mtime) : ""));
            }
            std::sort(lines.begin(), lines.end());
            return lines;
        });
    }
    static uint64_t inodeOf(const FileURL& url) {
        struct stat status = {};
        return lstat(url.c_str(), &status) == 0 ? status.st_ino : 0;
    }

    SettableClock* clock = new SettableClock;
    World world{std::unique_ptr<Clock>(clock)};
    TemporaryFolder folder;
    AppPackages types;
    RecordingObserver observer;
    std::shared_ptr<Cache> cache;
};
