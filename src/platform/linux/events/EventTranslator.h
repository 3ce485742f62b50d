#pragma once
#include <string>
#include <unordered_set>
#include <vector>

#include "platform/linux/events/EventOutbox.h"
#include "platform/linux/events/WatchedTree.h"

/// Makes events out of what the kernel tells, so that a reader who knows nothing but paths and
/// looks at the disk when it gets them comes out right. Where the kernel's words are older than
/// the disk it tells less and asks for a full look instead.
/// Owner:   an EventRecorder. Threads: one at a time.
/// Fails:   what it cannot put in order becomes MustScanSubDirs on all folders.
class EventTranslator {
  public:
    EventTranslator(WatchedTree& tree, EventOutbox& outbox, bool markSelf)
        : tree_(tree), outbox_(outbox), markSelf_(markSelf) {}
    /// All of them, or up to the first that makes the rest worthless: after an overflow the tree
    /// is built anew.
    void translate(std::vector<RawEvent>& events);
    /// MustScanSubDirs and `why` on each folder that was asked for.
    void putScanOfRoots(uint32_t why);
    /// A file system came to this path or went from it: watches what is there now.
    void mounted(const std::string& path, bool isThere);

  private:
    struct Item;
    void translateOne(RawEvent& event);
    void rebuild(uint32_t why);
    void inFolder(const RawEvent& event, FolderNode* folder);
    void ofFolder(uint32_t flags, FolderNode* folder, const std::string& name, const Item& item,
                  uint32_t& told);
    void watchEnded(FolderNode* folder);

    // EventTranslatorRenames.cpp
    void renamed(const RawEvent& event, FolderNode* from, FolderNode* to);
    FolderNode* moveNode(const RawEvent& event, FolderNode* from, FolderNode* to);
    void putHalves(uint32_t flags, const Item& before, const Item& after, FolderNode* node);
    void putGone(uint32_t flags, const Item& item);
    void putArrived(uint32_t flags, const Item& item, FolderNode* to, FolderNode* node);
    void putUncertain(FolderNode* node);

    // EventTranslatorRoots.cpp
    void onTheWay(FolderNode* folder, const std::string& name, bool cameIn);
    void putRootsBack();
    void putRootsLost(FolderNode* node, bool dead);

    WatchedTree& tree_;
    EventOutbox& outbox_;
    const bool markSelf_;
    bool lookForRoots_ = false;
    std::unordered_set<std::string> oldHalves_;  // paths that renamed folders had
};

/// An item's path, and what stands there now.
struct EventTranslator::Item {
    Item(const FolderNode* folder, const std::string& name);
    /// IsFile, IsDir or IsSymlink, for what the kernel calls a folder or not.
    uint32_t kind(uint32_t flags) const;

    std::string shown;
    bool exists = false;
    bool isFolder = false;
    bool isLink = false;
    ino_t inode = 0;
};
