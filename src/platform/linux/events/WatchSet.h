#pragma once
#include <sys/types.h>

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/linux/events/KernelWatch.h"
#include "platform/linux/events/WatchBudget.h"
#include "util/FileIO.h"

/// The kernel's watches of one stream: of each disk by the best interface that it allows.
/// Owner:   WatchedTree. Threads: one at a time.
/// Fails:   a folder that cannot be watched says why; see Outcome.
class WatchSet {
  public:
    /// best: whole disks where the process may; folders: what any user may.
    enum class Backends { best, folders, fanotify, inotify };
    enum class Outcome {
        watched,
        full,    // no watch is left
        silent,  // a file system that tells nothing, such as /proc
        failed
    };
    struct Added {
        Outcome outcome;
        std::string key;
    };
    WatchSet(Backends backends, WatchBudget& budget);
    ~WatchSet();
    WatchSet(const WatchSet&) = delete;
    WatchSet& operator=(const WatchSet&) = delete;

    /// `evenIfFull`: the folder is most likely watched already.
    Added add(int folder, dev_t device, KernelWatch::Interest interest, bool evenIfFull = false);
    /// The watch that add() gave was there before: it counts once.
    void countOnce(const std::string& key) { uncount(kindOf(key)); }
    /// `dead`: the folder is gone from the disk, and its watch with it.
    void drop(const std::string& key, bool dead);
    /// Reads what there is, up to about `most` events; whether there was any.
    bool read(std::vector<RawEvent>& events, size_t most);
    /// Readable while there are events.
    int handle() const { return poll_.get(); }
    /// Whether so many more folders can be watched.
    bool hasRoomFor(size_t count) const;

  private:
    enum class Way : unsigned char { unknown, fanotify, inotify, silent };
    struct Instance {
        std::unique_ptr<KernelWatch> watch;
        bool tried = false;
    };
    static WatchBudget::Kind kindOf(const std::string& key);
    Way wayFor(int folder, dev_t device);
    KernelWatch* instance(WatchBudget::Kind kind);
    Added addTo(WatchBudget::Kind kind, int folder, KernelWatch::Interest interest,
                bool evenIfFull);
    void uncount(WatchBudget::Kind kind);

    const Backends backends_;
    WatchBudget& budget_;
    FileHandle poll_;
    Instance instances_[WatchBudget::kKinds];
    size_t taken_[WatchBudget::kKinds] = {0, 0};
    std::unordered_map<dev_t, Way> ways_;
};
