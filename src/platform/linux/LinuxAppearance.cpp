#include "platform/linux/LinuxAppearance.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

LinuxAppearance::LinuxAppearance() {
    settle_.setSingleShot(true);
    connect(&settle_, &QTimer::timeout, this, [this] { changed_.emit(); });
    qGuiApp->installEventFilter(this);
}

bool LinuxAppearance::isDark() const {
    return QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
}

Subscription LinuxAppearance::observe(std::function<void()> block) {
    return changed_.observe(std::move(block));
}

bool LinuxAppearance::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (watched == qGuiApp &&
        (type == QEvent::ApplicationPaletteChange || type == QEvent::ApplicationFontChange))
        settle_.start(0);
    return false;
}
