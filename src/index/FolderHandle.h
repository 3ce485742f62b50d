#pragma once
#include <atomic>
#include <memory>
#include <string>

#include "util/FileIO.h"

/// An open folder, shared by the jobs that will open its subfolders relative to it: that spares
/// the kernel the way from the root, and reaches what lies deeper than a path may be long.
/// Owner:   shared; closes with the last one. Threads: any.
class FolderHandle {
  public:
    /// How many are open at once in one scan; whoever opens one counts it here.
    using Count = std::atomic<int>;

    FolderHandle(FileHandle handle, Count& open) : handle_(std::move(handle)), open_(open) {
        open_.fetch_add(1, std::memory_order_relaxed);
    }
    ~FolderHandle() { open_.fetch_sub(1, std::memory_order_relaxed); }
    FolderHandle(const FolderHandle&) = delete;
    FolderHandle& operator=(const FolderHandle&) = delete;

    int get() const { return handle_.get(); }
    /// Whether so many are open that this one should not be kept for later.
    bool isOneTooMany() const { return open_.load(std::memory_order_relaxed) > kMaxOpen; }

  private:
    static constexpr int kMaxOpen = 200;  // a process gets 1,024 by default

    const FileHandle handle_;
    Count& open_;
};
