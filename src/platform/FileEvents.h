#pragma once
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "util/FileURL.h"

/// What a FileEvent says, one bit each.
enum FileEventFlag : uint32_t {
    kFSEventStreamEventFlagMustScanSubDirs = 0x1,  // all below the path may have changed
    kFSEventStreamEventFlagUserDropped = 0x2,      // and why: we were too slow
    kFSEventStreamEventFlagKernelDropped = 0x4,    // and why: the kernel's queue ran over
    kFSEventStreamEventFlagEventIdsWrapped = 0x8,
    kFSEventStreamEventFlagHistoryDone = 0x10,  // what was to be replayed has been
    kFSEventStreamEventFlagRootChanged = 0x20,
    kFSEventStreamEventFlagMount = 0x40,
    kFSEventStreamEventFlagUnmount = 0x80,
    kFSEventStreamEventFlagItemCreated = 0x100,
    kFSEventStreamEventFlagItemRemoved = 0x200,
    kFSEventStreamEventFlagItemInodeMetaMod = 0x400,
    kFSEventStreamEventFlagItemRenamed = 0x800,
    kFSEventStreamEventFlagItemModified = 0x1000,
    kFSEventStreamEventFlagItemFinderInfoMod = 0x2000,
    kFSEventStreamEventFlagItemChangeOwner = 0x4000,
    kFSEventStreamEventFlagItemXattrMod = 0x8000,
    kFSEventStreamEventFlagItemIsFile = 0x10000,
    kFSEventStreamEventFlagItemIsDir = 0x20000,
    kFSEventStreamEventFlagItemIsSymlink = 0x40000,
    kFSEventStreamEventFlagOwnEvent = 0x80000,  // of this process's own doing
    kFSEventStreamEventFlagItemIsHardlink = 0x100000,
    kFSEventStreamEventFlagItemIsLastHardlink = 0x200000,
    kFSEventStreamEventFlagItemCloned = 0x400000,
};

/// One change on a disk. The two halves of a rename are two events of one batch, the old path
/// first.
struct FileEvent {
    uint64_t id = 0;
    uint32_t flags = 0;
    std::string path;
};
using FileEventBatch = std::vector<FileEvent>;

/// Very many, perhaps. Null: none.
using SharedFolders = std::shared_ptr<const std::vector<FileURL>>;

/// What happens below some folders, from its making to its end. Not started until start.
/// Owner:   who made it. Threads: main.
class FileEventStream {
  public:
    virtual ~FileEventStream() = default;
    /// May be started again after a stop; what happened meanwhile is told then, or that all below
    /// the folders must be read again.
    virtual void start() = 0;
    /// The callback is not running and will not run when this returns. Not from the callback.
    virtual void stop() = 0;

    /// The folders that get no events, with all below them, since the system has no watch left for
    /// them. They are only listed, by recheckUnwatched.
    virtual SharedFolders unwatchedFolders() const { return {}; }
    /// Lists them in the background; those that hold something else than before are told as
    /// MustScanSubDirs. For when somebody is about to look at them.
    virtual void recheckUnwatched() {}
};

/// The source of file-system events. Ids grow over all streams of a run.
/// Owner:   main. Threads: main, but for currentEventId: any.
/// Fails:   a folder that cannot be watched gives no events, with a line in the log.
class FileEvents {
  public:
    static constexpr uint64_t kSinceNow = ~uint64_t{0};

    struct Request {
        std::vector<FileURL> paths;
        uint64_t sinceWhen = kSinceNow;  // replay what came after this id, within this run
        bool fileEvents = true;          // each item; else only mounts and unmounts
        bool markSelf = true;            // set OwnEvent
        /// Whether a folder is of interest, and anything below it; empty: all are. What happens
        /// below one that is not is not told. Called on a thread of the source, with the path.
        std::function<bool(std::string_view)> shouldWatch = {};
        /// Called on a thread of the source, one call at a time a stream; batches in order.
        std::function<void(FileEventBatch)> callback;
    };
    virtual ~FileEvents() = default;
    /// Never null.
    virtual std::unique_ptr<FileEventStream> streamCreate(Request request) = 0;
    /// Keeps what happens from now on for a stream of the same paths that is made later, with an
    /// id from after this call: so a scan begins. Replaces what an earlier call began; the callback
    /// and the id of the request mean nothing here.
    virtual void startRecording(Request /*request*/) {}
    virtual uint64_t currentEventId() const = 0;
};
