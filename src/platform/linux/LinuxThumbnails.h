#pragma once
#include "platform/Thumbnails.h"
#include "platform/linux/DecoderQueue.h"

struct Preview;

/// Thumbnails in the store that the programs of the desktop share. The decoder program looks into
/// store and file; what it makes is written here, also that there can be none of a file.
/// Owner:   main, inside the World. Threads: main; the work is done on "thumbnailQ".
/// Fails:   silently; a store that cannot be written leaves the thumbnails to this run.
class LinuxThumbnails : public Thumbnails {
  public:
    /// store: its folder.
    explicit LinuxThumbnails(std::string store,
                             std::string program = DecoderQueue::decoderProgram())
        : store_(std::move(store)), queue_("thumbnailQ", Qos::background, std::move(program)) {}
    ~LinuxThumbnails() override { cancel(); }
    void request(std::vector<FileURL> urls, Answer answer) override;
    void cancel() override {
        if (stale_) *stale_ = true;
    }

  private:
    std::shared_ptr<const Picture> finish(const FileURL& url,
                                          const DecoderProcess::Outcome& outcome) const;
    /// Null: that there is none.
    void keep(const FileURL& url, const std::string& mtime, const Picture* picture) const;

    const std::string store_;
    DecoderQueue::Stale stale_;  // of the last request
    DecoderQueue queue_;
};
