#pragma once
#include <map>
#include <string>
#include <vector>

#include "util/FileIO.h"

/// The mounts that this process sees, and what became of them.
/// Owner:   an EventRecorder. Threads: one at a time.
/// Fails:   a table that cannot be read counts as unchanged.
class MountTable {
  public:
    struct Change {
        std::string path;
        bool isThere;
    };
    MountTable();
    /// Has something to say (POLLPRI) when the table has changed.
    int handle() const { return handle_.get(); }
    /// Since the last call; what went before what came.
    std::vector<Change> changes();

    /// Whether something was mounted there at the last call.
    bool has(const std::string& path) const;

    /// The mount points of such a table by the numbers of the mounts. Blanks stand as "\040".
    static std::map<int, std::string> parse(const std::string& table);

  private:
    bool read(std::map<int, std::string>& mounts) const;

    FileHandle handle_;
    std::map<int, std::string> mounts_;
};
