#pragma once
#include <ctime>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/linux/events/FolderTree.h"
#include "platform/linux/events/WatchSet.h"
#include "util/FileURL.h"

class MountTable;
struct statx;

/// The folders below those that were asked for, each with a watch, and the way down to them, so
/// that their own coming and going is seen. Watches a folder first and lists it then: what is made
/// in between is told or listed, often both.
/// Owner:   an EventRecorder. Threads: one at a time.
/// Fails:   a folder that can no longer be watched is kept apart, see recheckUnwatched.
class WatchedTree {
  public:
    struct Options {
        std::vector<FileURL> paths;
        std::function<bool(std::string_view path)> shouldWatch;  // empty: all
        WatchSet::Backends backends = WatchSet::Backends::best;
        std::function<bool()> isEnding;  // a walk ends early
    };
    struct Root {
        FileURL given;
        FolderNode* node = nullptr;  // null while there is no such folder
    };
    WatchedTree(Options options, WatchBudget& budget);

    /// From nothing, with a new instance of the kernel's. Folders that changed after `since` are
    /// handed to changedPaths().
    void build(std::optional<timespec> since = {});
    /// What is no longer certain is mended by build().
    bool needsBuild() const { return needsBuild_; }
    void demandBuild() { needsBuild_ = true; }

    int handle() const { return watches_->handle(); }
    bool read(std::vector<RawEvent>& events, size_t most);
    /// Events that were read while walking, and that handle() no longer tells of.
    bool hasBacklog() const { return !backlog_.empty(); }

    FolderTree& tree() { return tree_; }
    /// Watches the folder of that name and all below it. Whether something may have happened in it
    /// before its watch stood.
    bool addChild(FolderNode* parent, std::string_view name);
    /// `dead`: gone from the disk.
    void forget(FolderNode* node, bool dead = false);
    /// Ends what was forgotten. Not while anyone holds on to a node.
    void sweep();
    bool allows(const FolderNode* parent, std::string_view name) const;

    const std::vector<Root>& roots() const { return roots_; }
    bool missesRoots() const;
    /// Looks again for those that were missing; answers which came back.
    std::vector<FileURL> restoreRoots();
    /// Forgets them together with all below the node; answers their paths.
    std::vector<FileURL> loseRoots(FolderNode* node, bool dead);

    /// Where a disk was mounted in the tree when its folder was watched, and is no longer.
    std::vector<std::string> lostMounts(const MountTable& mounts) const;

    std::vector<std::string> takeChangedPaths();
    /// The uppermost of those that no watch is left for.
    std::vector<FileURL> unwatchedFolders() const;
    /// Whether they may be others than at the last call.
    bool takeUnwatchedChanged() { return std::exchange(unwatchedChanged_, false); }
    /// Lists the folders that are not watched, and tells those that hold something else than
    /// before. Where watches have become free they get them.
    std::vector<std::string> recheckUnwatched();

  private:
    struct Place {
        std::shared_ptr<FileHandle> folder;
        FolderNode* parent;
        std::string name;
    };
    // WatchedTreeRoots.cpp
    bool addRoot(Root& root);
    FolderNode* step(FolderNode* parent, const std::string& name, FileHandle& handle);
    // WatchedTreeWalk.cpp
    bool walk(Place first);
    bool visit(const Place& place, std::vector<Place>& more);
    bool notOpened(const Place& place, int error);
    FolderNode* nodeFor(const Place& place, const struct statx& item, const std::string& key,
                        bool& isNew);
    bool isAfterSince(const struct statx& item) const;
    FileHandle openNode(const FolderNode* node) const;
    // WatchedTreeUnwatched.cpp
    void keepUnwatched(const Place& place, const struct statx& item, int folder);
    void relist(FolderNode* node, int folder, std::vector<std::string>& changed);
    std::vector<FolderNode*> unwatchedNodes() const;

    const Options options_;
    WatchBudget& budget_;
    std::unique_ptr<WatchSet> watches_;
    FolderTree tree_;
    std::vector<Root> roots_;
    std::vector<RawEvent> backlog_;  // read while walking, so that the kernel's queue has room
    std::vector<std::string> changed_;
    std::optional<timespec> since_;
    size_t visits_ = 0;
    bool needsBuild_ = false;
    bool hasUnwatched_ = false;
    bool warned_ = false;
    bool unwatchedChanged_ = false;
};
