#pragma once
#include <memory>
#include <mutex>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

#include "core/app/AppDelegate.h"
#include "platform/simulated/ManualClock.h"
#include "platform/simulated/SimulatedDesktop.h"
#include "shell/registry/builtinShortcuts.h"
#include "util/World.h"
#include "util/log.h"

/// The whole application on the simulated desktop, with a World and a clock of its own. Its
/// settings are below a home folder; the disk is the real one.
/// Owner:   Session. Threads: main.
class AppSession {
  public:
    struct Start {
        FileURL home = {};
        nlohmann::json settings = nlohmann::json::object();  // laid over the stored ones
        std::optional<std::pair<double, double>> screen = {};
        uint64_t modifiers = 0;
        KeyLayout layout = KeyLayout::qwerty;
        bool followsDisk = true;
        std::function<void(SimulatedDesktop&)> prepare = {};  // before the launch
    };
    /// Returns after stage two of the launch, or when the gate waits.
    explicit AppSession(const Start& start);
    ~AppSession();

    SimulatedDesktop& desktop() { return desktop_; }
    SimulatedScreen& screen() { return desktop_.screen; }
    AppDelegate& app() { return *app_; }
    World& world() { return *world_; }
    /// True when nothing is queued, running, or due within 50 ms.
    bool settle(double seconds);
    /// Moves the clock on, timer by timer.
    void advance(double seconds);
    std::vector<std::string> takeLog(unsigned mask);

  private:
    struct LogLine {
        unsigned flag;
        std::string text;
    };
    static void listen(logging::Flag flag, const std::string& line, void* context);

    std::mutex logMutex_;
    std::vector<LogLine> log_;
    ManualClock* clock_ = nullptr;  // World's
    std::unique_ptr<World> world_;
    SimulatedDesktop desktop_;
    std::unique_ptr<FileEvents> events_;
    std::unique_ptr<AppDelegate> app_;
};
