#pragma once
#include <map>

#include "platform/FileEvents.h"

/// Which folders a batch of events has touched, and how much of each is to be compared.
struct TouchedFolders {
    enum class Depth {
        entries,  // what stands in it
        asRead,   // all below, unless what processes events has just read that
        subtree,  // all below: it came with what the index had of it elsewhere
    };

    /// The parents of all paths of the batch, and the paths themselves. Not of what this process
    /// did: whoever did it tells the index too, and knows what was renamed.
    static TouchedFolders of(const FileEventBatch& batch);
    /// The deeper one holds.
    void add(const FileURL& folder, Depth depth);

    std::map<FileURL, Depth> folders;
};
