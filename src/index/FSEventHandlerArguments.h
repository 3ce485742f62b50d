#pragma once
#include <map>
#include <memory>
#include <optional>

#include "datatypes/Project.h"
#include "index/Cache.h"
#include "index/RuleSubject.h"
#include "index/globalRules.h"
#include "platform/FileEvents.h"

/// The working record of one batch, used again for each of its events and folders.
/// Threads: one.
struct FSEventHandlerArguments {
    // Of the batch.
    std::shared_ptr<const Project> project;
    std::shared_ptr<Cache> cache;
    GlobalRules global;
    std::map<const ProjectFolder*, FolderRules> rulesByFolder;  // composed once
    bool debug = false;  // whether the event at hand is to be followed in the log

    // Of the event. Url, type and the two flags follow what the disk says, as soon as it is asked.
    uint64_t eventId = 0;
    uint32_t eventFlags = 0;
    FileURL eventURL;
    uint8_t eventPathType = ITEM_FILE;  // never with the link flag
    bool eventPathIsDir = false;
    bool eventPathIsBundle = false;
    bool withRecentItem = true;
    uint64_t inode = 0;  // 0 for what does not exist
    metadata_ptr metadata = nullptr;

    // Of the folder at hand.
    const ProjectFolder* folder = nullptr;
    const FolderRules* rules = nullptr;
    std::optional<RuleSubject> relativePath;  // of the event path; none for the folder's own

    void composeRules();
    bool hasFlag(uint32_t any) const { return (eventFlags & any) != 0; }
    /// What the recent items are told of the event; 0: nothing.
    uint8_t changeType() const;
};

/// Whether the desktop takes what stands there for one file. What is no folder, or not there, is
/// no package, whatever its name.
bool isFilePackage(const FileTypes& types, const FileURL& url);
