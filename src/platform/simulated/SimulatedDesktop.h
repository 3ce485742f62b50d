#pragma once
#include <atomic>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "platform/Appearance.h"
#include "platform/Applications.h"
#include "platform/DiskAccess.h"
#include "platform/FileEvents.h"
#include "platform/FileTypes.h"
#include "platform/Frontmost.h"
#include "platform/HotKeys.h"
#include "platform/OwnApplication.h"
#include "platform/Pasteboard.h"
#include "platform/Previews.h"
#include "platform/StatusBar.h"
#include "platform/Thumbnails.h"
#include "platform/Updater.h"
#include "platform/simulated/SimulatedScreen.h"

/// A desktop in memory: every port of the program. What the program asks of it is recorded and
/// answered at once, nothing on the real desktop is touched, and whoever drives it plays the user
/// and the other programs.
/// Owner:   the console or a test; outlives the AppDelegate. Threads: main, but FileTypes: any.
class SimulatedDesktop : public OwnApplication,
                         public Applications,
                         public Pasteboard,
                         public FileTypes,
                         public FileEvents,
                         public Frontmost,
                         public HotKeys,
                         public StatusBar,
                         public Appearance,
                         public Updater,
                         public DiskAccess {
  public:
    /// An application of the desktop.
    struct App {
        std::string id, path = {}, name = {};
        std::vector<std::string> types = {}, extensions = {};
        bool owner = false;
        int64_t pid = 0;
    };

    SimulatedScreen screen;

    /// Keeps what was asked for; whoever drives the desktop answers.
    struct AskedPreviews : Previews {
        void request(const Request& request, Answer answer) override {
            asked.push_back(request);
            answers.push_back(std::move(answer));
        }
        void cancel() override { cancels++; }
        std::vector<Request> asked;
        std::vector<Answer> answers;
        int cancels = 0;
    } previews;
    struct AskedThumbnails : Thumbnails {
        void request(std::vector<FileURL> urls, Answer answerer) override {
            asked.push_back(std::move(urls));
            answer = std::move(answerer);
        }
        void cancel() override { answer = {}; }
        std::vector<std::vector<FileURL>> asked;
        Answer answer;  // while some are asked for
    } thumbnails;

    // The desktop's state, to be set as one likes.
    /// One that opens everything.
    std::vector<App> applications{
        {.id = "com.example.Editor", .path = "/usr/bin/editor", .types = {"public.data"}}};
    std::vector<App> running;
    std::optional<std::string> launchError;  // of every application
    uint64_t modifiers = 0;
    bool dark = true;
    bool updateSession = false;
    mutable std::atomic<int> openersAsked = 0;  // how often the default one of an item was
    int diskAccessError = 0;                    // of the protected file
    std::optional<HotKey> takenHotKey;          // by another program
    FileEvents* eventSource = nullptr;          // the real one; null: nothing ever happens

    // What the user and the other programs do.
    /// Another program takes the keyboard if it differs from the one in front.
    void setFrontmost(const App& app);
    const App& frontmost() const { return frontmost_; }
    void pressHotKey();
    void clickStatusItem();
    void setDark(bool isDark);
    void changeScreen(double width, double height);
    bool isTerminated() const { return terminated_; }
    const std::optional<StatusItemContent>& statusItem() const { return statusItem_; }
    const std::optional<HotKey>& hotKey() const { return hotKey_; }

    /// What was asked since the last call, each an object with "what".
    std::vector<nlohmann::json> takeRequests() { return std::exchange(requests_, {}); }

    // OwnApplication
    void setDelegate(OwnApplicationDelegate* delegate) override { delegate_ = delegate; }
    bool isActive() const override { return active_; }
    void activateIgnoringOtherApps() override { active_ = true; }
    void hide() override;
    void unhide() override { active_ = true; }
    void terminate() override;
    uint64_t modifierFlags() const override { return modifiers; }
    void beep() override { request("beep"); }

    // Applications
    std::optional<Identifier> defaultApplicationForItem(const FileURL& url) override;
    std::optional<Identifier> defaultApplicationForDataOf(const FileURL& url) override;
    std::optional<Opener> defaultOpenerOf(const FileURL& url) const override;
    std::vector<Opener> applicationsForItems(const std::vector<FileURL>& urls) const override;
    std::optional<Identifier> fileManager(const Identifier& configured) override;
    std::optional<Identifier> textEditor(const Identifier& configured) override;
    Result<void> openWithApplication(const std::vector<FileURL>& urls,
                                     const Identifier& application) override;
    Result<void> reveal(const std::vector<FileURL>& urls) override;
    Result<void> showInfo(const std::vector<FileURL>& urls) override;
    // Pasteboard
    void setString(const std::string& text) override;
    // FileTypes
    bool isFilePackageAtPath(const FileURL&) const override { return false; }
    std::string iconNameForItem(const FileURL& url, uint8_t itemType) const override;
    // FileEvents
    std::unique_ptr<FileEventStream> streamCreate(Request request) override;
    void startRecording(Request request) override;
    uint64_t currentEventId() const override;
    // Frontmost
    std::optional<RunningApplication> frontmostApplication() override;
    bool activateRunningApplication(const std::string& bundleIdentifier) override;
    // HotKeys
    Result<void> registerShortcut(const HotKey& hotKey, std::function<void()> action) override;
    void unregisterShortcut() override;
    // StatusBar
    void showStatusItem(StatusItemContent content) override { statusItem_ = std::move(content); }
    void setStatusMenu(std::vector<StatusItemContent::Entry> menu) override {
        if (statusItem_) statusItem_->menu = std::move(menu);
    }
    void removeStatusItem() override { statusItem_.reset(); }
    // Appearance
    bool isDark() const override { return dark; }
    bool wantsHighContrast() const override { return false; }
    bool wantsLessMotion() const override { return false; }
    double textScale() const override { return 1; }
    Subscription observe(std::function<void()> block) override;
    // Updater
    void start() override {}
    bool sessionInProgress() const override { return updateSession; }
    // DiskAccess
    int openProtectedFile() const override { return diskAccessError; }
    const char* protectedFile() const override { return "/protected"; }
    void openSecurityAndPrivacy() override { request("openSecurityAndPrivacy"); }

  private:
    void request(const char* what, nlohmann::json fields = nlohmann::json::object());

    OwnApplicationDelegate* delegate_ = nullptr;
    bool active_ = false, terminated_ = false;
    App frontmost_{.id = "com.example.Editor", .path = "/usr/bin/editor", .name = "Editor"};
    std::vector<nlohmann::json> requests_;
    std::optional<HotKey> hotKey_;
    std::function<void()> hotKeyAction_;
    std::optional<StatusItemContent> statusItem_;
    Signal<> appearanceChanged_;
};
