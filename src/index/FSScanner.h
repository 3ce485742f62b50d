#pragma once
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "index/Cache.h"
#include "index/Metadata.h"
#include "index/ReverseSemaphore.h"
#include "index/globalRules.h"
#include "util/queues/OperationQueue.h"

class ProjectFolderScan;

/// Called on a thread of scanDirectoryQ while entries are read, as often as asked for.
using RefreshSearchModeBlock = std::function<void()>;

/// What contentsOfDirectory is to read, and for whom.
struct ScanRequest {
    FileURL projectSearchFolderURL;  // where the paths that rules see begin
    std::shared_ptr<Cache> cache;
    std::optional<int64_t> maxDepth = {};  // levels below the directory; none: all
    bool includeRootItem = false;
    FolderRules rules = {};
    RefreshSearchModeBlock performBlock = {};
    uint32_t every = 0;                   // entries from one call of performBlock to the next
    Relaxed<int64_t>* scanned = nullptr;  // the caller's; counted only with performBlock
    Relaxed<int64_t>* ignored = nullptr;
    uint64_t fsEventId = 0;
    uint8_t changeType = 0;  // for the recent items, of the directory itself
    /// Signalled once, when all that the directory holds has been read and added.
    std::shared_ptr<ReverseSemaphore> projectFolderCountSemaphore = {};
};

/// Reads folders into a Cache: one job a directory, many at once, on one queue of the process.
/// Owner:   World (sharedInstance). Threads: any but the queue's own, unless said otherwise.
/// Fails:   what cannot be read is left out, with a log line.
class FSScanner {
  public:
    FSScanner();
    ~FSScanner();
    static FSScanner& sharedInstance();

    /// Returns when the directory's own entries have been read; jobs for what lies below go on.
    void contentsOfDirectory(const FileURL& url, ScanRequest request);
    /// Ends all jobs, and returns when they have ended. What they found so far stays. Jobs that
    /// hang, on the disk of a server that is gone, are left behind after a quarter of a second:
    /// nobody waits for them then, and new ones get another queue.
    void abortScan();
    bool isAborting() const { return isAborting_; }
    /// How often abortScan has been called: whoever compares it over a time misses none.
    uint64_t abortCount() const { return abortCount_; }
    /// Whether the refresh block has anybody to refresh for. Any thread.
    void setSearchModeActive(bool active) { searchModeActive_ = active; }
    bool searchModeActive() const { return searchModeActive_; }
    OperationQueue& scanDirectoryQ();

    static metadata_ptr metadataFromStatBuf(const struct statx* buffer) {
        return ::metadataFromStatBuf(buffer);
    }

    struct Subdirectories {
        bool hideDotFiles;
        uint8_t visibleItemTypes;  // bit 1 files and bundles, bit 2 folders
        bool treatBundlesAsFiles;
    };
    /// The names in one folder in its own order; nothing for one that cannot be opened. The listing
    /// ends with what was found so far when abort, cleared at the start, is set. Any thread.
    static std::vector<std::string> subdirectoriesOfPath(const FileURL& path,
                                                         const Subdirectories& options,
                                                         const FileTypes& fileTypes,
                                                         Relaxed<bool>& abort);

  private:
    std::shared_ptr<ProjectFolderScan> beginScan(ScanRequest request);
    void leaveBehind(const OperationQueue& queue);
    void forgetWhatHasEnded();

    Relaxed<bool> isAborting_ = false;
    Relaxed<uint64_t> abortCount_ = 0;
    Relaxed<bool> searchModeActive_ = false;
    std::mutex mutex_;
    std::vector<std::weak_ptr<ProjectFolderScan>> scans_;
    std::unique_ptr<OperationQueue> scanDirectoryQ_;
    std::vector<std::unique_ptr<OperationQueue>> leftBehind_;
};
