#pragma once
#include <map>
#include <nlohmann/json.hpp>

#include "index/ClosingComparison.h"
#include "index/FSScanner.h"
#include "index/FolderComparison.h"
#include "index/FsEventHandler.h"
#include "index/IndexTestSupport.h"
#include "index/NamesOnDisk.h"
#include "index/scanProject.h"

/// Notes what it is asked for, in order, as words and paths below the test's folder.
struct RecordingClient : FsEventClient {
    std::shared_ptr<const Project> currentProject() const override { return project; }
    std::shared_ptr<Cache> cacheForEvents() override { return cache; }
    void clearSelection(const FileURL& url) override { calls.push_back("clear " + url.path()); }
    void itemRenamedFrom(const FileURL& from, const FileURL& to,
                         const ItemRenamed& renamed) override {
        calls.push_back("renamed " + from.path() + " " + to.path());
        lastRenamed = renamed;
    }
    void reloadResultSet() override { calls.push_back("reload"); }
    void updateRowRepresentingURL(const FileURL& url) override {
        calls.push_back("update " + url.path());
    }
    bool holds(const std::string& call) const {
        return std::find(calls.begin(), calls.end(), call) != calls.end();
    }

    std::shared_ptr<const Project> project;
    std::shared_ptr<Cache> cache;
    std::vector<std::string> calls;
    ItemRenamed lastRenamed{};
};

/// A disk that ignores case, as far as it is asked.
struct NamesIgnoringCase : NamesOnDisk {
    Result<bool> isCaseSensitive(const FileURL&) const override { return false; }
    Result<std::string> nameOf(const FileURL& url) const override {
        const auto spelt = names.find(std::string(url.lastPathComponent()));
        return spelt == names.end() ? std::string(url.lastPathComponent()) : spelt->second;
    }
    std::map<std::string, std::string> names;
};

/// An index of the test's folder "p", which events change.
class EventsTest : public IndexTest {
  protected:
    static constexpr uint32_t kCreated = kFSEventStreamEventFlagItemCreated;
    static constexpr uint32_t kRemoved = kFSEventStreamEventFlagItemRemoved;
    static constexpr uint32_t kRenamed = kFSEventStreamEventFlagItemRenamed;
    static constexpr uint32_t kModified = kFSEventStreamEventFlagItemModified;
    static constexpr uint32_t kMustScan = kFSEventStreamEventFlagMustScanSubDirs;
    static constexpr uint32_t kOwner = kFSEventStreamEventFlagItemChangeOwner;
    static constexpr uint32_t kXattr = kFSEventStreamEventFlagItemXattrMod;
    static constexpr uint32_t kUnmount = kFSEventStreamEventFlagUnmount;
    static constexpr uint32_t kMount = kFSEventStreamEventFlagMount;
    static constexpr uint32_t kDir = kFSEventStreamEventFlagItemIsDir;
    static constexpr uint32_t kFile = kFSEventStreamEventFlagItemIsFile;

    EventsTest() { folder.folder("p"); }

    /// Folders in stored form, their paths below the test's folder.
    void use(nlohmann::json folders = {{{"path", "p"}}}) {
        for (auto& each : folders) each["path"] = folder.at(each["path"].get<std::string>()).path();
        client.project = std::make_shared<const Project>(
            nlohmann::json{{"name", "P"}, {"uuid", "1"}, {"folders", std::move(folders)}});
        client.cache = cache;
    }
    void scan() {
        ASSERT_EQ(scanProject(FSScanner::sharedInstance(), *client.project, {.cache = cache}),
                  ScanEnd::complete);
    }
    void useAndScan(nlohmann::json folders = {{{"path", "p"}}}) {
        use(std::move(folders));
        scan();
    }
    void rename(std::string_view from, std::string_view to) const {
        ASSERT_EQ(::rename(folder.at(from).c_str(), folder.at(to).c_str()), 0);
    }
    struct Event {
        uint32_t flags;
        std::string_view path;
    };
    FileEventBatch batch(std::initializer_list<Event> events) {
        FileEventBatch made;
        for (const Event& event : events)
            made.push_back({.id = ++lastId,
                            .flags = event.flags,
                            .path = event.path.starts_with('/') ? std::string(event.path)
                                                                : folder.at(event.path).path()});
        return made;
    }
    void process(std::initializer_list<Event> events) { handler.processFsEvents(batch(events)); }
    bool has(std::string_view path) const { return find(folder.at(path)) != nullptr; }
    /// The paths below "p".
    std::vector<std::string> paths() const {
        std::vector<std::string> all;
        const size_t before = folder.url().path().size() + 1;
        cache->performBlockReadOnly([&](const ReadSection& section) {
            for (const fs_item_t* item : cache->items(section))
                if (const FileURL url = fs_item_url(item); url.hasPrefix(folder.at("p")))
                    all.push_back(url.path().substr(before));
        });
        std::sort(all.begin(), all.end());
        return all;
    }
    std::vector<int> changes() const {
        std::vector<int> all;
        for (const RecentItem& item : cache->recentItems()) all.push_back(item.change);
        return all;
    }

    uint64_t lastId = 100;
    RecordingClient client;
    FsEventHandler handler{client, FSScanner::sharedInstance(), types};
};
using Paths = std::vector<std::string>;
