#pragma once
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "platform/FileEvents.h"
#include "support/TemporaryFolder.h"

/// Changes of all kinds in the folder "p", things come and go by "out", and the events that tell of
/// them badly: some are left out, some doubled, some turned round, some say the wrong thing. Only
/// that each folder was touched is told for certain, and where one has appeared by a rename. The
/// same seed makes the same changes.
class RandomChanges {
  public:
    RandomChanges(const TemporaryFolder& folder, unsigned seed) : folder_(folder), random_(seed) {
        folder_.folder("p");
        folder_.folder("out");
    }

    unsigned below(size_t n) { return static_cast<unsigned>(random_() % n); }

    void change() {
        const std::string path = anyPath();
        switch (below(9)) {
            case 0:
            case 1:
                return makeFile(path);
            case 2:
                return makeFolders(path + "/" + name());
            case 3:
                return remove(path);
            case 4:
            case 5:
                return move(path, anyPath());
            case 6:
                return move(path, "out/" + std::to_string(below(5)));
            case 7:
                return move("out/" + std::to_string(below(5)), path);
            default:
                remove(path);
                if (below(2)) return makeFolders(path);
                if (symlink("a", folder_.at(path).c_str()) == 0)
                    tell(path, kFSEventStreamEventFlagItemCreated);
        }
    }

    /// Ids go on from lastId.
    FileEventBatch lossyBatch(uint64_t& lastId) {
        FileEventBatch batch;
        std::shuffle(events_.begin(), events_.end(), std::mt19937(below(1000)));
        for (FileEvent& event : events_) {
            if (below(3) == 0) continue;
            if (below(8) == 0) event.flags |= kFSEventStreamEventFlagItemRemoved;
            if (below(8) == 0) event.flags |= kFSEventStreamEventFlagItemRenamed;
            event.id = lastId + 1 + below(events_.size());
            batch.push_back(std::move(event));
        }
        lastId += events_.size() + 1;
        for (const std::string& path : certain_)
            batch.push_back({++lastId, kFSEventStreamEventFlagItemInodeMetaMod, pathOf(path)});
        for (const std::string& path : moved_)
            batch.push_back({++lastId, kFSEventStreamEventFlagItemRenamed, pathOf(path)});
        events_.clear();
        certain_.clear();
        moved_.clear();
        return batch;
    }

  private:
    std::string pathOf(const std::string& path) const { return folder_.at(path).path(); }
    std::string name() {
        static constexpr const char* kNames[] = {"a", "b", "c~", "d.c", "e.c", "skip", "x.app"};
        return kNames[below(std::size(kNames))];
    }
    std::string anyPath() {
        std::string path = "p";
        // Not by way of a link: what happens behind one is told of under its real path.
        for (unsigned depth = 1 + below(4); depth > 0 && !isLink(path); depth--)
            path += "/" + name();
        return path;
    }
    static std::string parentOf(const std::string& path) { return path.substr(0, path.rfind('/')); }
    void tell(const std::string& path, uint32_t flags) {
        if (!path.starts_with("p/")) return;
        events_.push_back({0, flags, pathOf(path)});
        certain_.insert(parentOf(path));
    }
    bool isFolder(const std::string& path) const {
        struct stat status;
        return lstat(pathOf(path).c_str(), &status) == 0 && S_ISDIR(status.st_mode);
    }
    bool isLink(const std::string& path) const {
        struct stat status;
        return lstat(pathOf(path).c_str(), &status) == 0 && S_ISLNK(status.st_mode);
    }
    void makeFile(const std::string& path) {
        const int file = open(pathOf(path).c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600);
        if (file < 0) return;
        close(file);
        tell(path, kFSEventStreamEventFlagItemCreated | kFSEventStreamEventFlagItemIsFile);
    }
    void makeFolders(const std::string& path) {
        if (isLink(parentOf(path))) return;
        for (size_t slash = path.find('/'); slash != std::string::npos;) {
            slash = path.find('/', slash + 1);
            const std::string part = path.substr(0, slash);
            if (mkdir(pathOf(part).c_str(), 0700) == 0)
                tell(part, kFSEventStreamEventFlagItemCreated | kFSEventStreamEventFlagItemIsDir);
        }
    }
    void remove(const std::string& path) {
        if (isFolder(path)) {
            std::vector<std::string> names;
            if (DIR* entries = opendir(pathOf(path).c_str())) {
                while (const dirent* entry = readdir(entries))
                    if (std::string_view(entry->d_name).find_first_not_of('.') == 0 ||
                        std::strlen(entry->d_name) > 2)
                        names.push_back(entry->d_name);
                closedir(entries);
            }
            for (const std::string& each : names) remove(path + "/" + each);
        }
        if (::remove(pathOf(path).c_str()) == 0) tell(path, kFSEventStreamEventFlagItemRemoved);
    }
    void move(const std::string& from, const std::string& to) {
        if (isFolder(to)) remove(to);
        if (::rename(pathOf(from).c_str(), pathOf(to).c_str()) != 0) return;
        tell(from, kFSEventStreamEventFlagItemRenamed);
        tell(to, kFSEventStreamEventFlagItemRenamed);
        if (to.starts_with("p/")) moved_.insert(to);
    }

    const TemporaryFolder& folder_;
    std::mt19937 random_;
    FileEventBatch events_;
    std::set<std::string> certain_, moved_;
};
