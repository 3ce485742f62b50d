#pragma once
#include <map>
#include <unordered_map>
#include <vector>

#include "index/FolderViews.h"
#include "index/FsEventHandler.h"
#include "index/TouchedFolders.h"

class Cache;

/// Compares touched folders on disk with the index, by names, kinds and inodes, and tells what
/// would make the index what a scan of the whole project would have there.
///
/// What the processing of events prescribes is not called a difference, since no event could put it
/// right:
///   - the link flag, which items that come by an event do not have;
///   - an item that a scan takes but an event refuses may be there or not: one that the global
///     rules exclude ahead of an include list, one below a folder that is itself a folder of the
///     project with rules of its own, a folder that is listed but not entered, all in a project
///     folder that includes what an empty list matches, a folder that cannot be opened;
///   - the item of a folder that the rules refuse may be there or not when it is empty on disk, or
///     holds nothing but such folders and those that are not entered;
///   - metadata; the items of the project's folders when they hold nothing, and those on the way
///     to them.
/// Owner:   whoever processes a batch; made for one comparison. Threads: one at a time, not inside
///          a section. Fails: what cannot be read for want of rights holds nothing; for any other
///          reason nothing is said of it.
class FolderComparison {
  public:
    FolderComparison(Cache& cache, const Project& project);

    std::vector<Difference> differences(const TouchedFolders& touched);
    /// The project's folders below a path that is read anew, which that alone does not bring back.
    std::vector<FileURL> projectFoldersBelow(const FileURL& url) const;
    /// Whether an event that demands it has the folder read anew.
    bool isReadByEvents(const FileURL& folder);

  private:
    struct Entry {
        std::string name;
        uint8_t type;  // without the link flag
        uint64_t inode;
    };
    struct Known {
        uint8_t type;
        uint64_t inode;
        uint64_t children;
    };
    struct Directory {
        FileURL url;
        DirectoryViews views;
        bool deep = false;  // all below it too
    };

    void compareBelow(Directory directory);
    std::optional<Directory> findDirectory(const FileURL& url, TouchedFolders::Depth depth);
    /// The next two answer whether a directory stands there that what is below can be compared in.
    bool compareProjectFolder(const FolderView& view, Directory& directory, bool isWantedAround);
    bool compareEntry(Directory& around, const Entry& entry, const std::optional<Known>& known);
    void compareEntries(Directory& directory);
    void compareListed(Directory& directory, const Entry& entry, const std::optional<Known>& known);
    bool isWantedAsItStands(const Directory& around, const FileURL& url) const;
    void removeIfGone(const FileURL& url);
    bool isToBeKept(const FileURL& url, const DirectoryViews& views, const Known& known) const;

    std::optional<Known> knownItem(const FileURL& url) const;
    std::unordered_map<std::string, Known> knownEntries(const FileURL& directory) const;
    std::optional<Entry> entryAt(const FileURL& url) const;
    bool isPackage(const FileURL& url) const;
    const FolderView* projectFolderAt(const FileURL& url) const;
    bool leadsToProjectFolder(const FileURL& url) const;
    void remove(const FileURL& url, bool isOther = false);
    void create(const FileURL& url, uint8_t type, bool withRecentItem);

    Cache& cache_;
    const std::vector<FolderView> views_;
    std::map<FileURL, Difference> differences_;
    std::map<FileURL, bool> compared_;  // and whether all below them was
    std::vector<Directory> waiting_;
};
