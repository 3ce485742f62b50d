#include "platform/linux/LinuxStatusBar.h"

#include <QAction>
#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QMenu>
#include <QSystemTrayIcon>
#include <utility>

namespace {
constexpr auto kBar = "org.kde.StatusNotifierWatcher";
}

LinuxStatusBar::LinuxStatusBar(QIcon icon) : icon_(std::move(icon)) {
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return;
    bars_ = std::make_unique<QDBusServiceWatcher>(QString::fromLatin1(kBar), bus,
                                                  QDBusServiceWatcher::WatchForRegistration);
    QObject::connect(bars_.get(), &QDBusServiceWatcher::serviceRegistered, [this] {
        if (isShown_) makeItem();
    });
}

LinuxStatusBar::~LinuxStatusBar() = default;

void LinuxStatusBar::showStatusItem(StatusItemContent content) {
    content_ = std::move(content);
    isShown_ = true;
    makeItem();
}

void LinuxStatusBar::removeStatusItem() {
    isShown_ = false;
    item_.reset();
    menu_.reset();
    content_ = {};
}

void LinuxStatusBar::makeItem() {
    item_.reset();  // before its menu
    menu_ = std::make_unique<QMenu>();
    for (const StatusItemContent::Entry& entry : content_.menu) {
        if (entry.title.empty()) {
            menu_->addSeparator();
            continue;
        }
        // One ampersand would mark a letter.
        const QString title =
            QString::fromStdString(entry.title).replace('&', QStringLiteral("&&"));
        QObject::connect(menu_->addAction(title), &QAction::triggered, menu_.get(),
                         [action = entry.action] {
                             if (action) action();
                         });
    }
    item_ = std::make_unique<QSystemTrayIcon>(icon_);
    item_->setToolTip(QString::fromStdString(content_.toolTip));
    if (!content_.menu.empty()) item_->setContextMenu(menu_.get());
    QObject::connect(
        item_.get(), &QSystemTrayIcon::activated, [this](QSystemTrayIcon::ActivationReason reason) {
            const bool isClick =
                reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::MiddleClick;
            if (isClick && content_.action) content_.action();
        });
    item_->show();
}
