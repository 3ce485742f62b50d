#pragma once
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "index/FsEventClient.h"
#include "platform/FileEvents.h"

class FileTypes;
class FSScanner;
class NamesOnDisk;
struct FSEventHandlerArguments;

/// One thing in which the index differs from the disk, to be put right.
struct Difference {
    FileURL url;
    bool remove = false;   // what the index has there is gone, another item, or not wanted
    bool isOther = false;  // it is another item
    bool create = false;   // what stands there is missing; after the removal
    bool isDirectory = false;
    bool withRecentItem = true;  // unless nobody can say when it appeared
};

/// Works out from batches of file-system events what has happened, and changes the current Cache
/// accordingly. The record is incomplete: paths and flags come after the fact, several changes may
/// be merged, and the two halves of a rename have nothing that ties them together: of a batch, the
/// next path that exists is taken for the new name of the last one that does not.
/// Owner:   whoever owns the queue of events; it calls everything here on that queue.
/// Threads: that queue's alone, one call at a time; blocks there while folders are scanned. Never
///          inside a section.
/// Units:   ids grow from event to event; all of a batch are of one project.
/// Fails:   what vanishes under its hands counts as gone. Nothing is an error.
class FsEventHandler {
  public:
    FsEventHandler(FsEventClient& client, FSScanner& scanner, const FileTypes& types);
    /// names: how the disks take upper and lower case.
    FsEventHandler(FsEventClient& client, FSScanner& scanner, const FileTypes& types,
                   std::unique_ptr<const NamesOnDisk> names);
    ~FsEventHandler();

    void processFsEvents(FileEventBatch events);
    /// The same for what a comparison has found, under the id of the last event before it. Removals
    /// come before creations.
    void processDifferences(std::span<const Difference> differences, uint64_t eventId);
    /// Everything below the folder is removed and read again.
    void rescan(const FileURL& folder, uint64_t eventId);

    /// Only events on this path are followed in the log, without regard to case; none: all are if
    /// debugFsEvents is on.
    void setDebugFsEventPath(std::optional<std::string> path) { debugFsEventPath_ = path; }

  private:
    using Arguments = FSEventHandlerArguments;

    // FsEventHandler.cpp
    std::optional<Arguments> newArguments() const;
    void process(Arguments& arguments, const FileEvent& event);
    bool isSkipped(const Arguments& arguments) const;
    bool isDebugged(const std::string& path) const;
    void endRename(Arguments& arguments);
    // processProjectFolder.cpp
    void processProjectFolder(Arguments& arguments);
    bool lookAtDisk(Arguments& arguments);
    void addBundle(Arguments& arguments, const FileURL& bundle);
    void addFile(Arguments& arguments, int32_t status);
    bool isToBeCleared(const Arguments& arguments, bool exists) const;
    void clear(const Arguments& arguments);
    // addFolder.cpp
    bool isToBeScanned(const Arguments& arguments) const;
    void addFolder(Arguments& arguments);
    // handleRenameEvent.cpp
    bool handleRenameEvent(Arguments& arguments, bool exists, int32_t status);
    bool moveHere(Arguments& arguments);
    bool pathDiffersOnlyInCase(uint64_t eventId, const FileURL& url) const;

    FsEventClient& client_;
    FSScanner& scanner_;
    const FileTypes& types_;
    const std::unique_ptr<const NamesOnDisk> names_;
    std::optional<std::string> debugFsEventPath_;
    bool debug_ = false;

    // The first half of a rename whose second half has not come yet. Never outlives its batch.
    std::optional<FileURL> previousEventPath_;
    uint64_t previousInode_ = 0;
    uint64_t lastEventId_ = 0;
};
