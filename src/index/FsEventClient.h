#pragma once
#include <cstdint>
#include <memory>

#include "util/FileURL.h"

class Cache;
class Project;

/// What the processing of file-system events needs from above: which index is meant, and who must
/// hear of a change beyond it. Implemented by Search mode; tests and the console have their own.
/// Owner:   it outlives the handler.
/// Threads: the handler's queue, outside of sections. What touches the window is sent on to the
///          main thread, without waiting for it.
class FsEventClient {
  public:
    struct ItemRenamed {
        uint64_t fromInode;
        uint64_t toInode;
        bool external;  // somebody else has done it, not a file operation of ours
    };

    virtual ~FsEventClient() = default;
    /// The current project and its index. Both may be null: events are dropped then.
    virtual std::shared_ptr<const Project> currentProject() const = 0;
    virtual std::shared_ptr<Cache> cacheForEvents() = 0;
    /// The selection of Search mode is not to be kept: what stands at the path, or below it, goes.
    virtual void clearSelection(const FileURL& eventURL) = 0;
    /// To Marked Items mode and Search mode.
    virtual void itemRenamedFrom(const FileURL& from, const FileURL& to,
                                 const ItemRenamed& renamed) = 0;
    /// saveSelection and resultSetReloaded, if Search mode is active.
    virtual void reloadResultSet() = 0;
    /// To the current mode, if it is one of those that show items of the index: the metadata in
    /// the row has changed.
    virtual void updateRowRepresentingURL(const FileURL& url) = 0;
};
