#pragma once
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

/// The entries of an open folder in its own order, "." and ".." left out, read in large pieces
/// straight from the kernel.
/// Threads: one at a time; a thread reads one folder at a time, since readers share its buffer.
/// Fails:   what cannot be read ends the listing.
class FolderReader {
  public:
    struct Entry {
        const char* name;  // NUL-terminated, good until the next call
        size_t length;
        uint64_t inode;
        uint8_t type;  // DT_DIR, DT_LNK ... or DT_UNKNOWN

        std::string_view nameView() const { return {name, length}; }
    };

    explicit FolderReader(int handle) : handle_(handle) {}
    std::optional<Entry> next();

  private:
    bool fill();

    const int handle_;
    size_t at_ = 0;
    size_t filled_ = 0;
};
