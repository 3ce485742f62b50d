#pragma once
#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// Of each folder below one that is not watched: a hash of its path below that one -> a hash of
/// what it held when last listed.
using FolderSignatures = std::unordered_map<uint64_t, uint64_t>;

/// A folder as we believe it to be. A rename moves its node; paths are put together when needed.
struct FolderNode {
    FolderNode* parent = nullptr;
    std::string name;
    std::string key;  // of its watch; empty: not watched
    dev_t device = 0;
    ino_t inode = 0;
    bool inside = false;     // at or below a folder that was asked for; else on the way to one
    bool dirty = false;      // something in it may have been told with a path of the past
    bool forgotten = false;  // no longer in the tree
    bool dead = false;       // and no longer on the disk
    std::chrono::steady_clock::time_point arrival{};  // when something last came into it
    std::unique_ptr<std::string> shown;  // the path that was asked for, where a link is on it
    std::unique_ptr<FolderSignatures> unwatched;  // empty while it cannot be read either
    std::unordered_map<std::string_view, std::unique_ptr<FolderNode>> children;

    /// Whether anybody notices what happens in it.
    bool isFollowed() const { return !key.empty() || isListed(); }
    bool isListed() const { return unwatched && !unwatched->empty(); }
};

/// The watched folders and those on the way to them, from the root of all paths.
/// Owner:   WatchedTree. Threads: one at a time.
/// Fails:   place() refuses to make a folder its own ancestor.
class FolderTree {
  public:
    FolderTree();
    ~FolderTree() { clear(); }
    FolderTree(const FolderTree&) = delete;
    FolderTree& operator=(const FolderTree&) = delete;
    void clear();
    FolderNode* root() const { return root_.get(); }
    FolderNode* find(const std::string& key) const;
    static FolderNode* child(const FolderNode* parent, std::string_view name);

    FolderNode* add(FolderNode* parent, std::string_view name);
    void setKey(FolderNode* node, std::string key);
    /// The node is now called `name` in `parent`, in the place of what was there; what was there
    /// is handed to forgotten.
    bool place(FolderNode* node, FolderNode* parent, std::string_view name);
    /// Takes a node and all below it out of the tree. The nodes themselves live until sweep.
    void forget(FolderNode* node);
    struct Ended {
        std::string key;
        bool dead;
    };
    /// Ends the forgotten nodes; answers what they were watched by.
    std::vector<Ended> sweep();

    static std::string path(const FolderNode* node);
    static std::string shownPath(const FolderNode* node);
    static bool isAtOrBelow(const FolderNode* node, const FolderNode* ancestor);
    /// The node and all below it, parents before children.
    static std::vector<FolderNode*> subtree(FolderNode* node);

  private:
    std::unique_ptr<FolderNode> takeOut(FolderNode* node);

    std::unique_ptr<FolderNode> root_;
    std::vector<std::unique_ptr<FolderNode>> forgotten_;
    std::unordered_map<std::string_view, FolderNode*> byKey_;  // views into the nodes
};
