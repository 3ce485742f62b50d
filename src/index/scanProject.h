#pragma once
#include "index/FSScanner.h"

class Project;

/// A first scan of all folders of a project into its Cache, from its beginning to its end.
/// Threads: any but scanDirectoryQ's; one at a time. Blocks until it is over.
struct ProjectScan {
    std::shared_ptr<Cache> cache;
    RefreshSearchModeBlock refresh = {};  // also called once at the end
    Relaxed<int64_t>* scanned = nullptr;
    Relaxed<int64_t>* ignored = nullptr;
    const Relaxed<bool>* abortScan = nullptr;  // asked before each folder
};
enum class ScanEnd {
    complete,
    stopped,  // abortScan was set between two folders: what had begun was ended too
    aborted,  // somebody ended it: the Cache holds a part, and is to be thrown away
};
ScanEnd scanProject(FSScanner& scanner, const Project& project, const ProjectScan& with);
