#include "platform/linux/LinuxStatusBar.h"

#include <QAction>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusServiceWatcher>
#include <QMenu>
#include <QSystemTrayIcon>
#include <utility>

#include "platform/linux/X11.h"

namespace {

constexpr auto kBar = "org.kde.StatusNotifierWatcher";
constexpr int kLookAgain = 5000;  // milliseconds
constexpr int kLooks = 36;

bool hasTray() {
    xcb_connection_t* const x = x11::connection();
    if (!x) return false;
    const auto cookie = xcb_get_selection_owner(x, x11::atom(x, "_NET_SYSTEM_TRAY_S0"));
    const x11::Reply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(x, cookie, nullptr), &std::free);
    return reply && reply->owner != XCB_WINDOW_NONE;
}

bool hasBar() {
    const auto bus = QDBusConnection::sessionBus();
    return bus.isConnected() && bus.interface()->isServiceRegistered(QString::fromLatin1(kBar));
}

/// A bar draws the menu itself. Those of other desktops draw no keys, or not all: a comma and the
/// space bar have other names there.
bool isBarOfQt() {
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(':');
    return desktops.contains(QStringLiteral("KDE")) || desktops.contains(QStringLiteral("LXQt"));
}

}  // namespace

LinuxStatusBar::LinuxStatusBar(QIcon icon) : icon_(std::move(icon)) {
    QObject::connect(&look_, &QTimer::timeout, [this] { makeItemWhereThereIsABar(); });
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
    looks_ = kLooks;
    item_.reset();
    makeItemWhereThereIsABar();
}

void LinuxStatusBar::removeStatusItem() {
    isShown_ = false;
    look_.stop();
    item_.reset();
    menu_.reset();
    content_ = {};
}

void LinuxStatusBar::makeItemWhereThereIsABar() {
    // Qt decides at its first item of all between bus and tray. One that is made before either is
    // there would keep the program out of a bar that comes later.
    if (hasBar() || hasTray())
        makeItem();
    else if (looks_-- > 0)
        look_.start(kLookAgain);
    else
        look_.stop();
}

void LinuxStatusBar::makeItem() {
    look_.stop();
    item_.reset();  // before its menu
    menu_ = std::make_unique<QMenu>();
    fillMenu();
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

void LinuxStatusBar::setStatusMenu(std::vector<StatusItemContent::Entry> menu) {
    content_.menu = std::move(menu);
    if (menu_) fillMenu();
}

void LinuxStatusBar::fillMenu() {
    menu_->clear();
    const bool isDrawnByBar = hasBar(), drawsKeys = isDrawnByBar && isBarOfQt();
    for (const StatusItemContent::Entry& entry : content_.menu) {
        if (entry.title.empty()) {
            menu_->addSeparator();
            continue;
        }
        QString title = QString::fromStdString(entry.title);
        title.replace('&', QStringLiteral("&&"));  // one would mark a letter
        QString keys = QString::fromStdString(entry.keys);
        if (!keys.isEmpty() && !drawsKeys)
            title += (isDrawnByBar ? QStringLiteral("\u2003") : QStringLiteral("\t")) + keys;
        QAction* const action = menu_->addAction(title);
        if (drawsKeys)
            action->setShortcut(
                QKeySequence(keys.replace(QStringLiteral("Super"), QStringLiteral("Meta"))));
        QObject::connect(action, &QAction::triggered, menu_.get(), [run = entry.action] {
            if (run) run();
        });
    }
}
