#pragma once
#include <ftw.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <mutex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "util/FileURL.h"
#include "util/World.h"
#include "util/log.h"

/// A clock that stands still until a test moves it.
class ManualClock : public Clock {
  public:
    TimePoint now() const override { return now_; }
    std::time_t time() const override {
        return 1'700'000'000 + now_.time_since_epoch() / std::chrono::seconds(1);
    }
    void advance(Duration duration) { now_ += duration; }

  private:
    TimePoint now_ = {};
};

/// A World whose clock stands still.
struct ManualWorld {
    ManualWorld() : world(std::unique_ptr<Clock>(clock = new ManualClock)) {}
    ManualClock* clock;
    World world;

    /// Moves the clock and runs what falls due.
    void advance(Clock::Duration duration) {
        clock->advance(duration);
        run();
    }
    void run() {
        while (world.mainQueue().runPending()) {}
    }
};

/// A folder of its own, gone at the end with all that is in it.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string name = testing::TempDir() + "trovast-XXXXXX";
        url_ = FileURL(mkdtemp(name.data()));
    }
    ~TemporaryFolder() {
        const auto removeOne = [](const char* path, const struct stat*, int, FTW*) {
            return remove(path);
        };
        nftw(url_.c_str(), removeOne, 16, FTW_DEPTH | FTW_PHYS);
    }
    const FileURL& url() const { return url_; }
    FileURL file(std::string_view name) const { return url_.appending(name); }

  private:
    FileURL url_;
};

inline std::string contentOf(const FileURL& url) {
    std::ifstream file(url.path(), std::ios::binary);
    std::stringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

inline void setContent(const FileURL& url, std::string_view bytes) {
    std::ofstream(url.path(), std::ios::binary) << bytes;
}

/// The lines that the log writes while this lives; none of them reaches standard error.
class LogLines {
  public:
    LogLines() {
        logging::open({.folder = {}, .systemLog = false});
        logging::setListener(
            [](logging::Flag, const std::string& line, void* self) {
                static_cast<LogLines*>(self)->lines_.push_back(line);
            },
            this);
    }
    ~LogLines() {
        logging::setListener(nullptr, nullptr);
        logging::close();
    }
    /// How many lines hold this text. Only when no other thread logs.
    size_t count(std::string_view text) const {
        size_t found = 0;
        for (const std::string& line : lines_) found += line.find(text) != std::string::npos;
        return found;
    }
    const std::vector<std::string>& lines() const { return lines_; }

  private:
    std::vector<std::string> lines_;
};

/// Whether the condition comes true; waits for it, for long only if it does not.
template <class Condition>
bool comesTrue(Condition&& condition) {
    for (int i = 0; i < 20'000; i++) {
        if (condition()) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return false;
}
