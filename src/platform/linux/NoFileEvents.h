#pragma once
#include "platform/FileEvents.h"

/// A source of which nothing is ever heard.
/// Owner:   main. Threads: main.
class NoFileEvents : public FileEvents {
  public:
    std::unique_ptr<FileEventStream> streamCreate(Request) override {
        struct Silent : FileEventStream {
            void start() override {}
            void stop() override {}
        };
        return std::make_unique<Silent>();
    }
    uint64_t currentEventId() const override { return 1; }
};
