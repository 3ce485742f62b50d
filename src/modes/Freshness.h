#pragma once
#include <cstdint>
#include <ctime>
#include <vector>

#include "util/FileURL.h"

/// How the index of the current project is kept equal to the disk.
struct Freshness {
    bool hasProject = false;
    bool isScanning = false;
    int64_t entriesRead = 0;                // by the running scan
    std::vector<FileURL> checkedOnly = {};  // with what is below them: no events come from there
    std::time_t lastChecked = 0;            // 0: not yet
};
