#pragma once
#include <linux/capability.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <string>
#include <vector>

#include "platform/linux/events/LinuxFileEvents.h"
#include "util/TestSupport.h"

/// Makes this thread and those that it makes obey the rights of files, also as root; not the
/// processes that they start.
class WithoutPrivileges {
  public:
    WithoutPrivileges() {
        syscall(SYS_capget, &header_, before_);
        __user_cap_data_struct none[2] = {before_[0], before_[1]};
        none[0].effective = none[1].effective = 0;
        syscall(SYS_capset, &header_, none);
    }
    ~WithoutPrivileges() { syscall(SYS_capset, &header_, before_); }

  private:
    __user_cap_header_struct header_ = {_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct before_[2] = {};
};

/// What a stream has delivered.
class Delivered {
  public:
    auto callback() {
        return [this](FileEventBatch batch) {
            std::unique_lock lock(mutex_);
            changed_.wait(lock, [this] { return !held_; });
            batches_.push_back(std::move(batch));
            changed_.notify_all();
        };
    }
    /// While held, the source's thread stands in the callback.
    void hold(bool held) {
        std::lock_guard lock(mutex_);
        held_ = held;
        changed_.notify_all();
    }
    std::vector<FileEventBatch> take() {
        std::lock_guard lock(mutex_);
        return std::exchange(batches_, {});
    }
    /// All up to an event of that path with one of the flags; less if it does not come.
    std::vector<FileEventBatch> takeUpTo(const FileURL& url, uint32_t flags = ~0u) {
        std::unique_lock lock(mutex_);
        const auto hasIt = [&] {
            for (const FileEventBatch& batch : batches_)
                for (const FileEvent& event : batch)
                    if (event.path == url.path() && (event.flags & flags)) return true;
            return false;
        };
        EXPECT_TRUE(changed_.wait_for(lock, std::chrono::seconds(20), hasIt)) << url.path();
        return std::exchange(batches_, {});
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<FileEventBatch> batches_;
    bool held_ = false;
};

/// Runs a shell's line in a process of its own, in that folder.
inline void shell(const FileURL& folder, const std::string& line) {
    const std::string whole = "cd '" + folder.path() + "' && " + line;
    ASSERT_EQ(std::system(whole.c_str()), 0) << line;
}

/// A folder, and a stream on it that stands when the constructor returns.
class WatchedFolder {
  public:
    explicit WatchedFolder(LinuxFileEvents::Options options = {}, const std::string& setUp = ":",
                           FileEvents::Request request = {})
        : source(options) {
        shell(folder.url(), "mkdir in out && cd in && " + setUp);
        if (request.paths.empty()) request.paths = {root()};
        request.callback = delivered.callback();
        // What is replayed comes when all watches stand.
        if (request.sinceWhen == FileEvents::kSinceNow) request.sinceWhen = 0;
        stream = source.streamCreate(std::move(request));
        stream->start();
        waitUntilIdle();
        delivered.take();
    }
    FileURL root() const { return folder.file("in"); }
    FileURL at(std::string_view name) const { return root().appending(name); }
    /// From the folder around the root, which may be gone.
    std::vector<FileEventBatch> eventsAround(const std::string& line) {
        delivered.take();
        shell(folder.url(), line);
        waitUntilIdle();
        return delivered.take();
    }
    void waitUntilIdle() {
        EXPECT_TRUE(comesTrue([&] { return world.work().isIdle(); }));
    }
    /// What one line in the folder leads to.
    std::vector<FileEventBatch> eventsOf(const std::string& line) {
        delivered.take();
        shell(root(), line);
        waitUntilIdle();
        return delivered.take();
    }

    World world;
    TemporaryFolder folder;
    Delivered delivered;
    LinuxFileEvents source;
    std::unique_ptr<FileEventStream> stream;
};

/// Events in a short form, a word each: signs for the flags, the path below the root, and "/" for
/// a folder or "@" for a link. "|" stands between batches if the second holds a rename. Changes of
/// attributes and, of a path that was made, of content are left out: kernels merge them.
inline std::string shortForm(const std::vector<FileEventBatch>& batches, const FileURL& root) {
    constexpr std::pair<uint32_t, char> kSigns[] = {
        {kFSEventStreamEventFlagRootChanged, '!'}, {kFSEventStreamEventFlagMount, 'M'},
        {kFSEventStreamEventFlagUnmount, 'U'},     {kFSEventStreamEventFlagKernelDropped, 'K'},
        {kFSEventStreamEventFlagUserDropped, 'D'}, {kFSEventStreamEventFlagHistoryDone, 'H'},
        {kFSEventStreamEventFlagItemCreated, '+'}, {kFSEventStreamEventFlagItemRemoved, '-'},
        {kFSEventStreamEventFlagItemRenamed, '>'}, {kFSEventStreamEventFlagMustScanSubDirs, '*'},
        {kFSEventStreamEventFlagItemModified, '~'}};
    std::string text, made, lastWritten;
    for (const FileEventBatch& batch : batches) {
        const bool renames =
            !batch.empty() && (batch[0].flags & kFSEventStreamEventFlagItemRenamed);
        if (renames && !text.empty()) text += "| ";
        for (const FileEvent& event : batch) {
            std::string signs;
            for (const auto& [flag, sign] : kSigns)
                if (event.flags & flag) signs += sign;
            const bool isMade = made.find("[" + event.path + "]") != std::string::npos;
            if (signs.size() > 1 && signs.back() == '~') signs.pop_back();
            if (signs.empty() || (signs == "~" && (isMade || event.path == lastWritten))) continue;
            lastWritten = signs == "~" ? event.path : "";
            if (event.flags & kFSEventStreamEventFlagItemCreated) made += "[" + event.path + "]";
            const bool below = event.path.size() > root.path().size() &&
                               event.path.compare(0, root.path().size(), root.path()) == 0;
            text += signs + (below ? event.path.substr(root.path().size() + 1) : ".");
            if (event.flags & kFSEventStreamEventFlagItemIsDir) text += '/';
            if (event.flags & kFSEventStreamEventFlagItemIsSymlink) text += '@';
            text += ' ';
        }
    }
    if (!text.empty()) text.pop_back();
    return text;
}
