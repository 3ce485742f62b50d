#include "AppSession.h"

#include <thread>

#include "platform/linux/events/LinuxFileEvents.h"
#include "shell/registry/KeyboardShortcuts.h"
#include "shell/registry/PreferencesController.h"
#include "util/log.h"
#include "util/settings/OVUserDefaults.h"
#include "util/settings/SettingsFile.h"

using namespace std::chrono;

AppSession::AppSession(const Start& start) {
    logging::setListener(&AppSession::listen, this);
    auto clock = std::make_unique<ManualClock>();
    clock_ = clock.get();
    world_ = std::make_unique<World>(std::move(clock));
    const FileURL folder = start.home.appending(".config").appending("trovast");
    auto& settings = world_->provide<OVUserDefaults>(
        std::make_unique<SettingsFile>(folder.appending("settings.json")));
    PreferencesController::setupUserDefaults(settings,
                                             {.home = start.home, .layout = start.layout});
    for (const auto& [key, value] : start.settings.items()) settings.setObject(value, key);
    world_->provide<KeyboardShortcuts>(settings, start.layout);
    world_->mainQueue().runPending();  // nobody is to be told of these
    desktop_.modifiers = start.modifiers;
    if (start.screen)
        desktop_.screen.window.screen = {0, 0, start.screen->first, start.screen->second};
    if (start.followsDisk) {
        events_ = std::make_unique<LinuxFileEvents>(
            LinuxFileEvents::Options{.backends = WatchSet::Backends::folders});
        desktop_.eventSource = events_.get();
    }
    if (start.prepare) start.prepare(desktop_);
    SimulatedScreen& screen = desktop_.screen;
    app_ = std::make_unique<AppDelegate>(Screen{.views = {.window = screen.window,
                                                          .field = screen.field,
                                                          .table = screen.table,
                                                          .infoBar = screen.infoBar,
                                                          .indicators = screen.indicators,
                                                          .alerts = screen.alerts},
                                                .keyEvents = screen.keyEvents,
                                                .quitProgress = screen.quitProgress,
                                                .quickStart = screen.quickStart,
                                                .preview = screen.preview,
                                                .diskAccess = screen.diskAccess,
                                                .preferences = screen.preferences,
                                                .help = screen.help,
                                                .menu = screen.menu},
                                         DesktopPorts{.application = desktop_,
                                                      .applications = desktop_,
                                                      .pasteboard = desktop_,
                                                      .fileTypes = desktop_,
                                                      .fileEvents = desktop_,
                                                      .frontmost = desktop_,
                                                      .hotKeys = desktop_,
                                                      .statusBar = desktop_,
                                                      .appearance = desktop_,
                                                      .updater = desktop_,
                                                      .diskAccess = desktop_,
                                                      .previews = desktop_.previews,
                                                      .thumbnails = desktop_.thumbnails,
                                                      .home = start.home});
    app_->applicationDidFinishLaunching();
}

AppSession::~AppSession() {
    app_.reset();
    world_.reset();
    logging::setListener(nullptr, nullptr);
}

bool AppSession::settle(double seconds) {
    const auto end = steady_clock::now() + duration<double>(seconds);
    // More than once: work that is handed from one queue to another may be missed in between.
    for (int quiet = 0; quiet < 3;) {
        const bool ran = world_->mainQueue().runPending();
        if (!ran && world_->isSettled()) {
            quiet++;
            continue;
        }
        quiet = 0;
        if (steady_clock::now() > end) return false;
        if (!ran) std::this_thread::sleep_for(500us);
    }
    return true;
}

void AppSession::advance(double seconds) {
    clock_->advance({});
    const auto end =
        clock_->now() + duration_cast<Clock::Duration>(duration<double>(std::max(seconds, 0.0)));
    for (;;) {
        world_->mainQueue().runPending();
        const auto due = world_->mainQueue().nextDue();
        if (!due || *due > end) break;
        clock_->advance(std::max(Clock::Duration{}, *due - clock_->now()));
    }
    clock_->advance(end - clock_->now());
    world_->mainQueue().runPending();
}

void AppSession::listen(logging::Flag flag, const std::string& line, void* context) {
    auto& self = *static_cast<AppSession*>(context);
    std::lock_guard lock(self.logMutex_);
    self.log_.push_back({flag, line});
}

std::vector<std::string> AppSession::takeLog(unsigned mask) {
    std::lock_guard lock(logMutex_);
    std::vector<std::string> lines;
    for (LogLine& line : log_)
        if (line.flag & mask) lines.push_back(std::move(line.text));
    log_.clear();
    return lines;
}
