#pragma once
#include <cstdint>
#include <ctime>

#include "platform/FileEvents.h"

/// How the index of the current project is kept equal to the disk.
struct Freshness {
    bool hasProject = false;
    bool isScanning = false;
    int64_t entriesRead = 0;         // by the running scan
    SharedFolders checkedOnly = {};  // with what is below them: no events come from there
    std::time_t lastChecked = 0;     // 0: not yet
};
