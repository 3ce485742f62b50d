#pragma once
#include <dirent.h>
#include <sys/stat.h>

#include <cstring>
#include <map>
#include <set>
#include <string>

#include "platform/FileEvents.h"

/// A reader that knows the paths below a folder, and their kind and number, from events alone: it
/// does what each event says, and then lists each folder that an event has touched and sets right
/// what differs.
class PathSetReader {
  public:
    explicit PathSetReader(const FileURL& root) : root_(root.path()) { scan(root_); }

    void take(const FileEventBatch& batch) {
        touched_.clear();
        std::string oldHalf;
        for (const FileEvent& event : batch) takeOne(event, oldHalf);
        if (!oldHalf.empty()) remove(oldHalf);
        for (const std::string& folder : touched_) compare(folder);
    }
    /// Paths that stand in only one of the two, or differ.
    std::vector<std::string> differences(const PathSetReader& other) const {
        std::vector<std::string> paths;
        for (const auto& [path, item] : items_) {
            const auto found = other.items_.find(path);
            if (found == other.items_.end() || found->second != item) paths.push_back(path);
        }
        for (const auto& [path, item] : other.items_)
            if (!items_.count(path)) paths.push_back(path);
        return paths;
    }
    size_t count() const { return items_.size(); }

  private:
    struct Item {
        bool isFolder;
        ino_t inode;
        bool operator==(const Item&) const = default;
    };
    static bool look(const std::string& path, Item& item) {
        struct stat status;
        if (lstat(path.c_str(), &status) != 0) return false;
        item = {S_ISDIR(status.st_mode), status.st_ino};
        return true;
    }

    void takeOne(const FileEvent& event, std::string& oldHalf) {
        const std::string& path = event.path;
        Item item{};
        const bool exists = look(path, item);
        touched_.insert(path.substr(0, path.rfind('/')));
        if (exists && item.isFolder) touched_.insert(path);
        const bool isRename = event.flags & kFSEventStreamEventFlagItemRenamed;
        const bool isScan =
            event.flags & (kFSEventStreamEventFlagMustScanSubDirs | kFSEventStreamEventFlagMount);
        if (isScan || (!exists && !isRename)) remove(path);
        if (isRename && !exists) {
            if (!oldHalf.empty()) remove(oldHalf);
            oldHalf = path;
        } else if (isRename && !oldHalf.empty()) {
            remove(path);
            move(oldHalf, path);
            oldHalf.clear();
        } else if (exists && (isScan || !items_.count(path))) {
            scan(path);
        }
    }

    void scan(const std::string& path) {
        Item item{};
        if (path.size() < root_.size() || !look(path, item)) return;
        items_[path] = item;
        if (item.isFolder) list(path, [&](const std::string& child) { scan(child); });
    }
    template <class Each>
    static void list(const std::string& path, Each each) {
        DIR* entries = opendir(path.c_str());
        while (const dirent* entry = entries ? readdir(entries) : nullptr)
            if (std::strcmp(entry->d_name, ".") && std::strcmp(entry->d_name, ".."))
                each(path + "/" + entry->d_name);
        if (entries) closedir(entries);
    }
    void compare(const std::string& folder) {
        const auto known = items_.find(folder);
        Item now{};
        if (known == items_.end()) return;
        if (!look(folder, now) || !(now == known->second)) {
            remove(folder);
            return scan(folder);
        }
        std::set<std::string> there;
        list(folder, [&](const std::string& path) {
            Item item{};
            if (!look(path, item)) return;
            there.insert(path);
            const auto found = items_.find(path);
            if (found != items_.end() && found->second == item) return;
            remove(path);
            scan(path);
        });
        std::vector<std::string> gone;
        for (auto at = items_.upper_bound(folder + "/"); at != items_.end(); ++at) {
            if (at->first.compare(0, folder.size() + 1, folder + "/") != 0) break;
            const bool isChild = at->first.find('/', folder.size() + 1) == std::string::npos;
            if (isChild && !there.count(at->first)) gone.push_back(at->first);
        }
        for (const std::string& path : gone) remove(path);
    }
    std::map<std::string, Item> takeOut(const std::string& path) {
        std::map<std::string, Item> taken;
        if (const auto own = items_.find(path); own != items_.end())
            taken.insert(items_.extract(own));
        const std::string prefix = path + "/";
        for (auto at = items_.lower_bound(prefix);
             at != items_.end() && at->first.compare(0, prefix.size(), prefix) == 0;)
            taken.insert(items_.extract(at++));
        return taken;
    }
    void remove(const std::string& path) { takeOut(path); }
    void move(const std::string& from, const std::string& to) {
        const auto taken = takeOut(from);
        if (taken.empty()) return scan(to);
        for (const auto& [path, item] : taken) items_[to + path.substr(from.size())] = item;
    }

    const std::string root_;
    std::map<std::string, Item> items_;
    std::set<std::string> touched_;
};
