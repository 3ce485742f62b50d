#include "platform/simulated/SimulatedDesktop.h"

#include <algorithm>
#include <utility>

#include "util/Unicode.h"
#include "util/queues/MainQueue.h"

namespace {

/// Of a desktop on which nothing ever happens.
class SilentStream : public FileEventStream {
    void start() override {}
    void stop() override {}
};

bool contains(const std::vector<std::string>& texts, const std::string& text) {
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

nlohmann::json textsOf(const std::vector<FileURL>& urls) {
    nlohmann::json texts = nlohmann::json::array();
    for (const FileURL& url : urls) texts.push_back(pathToText(url.path()));
    return texts;
}

}  // namespace

void SimulatedDesktop::request(const char* what, nlohmann::json fields) {
    fields["what"] = what;
    requests_.push_back(std::move(fields));
}

void SimulatedDesktop::setFrontmost(const App& app) {
    const bool differs = app.id != frontmost_.id;
    frontmost_ = app;
    if (!differs || !active_) return;
    if (delegate_) delegate_->applicationWillResignActive();
    active_ = false;
}

void SimulatedDesktop::pressHotKey() {
    if (const auto action = hotKeyAction_) action();
}

void SimulatedDesktop::clickStatusItem() {
    if (statusItem_ && statusItem_->action) {
        const auto action = statusItem_->action;
        action();
    }
}

void SimulatedDesktop::setDark(bool isDark) {
    dark = isDark;
    appearanceChanged_.emit();
}

void SimulatedDesktop::changeScreen(double width, double height) {
    screen.window.screen = {0, 0, width, height};
    if (delegate_) delegate_->applicationDidChangeScreenParameters();
}

void SimulatedDesktop::hide() {
    request("hide");
    active_ = false;
    MainQueue::async([this] {
        if (delegate_) delegate_->applicationDidHide();
    });
}

void SimulatedDesktop::terminate() {
    request("terminate");
    terminated_ = true;
}

std::optional<std::string> SimulatedDesktop::defaultApplicationForItem(const FileURL& url) {
    const std::string extension(url.pathExtension());
    for (const App& app : applications)
        if (contains(app.extensions, extension)) return app.id;
    return std::nullopt;
}

std::optional<std::string> SimulatedDesktop::defaultApplicationForDataOf(const FileURL&) {
    for (const App& app : applications)
        if (contains(app.types, "public.data")) return app.id;
    return std::nullopt;
}

std::optional<Applications::Opener> SimulatedDesktop::defaultOpenerOf(const FileURL& url) const {
    openersAsked++;
    const auto opener = [](const App& app) {
        return Opener{.identifier = app.id,
                      .name = app.name.empty() ? app.id : app.name,
                      .iconName = app.id,
                      .isDefault = true};
    };
    for (const App& app : applications)
        if (contains(app.extensions, std::string(url.pathExtension()))) return opener(app);
    for (const App& app : applications)
        if (contains(app.types, "public.data")) return opener(app);
    return std::nullopt;
}

std::vector<Applications::Opener> SimulatedDesktop::applicationsForItems(
    const std::vector<FileURL>& urls) const {
    std::vector<Opener> openers;
    for (const App& app : applications) {
        const auto opens = [&](const FileURL& url) {
            return contains(app.types, "public.data") ||
                   contains(app.extensions, std::string(url.pathExtension()));
        };
        if (std::all_of(urls.begin(), urls.end(), opens))
            openers.push_back({.identifier = app.id,
                               .name = app.name.empty() ? app.id : app.name,
                               .isDefault = openers.empty()});
    }
    return openers;
}

std::optional<std::string> SimulatedDesktop::fileManager(const std::string& configured) {
    return configured;
}

std::optional<std::string> SimulatedDesktop::textEditor(const std::string& configured) {
    return configured;
}

Result<void> SimulatedDesktop::openWithApplication(const std::vector<FileURL>& urls,
                                                   const std::string& application) {
    request("open", {{"paths", textsOf(urls)}, {"application", application}});
    if (launchError) return Error{.domain = "desktop", .description = *launchError};
    return {};
}

Result<void> SimulatedDesktop::reveal(const std::vector<FileURL>& urls) {
    request("reveal", {{"paths", textsOf(urls)}});
    return {};
}

Result<void> SimulatedDesktop::showInfo(const std::vector<FileURL>& urls) {
    request("info", {{"paths", textsOf(urls)}});
    return {};
}

void SimulatedDesktop::setString(const std::string& text) {
    request("pasteboard", {{"text", pathToText(text)}});
}

std::string SimulatedDesktop::iconNameForItem(const FileURL& url, uint8_t itemType) const {
    constexpr uint8_t kFolder = 2;
    if (itemType & kFolder) return "folder";
    return url.pathExtension() == "png" ? "image-png" : "text-x-generic";
}

std::unique_ptr<FileEventStream> SimulatedDesktop::streamCreate(Request request) {
    if (eventSource) return eventSource->streamCreate(std::move(request));
    return std::make_unique<SilentStream>();
}

void SimulatedDesktop::startRecording(Request request) {
    if (eventSource) eventSource->startRecording(std::move(request));
}

uint64_t SimulatedDesktop::currentEventId() const {
    return eventSource ? eventSource->currentEventId() : 1;
}

std::optional<RunningApplication> SimulatedDesktop::frontmostApplication() {
    return RunningApplication{.bundleIdentifier = frontmost_.id, .bundlePath = frontmost_.path};
}

bool SimulatedDesktop::activateRunningApplication(const std::string& bundleIdentifier) {
    request("activate", {{"id", bundleIdentifier}});
    active_ = false;
    return true;
}

Result<void> SimulatedDesktop::registerShortcut(const HotKey& hotKey,
                                                std::function<void()> action) {
    unregisterShortcut();
    if (hotKey == takenHotKey)
        return Error{.domain = "desktop", .description = "Another program holds the hot key."};
    hotKey_ = hotKey;
    hotKeyAction_ = std::move(action);
    return {};
}

void SimulatedDesktop::unregisterShortcut() {
    hotKey_.reset();
    hotKeyAction_ = nullptr;
}

Subscription SimulatedDesktop::observe(std::function<void()> block) {
    return appearanceChanged_.observe(std::move(block));
}
