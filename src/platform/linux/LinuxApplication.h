#pragma once
#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <cstdint>
#include <functional>
#include <vector>

#include "platform/OwnApplication.h"

/// The program as Qt sees it. Windows that belong to it, such as its alerts and menus, do not take
/// the keyboard away from it.
/// Owner:   main, after QApplication is made. Threads: main.
class LinuxApplication : public QObject, public OwnApplication {
  public:
    /// activateWindow brings a window of ours to the front, with the keyboard; may be empty.
    explicit LinuxApplication(std::function<void(uintptr_t window)> activateWindow = {});

    void setDelegate(OwnApplicationDelegate* delegate) override { delegate_ = delegate; }
    bool isActive() const override;
    void activateIgnoringOtherApps() override;
    void hide() override;
    void unhide() override;
    void terminate() override;
    uint64_t modifierFlags() const override;
    void beep() override;

    /// Each window of ours is brought to the front through this, so that the program counts as
    /// active before the desktop has agreed.
    void activateWindow(uintptr_t window);

  private:
    void stateChanged(Qt::ApplicationState state);
    void tellOfLostKeyboard();
    void watchScreen(const QScreen* screen);
    bool hasAskedForKeyboard() const;

    const std::function<void(uintptr_t)> activateWindow_;
    OwnApplicationDelegate* delegate_ = nullptr;
    QElapsedTimer asked_;  // since the keyboard was asked for
    bool wasActive_ = false;
    QTimer lost_, screens_;
    std::vector<QPointer<QWidget>> hidden_;
};
