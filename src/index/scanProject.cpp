#include "index/scanProject.h"

#include "datatypes/Project.h"
#include "util/Timer.h"
#include "util/log.h"

ScanEnd scanProject(FSScanner& scanner, const Project& project, const ProjectScan& with) {
    constexpr uint32_t kEntriesToRefresh = 50'000;
    const Project::Folders& folders = project.sorderFoldersDesc();
    if (folders.empty()) return ScanEnd::complete;
    const auto allFolders = ReverseSemaphore::initWithCount(static_cast<int64_t>(folders.size()));
    Timer& timer = Timer::sharedInstance();
    timer.start("SCAN");
    const GlobalRules global = GlobalRules::fromSettings();
    with.cache->scanInProgress().set(true);
    const uint64_t aborts = scanner.abortCount();
    const auto wasAborted = [&] {
        if (scanner.abortCount() == aborts) return false;
        logInfo("Scan of project %s aborted", project.name.c_str());
        return true;
    };
    for (const auto& folder : folders) {
        if (with.abortScan && *with.abortScan) {
            scanner.abortScan();
            return ScanEnd::stopped;
        }
        const std::string measured = "SCAN:" + folder->url.path();
        timer.start(measured);
        scanner.contentsOfDirectory(folder->url, {.projectSearchFolderURL = folder->url,
                                                  .cache = with.cache,
                                                  .maxDepth = folder->limitSearchDepth,
                                                  .includeRootItem = folder->includeRoot,
                                                  .rules = rulesOfFolder(*folder, global),
                                                  .performBlock = with.refresh,
                                                  .every = kEntriesToRefresh,
                                                  .scanned = with.scanned,
                                                  .ignored = with.ignored,
                                                  .projectFolderCountSemaphore = allFolders});
        timer.stop(measured);
        if (wasAborted()) return ScanEnd::aborted;
    }
    allFolders->wait();
    // The first job of the last folder is long over when somebody ends the others.
    if (wasAborted()) return ScanEnd::aborted;
    if (with.refresh && scanner.searchModeActive()) with.refresh();
    with.cache->scanInProgress().set(false);
    timer.stop("SCAN");
    return ScanEnd::complete;
}
