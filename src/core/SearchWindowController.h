#pragma once
#include <ctime>
#include <functional>
#include <optional>
#include <string>

#include "core/WindowPlace.h"
#include "platform/OwnApplication.h"
#include "screen/WindowView.h"
#include "util/Observable.h"

class FrontmostApplication;
class HidingGuard;
class PreviewController;
class SearchFieldController;
class Updater;

/// How the one window comes and goes. The search text stays: opening again shows what closing left.
/// Owner:   AppDelegate. Threads: main.
class SearchWindowController : public WindowViewDelegate, public OwnApplicationDelegate {
  public:
    struct Parts {
        WindowView& window;
        OwnApplication& application;
        SearchFieldController& field;
        FrontmostApplication& frontmost;
        HidingGuard& guard;
        PreviewController& preview;
        const Updater& updater;
    };
    explicit SearchWindowController(const Parts& parts);
    ~SearchWindowController() override;

    void showMainWindow();
    void hideMainWindow() { closeWindowAndHideApplication(Hide::yes); }
    /// The hot key, the status item, a second start: shows, brings to the front, or hides.
    void toggleMainWindow();
    enum class Hide { no, yes };
    /// Gives the keyboard back to the application that had it.
    void closeWindowAndHideApplication(Hide hide);
    /// The same to another application, or to none.
    void closeWindowAndHideApplication(
        Hide hide, const std::optional<std::string>& frontmostApplicationBundleId);
    bool isMainWindowVisible() const { return parts_.window.isVisible(); }
    /// Tells each time the window comes or goes.
    Signal<bool>& visibilityChanged() { return visibilityChanged_; }
    /// Tells each time another program takes the keyboard.
    Signal<>& keyboardLost() { return keyboardLost_; }

    /// Called before the window comes or goes: what stands beside it gives way.
    void setClosedWithWindow(std::function<void()> close) { closedWithWindow_ = std::move(close); }

    /// As the setting resizableSearchWindow has it.
    void setUpResizing();
    void restoreWindowPosition() { place_.restoreWindowPosition(); }
    void persistWindowPosition() { place_.persistWindowPosition(); }
    /// When the window last got the keyboard.
    std::time_t becameFirstResponder() const { return becameFirstResponder_; }

    // WindowViewDelegate
    void windowDidBecomeKey() override;
    void windowDidMove() override;
    void windowDidResize() override;
    void windowWillClose() override;
    /// The window stays when another program gets the keyboard, or no longer.
    void stickyButtonClicked() override;

    // OwnApplicationDelegate
    void applicationWillResignActive() override;
    void applicationDidHide() override;
    void applicationDidChangeScreenParameters() override;

  private:
    void updateStickyButtonImage();

    const Parts parts_;
    WindowPlace place_;
    std::function<void()> closedWithWindow_;
    std::time_t becameFirstResponder_ = 0;
    Signal<bool> visibilityChanged_;
    Signal<> keyboardLost_;
};
