#include "platform/linux/LinuxStatusBar.h"

#include <QAction>
#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QMenu>
#include <QPixmap>
#include <QThread>
#include <mutex>

#include "platform/linux/display/DisplayTest.h"

namespace {

constexpr auto kBar = "org.kde.StatusNotifierWatcher";

/// A desktop's bar: notes which items come to it. On a thread of its own, since who asks it waits.
class Bar : public QDBusVirtualObject {
  public:
    explicit Bar(QDBusConnection bus) : bus_(std::move(bus)) {
        moveToThread(&thread_);
        thread_.start();
        bus_.registerVirtualObject("/StatusNotifierWatcher", this);
        bus_.registerService(kBar);
    }
    ~Bar() override {
        bus_.unregisterService(kBar);
        bus_.unregisterObject("/StatusNotifierWatcher");
        thread_.quit();
        thread_.wait();
    }
    QStringList items() const {
        std::lock_guard lock(mutex_);
        return items_;
    }
    QString introspect(const QString&) const override {
        return "<interface name='org.kde.StatusNotifierWatcher'>"
               "<method name='RegisterStatusNotifierItem'><arg type='s' direction='in'/></method>"
               "<property name='IsStatusNotifierHostRegistered' type='b' access='read'/>"
               "<property name='ProtocolVersion' type='i' access='read'/></interface>";
    }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        if (message.member() == "Introspect") return false;
        if (message.member() == "RegisterStatusNotifierItem") {
            std::lock_guard lock(mutex_);
            items_ << message.service() + "|" + message.arguments().at(0).toString();
        }
        if (message.member() == "Get")
            bus.send(message.createReply(QVariant::fromValue(QDBusVariant(true))));
        else
            bus.send(message.createReply());
        return true;
    }

  private:
    QDBusConnection bus_;
    QThread thread_;
    mutable std::mutex mutex_;
    QStringList items_;
};

/// Named in the environment, for a while.
class CurrentDesktop {
  public:
    explicit CurrentDesktop(const char* name) { qputenv(kName, name); }
    ~CurrentDesktop() {
        if (had_)
            qputenv(kName, before_);
        else
            qunsetenv(kName);
    }
    CurrentDesktop(const CurrentDesktop&) = delete;
    CurrentDesktop& operator=(const CurrentDesktop&) = delete;

  private:
    static constexpr auto kName = "XDG_CURRENT_DESKTOP";
    const bool had_ = qEnvironmentVariableIsSet(kName);
    const QByteArray before_ = qgetenv(kName);
};

class LinuxStatusBarTest : public DisplayTest {
  protected:
    static QIcon icon() {
        QPixmap picture(16, 16);
        picture.fill(Qt::red);
        return picture;
    }
};

}  // namespace

TEST_F(LinuxStatusBarTest, TheItemComesToABarThatComesLater) {
    LinuxStatusBar statusBar(icon());
    int clicks = 0;
    statusBar.showStatusItem({.toolTip = "Trovast",
                              .action = [&] { clicks++; },
                              .menu = {{"Show", [] {}}, {"", {}}, {"Quit", [] {}}}});
    pass(100);
    QDBusConnection bus =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("bar"));
    {
        Bar bar(bus);
        ASSERT_TRUE(soon([&] { return !bar.items().isEmpty(); }));
        const QStringList item = bar.items().last().split('|');
        const QString path = item[1].startsWith('/') ? item[1] : "/StatusNotifierItem";
        QDBusMessage click =
            QDBusMessage::createMethodCall(item[0], path, "org.kde.StatusNotifierItem", "Activate");
        click << 1 << 1;
        bus.asyncCall(click);
        EXPECT_TRUE(soon([&] { return clicks == 1; }));
    }
    statusBar.removeStatusItem();
    Bar bar(bus);
    pass(300);
    EXPECT_TRUE(bar.items().isEmpty());
    statusBar.showStatusItem({.toolTip = "Trovast", .action = {}, .menu = {}});
    EXPECT_TRUE(soon([&] { return !bar.items().isEmpty(); }));
}

TEST_F(LinuxStatusBarTest, TheKeysOfTheMenuAreReadInEveryBar) {
    QDBusConnection bus =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("bar"));
    const struct {
        const char *desktop, *title, *shortcut;
    } cases[] = {{"XFCE", "Preferences\u2003Ctrl+,", ""}, {"X:KDE", "Preferences", "Ctrl+,"}};
    for (const auto& each : cases) {
        const CurrentDesktop desktop(each.desktop);
        Bar bar(bus);
        LinuxStatusBar statusBar(icon());
        statusBar.showStatusItem(
            {.toolTip = "Trovast", .action = {}, .menu = {{"Preferences", [] {}, "Ctrl+,"}}});
        const QMenu* menu = nullptr;
        for (const QWidget* widget : QApplication::topLevelWidgets())
            if (const auto* const found = qobject_cast<const QMenu*>(widget)) menu = found;
        ASSERT_TRUE(menu);
        ASSERT_EQ(menu->actions().size(), 1);
        const QAction& entry = *menu->actions().at(0);
        EXPECT_EQ(entry.text(), QString::fromUtf8(each.title));
        EXPECT_EQ(entry.shortcut().toString(), QString::fromUtf8(each.shortcut));
    }
}
