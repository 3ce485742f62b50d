#pragma once
#include <memory>
#include <optional>

#include "platform/FileEvents.h"
#include "platform/linux/events/WatchSet.h"

class EventRecorder;
struct EventSourceState;

/// File-system events from the Linux kernel: one watch a folder, which any user may have.
/// Owner:   main. Threads: as FileEvents.
/// Units:   watches, one a folder; events in the ring.
/// Fails:   folders beyond the limit are listed now and then instead. Changes that other machines
///          make on a network file system, and writes through a memory map, are not told.
class LinuxFileEvents : public FileEvents {
  public:
    struct Options {
        WatchSet::Backends backends = WatchSet::Backends::best;
        double share = 0.6;                      // of the watches that the kernel allows a user
        std::optional<size_t> mostWatches = {};  // of each interface, instead of a share
        size_t ringSize = 100'000;
    };
    LinuxFileEvents() : LinuxFileEvents(Options{}) {}
    explicit LinuxFileEvents(const Options& options);
    ~LinuxFileEvents() override;

    std::unique_ptr<FileEventStream> streamCreate(Request request) override;
    void startRecording(Request request) override;
    uint64_t currentEventId() const override;

  private:
    const std::shared_ptr<EventSourceState> state_;
    std::unique_ptr<EventRecorder> recorder_;  // what startRecording began, until a stream takes it
};
