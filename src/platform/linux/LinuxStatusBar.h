#pragma once
#include <QIcon>
#include <QTimer>
#include <memory>

#include "platform/StatusBar.h"

class QDBusServiceWatcher;
class QMenu;
class QSystemTrayIcon;

/// The status item: over the session bus where a bar listens there, else in an X11 tray.
/// Owner:   main, after QApplication is made. Threads: main.
/// Fails:   silently; when a bar comes later, the item is made anew. A tray of X11 is looked for
///          during the first minutes, in which a session starts.
class LinuxStatusBar : public StatusBar {
  public:
    explicit LinuxStatusBar(QIcon icon);
    ~LinuxStatusBar() override;
    void showStatusItem(StatusItemContent content) override;
    void setStatusMenu(std::vector<StatusItemContent::Entry> menu) override;
    void removeStatusItem() override;

  private:
    void makeItem();
    void fillMenu();
    void makeItemWhereThereIsABar();

    const QIcon icon_;
    StatusItemContent content_;
    bool isShown_ = false;
    std::unique_ptr<QMenu> menu_;
    std::unique_ptr<QSystemTrayIcon> item_;
    std::unique_ptr<QDBusServiceWatcher> bars_;
    QTimer look_;
    int looks_ = 0;  // that are left
};
