#include "platform/linux/PortalSettings.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QWidget>

#include "platform/linux/LinuxAppearance.h"
#include "platform/linux/display/DisplayTest.h"

namespace {

using Group = QMap<QString, QVariant>;
using Groups = QMap<QString, Group>;
constexpr auto kName = "org.freedesktop.portal.Desktop";
constexpr auto kPath = "/org/freedesktop/portal/desktop";
constexpr auto kInterface = "org.freedesktop.portal.Settings";

/// A desktop's settings.
class Portal : public QDBusVirtualObject {
  public:
    explicit Portal(Groups groups) : groups_(std::move(groups)) {
        qDBusRegisterMetaType<Groups>();
        bus_.registerVirtualObject(kPath, this);
        bus_.registerService(kName);
    }
    ~Portal() override {
        bus_.unregisterService(kName);
        bus_.unregisterObject(kPath);
    }
    void change(const char* group, const char* key, const QVariant& value) {
        auto signal = QDBusMessage::createSignal(kPath, kInterface, "SettingChanged");
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        bus_.send(signal);
    }
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        if (message.member() != "ReadAll") return false;
        bus.send(message.createReply(QVariant::fromValue(groups_)));
        return true;
    }

  private:
    QDBusConnection bus_ = QDBusConnection::sessionBus();
    const Groups groups_;
};

struct Window : QWidget {
    int themeChanges = 0;
    bool event(QEvent* event) override {
        if (event->type() == QEvent::ThemeChange) themeChanges++;
        return QWidget::event(event);
    }
};

class PortalSettingsTest : public DisplayTest {};

struct Setting {
    const char *group, *key;
    QVariant value;
};
constexpr auto kGnome = "org.gnome.desktop.interface";
constexpr auto kGnomeAccess = "org.gnome.desktop.a11y.interface";
constexpr auto kKde = "org.kde.kdeglobals.KDE";

}  // namespace

TEST_F(PortalSettingsTest, LooksFollowWhatThePortalSaysAndEachWindowIsTold) {
    Portal portal({{"org.freedesktop.appearance", {{"color-scheme", 1U}, {"contrast", 1U}}},
                   {"org.gnome.desktop.interface",
                    {{"text-scaling-factor", 1.3}, {"enable-animations", false}}}});
    LinuxAppearance appearance;
    Window window;
    int changes = 0;
    const Subscription subscription = appearance.observe([&] { changes++; });
    const auto waitForChange = [&](int number) {
        for (int i = 0; i < 100 && changes < number; ++i) pass(20);
        EXPECT_EQ(changes, number);
    };
    waitForChange(1);
    EXPECT_TRUE(appearance.isDark());
    EXPECT_TRUE(appearance.wantsHighContrast());
    EXPECT_TRUE(appearance.wantsLessMotion());
    EXPECT_EQ(appearance.textScale(), 1.3);
    EXPECT_EQ(window.themeChanges, 1);

    portal.change("org.freedesktop.appearance", "contrast", 0U);
    waitForChange(2);
    EXPECT_FALSE(appearance.wantsHighContrast());
    portal.change("org.gnome.desktop.interface", "gtk-theme", "HighContrastInverse");
    waitForChange(3);
    EXPECT_TRUE(appearance.wantsHighContrast());
    portal.change("org.gnome.desktop.interface", "text-scaling-factor", 40.0);
    waitForChange(4);
    EXPECT_EQ(appearance.textScale(), 2.5);
    portal.change("org.gnome.desktop.interface", "text-scaling-factor", "large");
    waitForChange(5);
    EXPECT_EQ(appearance.textScale(), 1);
    portal.change("org.freedesktop.appearance", "color-scheme", 0U);  // no preference
    waitForChange(6);
    EXPECT_FALSE(appearance.isDark());
    portal.change("org.gnome.desktop.interface", "cursor-theme", "Adwaita");
    pass(100);
    EXPECT_EQ(changes, 6);
    EXPECT_EQ(window.themeChanges, 6);
}

TEST_F(PortalSettingsTest, OfSeveralSettingsForTheSameEachCountsInEveryOrder) {
    Portal portal({});
    LinuxAppearance appearance;
    int changes = 0;
    const Subscription subscription = appearance.observe([&] { changes++; });
    for (int i = 0; i < 100 && changes < 1; ++i) pass(20);
    const auto change = [&](const Setting& setting) {
        const int before = changes;
        portal.change(setting.group, setting.key, setting.value);
        for (int i = 0; i < 100 && changes == before; ++i) pass(20);
    };
    const struct {
        Setting wanting, other;
        QVariant back;
        bool (LinuxAppearance::*wants)() const;
    } cases[] = {
        {{kGnome, "gtk-theme", "HighContrast"},
         {kGnomeAccess, "high-contrast", false},
         "Adwaita",
         &LinuxAppearance::wantsHighContrast},
        {{kGnomeAccess, "high-contrast", true},
         {kGnome, "gtk-theme", "Adwaita"},
         false,
         &LinuxAppearance::wantsHighContrast},
        {{kGnome, "enable-animations", false},
         {kKde, "AnimationDurationFactor", "1"},
         true,
         &LinuxAppearance::wantsLessMotion},
        {{kKde, "AnimationDurationFactor", "0"},
         {kGnome, "enable-animations", true},
         "1",
         &LinuxAppearance::wantsLessMotion},
    };
    for (const auto& each : cases) {
        change(each.wanting);
        change(each.other);
        EXPECT_TRUE((appearance.*each.wants)()) << each.wanting.key << " first";
        change(each.wanting);
        EXPECT_TRUE((appearance.*each.wants)()) << each.wanting.key << " last";
        change({each.wanting.group, each.wanting.key, each.back});
        EXPECT_FALSE((appearance.*each.wants)()) << each.wanting.key;
    }
}
