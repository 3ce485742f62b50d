#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// What a kernel interface told, before it is put in terms of paths.
struct RawEvent {
    uint32_t flags = 0;              // of FileEventFlag
    uint32_t cookie = 0;             // joins the halves of a rename; 0: they came joined
    std::string folder, name;        // key of a folder; an empty name is the folder itself
    std::string newFolder, newName;  // where a renamed item is now
    bool overflow = false;           // the kernel's queue ran over
    bool gone = false;               // the watch of `folder` has ended
};

/// One instance of one kernel interface that watches single folders, known by a key each.
/// Owner:   WatchSet. Threads: one at a time.
/// Fails:   by errno; a queue that ran over says so in an event.
class KernelWatch {
  public:
    /// names: only what is made, removed and renamed in the folder.
    enum class Interest { all, names };
    struct Added {
        std::string key;  // the same for the same folder
        int error = 0;    // errno, where there is no key
    };
    virtual ~KernelWatch() = default;
    virtual int handle() const = 0;
    /// `folder` is open for reading. A folder that is watched already gets what it lacks.
    virtual Added add(int folder, Interest interest) = 0;
    virtual void drop(const std::string& key) = 0;
    /// Whether there was something; once a call, as much as a buffer holds.
    virtual bool read(std::vector<RawEvent>& events) = 0;
};

/// Null where the kernel or the limits do not allow it, with errno.
std::unique_ptr<KernelWatch> makeInotifyWatch();
/// Where the process may, one mark serves a whole disk if that is wanted, and nothing limits their
/// number; not every file system takes such a mark.
std::unique_ptr<KernelWatch> makeFanotifyWatch(bool wholeDisks);
/// Whether the process may watch without limits.
bool hasUnlimitedFanotify();

/// The flags of changed attributes: the kernel does not tell them apart.
uint32_t attributeFlags();
