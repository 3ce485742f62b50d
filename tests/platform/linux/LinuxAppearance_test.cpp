#include "platform/linux/LinuxAppearance.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QFont>
#include <QPalette>

TEST(LinuxAppearance, FollowsTheDesktopsPaletteAndFont) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    int count = 1;
    char name[] = "test";
    char* values[] = {name, nullptr};
    const QApplication application(count, values);
    LinuxAppearance appearance;
    int changes = 0;
    Subscription subscription = appearance.observe([&] { changes++; });
    const auto use = [&](const QColor& ground) {
        QApplication::setPalette(QPalette(ground));
        QCoreApplication::processEvents();
    };
    use(QColor(30, 30, 30));
    EXPECT_TRUE(appearance.isDark());
    EXPECT_EQ(changes, 1);  // however many events it came as
    use(Qt::white);
    EXPECT_FALSE(appearance.isDark());
    EXPECT_EQ(changes, 2);
    QFont font = QApplication::font();
    font.setPixelSize(31);
    QApplication::setFont(font);
    QCoreApplication::processEvents();
    EXPECT_EQ(changes, 3);
    subscription.cancel();
    use(Qt::black);
    EXPECT_EQ(changes, 3);
}
