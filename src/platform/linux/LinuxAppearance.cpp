#include "platform/linux/LinuxAppearance.h"

#include <QApplication>
#include <QEvent>
#include <QFontInfo>
#include <QPalette>
#include <QWidget>
#include <cmath>

namespace {

/// Desktops set their fonts to 10 or 11 points; who takes these or larger ones wants large text.
constexpr double kUsualPoints = 11, kLargePoints = 12.5;

double scaleOfFont() {
    const double points = QFontInfo(QApplication::font()).pointSizeF();
    return points >= kLargePoints ? points / kUsualPoints : 1;
}

/// Under X11 desktops turn the text scale into a resolution, by which Qt has scaled all there is.
bool isInResolution(double scale) {
    const double times = qGuiApp->devicePixelRatio() / scale;
    return QGuiApplication::platformName() == QLatin1String("xcb") && times > 0.99 &&
           std::abs(times - std::round(times)) < 0.01;
}

}  // namespace

LinuxAppearance::LinuxAppearance() : portal_([this] { settle_.start(0); }) {
    settle_.setSingleShot(true);
    connect(&settle_, &QTimer::timeout, this, [this] {
        changed_.emit();
        QEvent changed(QEvent::ThemeChange);
        for (QWidget* const window : QApplication::topLevelWidgets())
            QCoreApplication::sendEvent(window, &changed);
    });
    qGuiApp->installEventFilter(this);
}

bool LinuxAppearance::isDark() const {
    return portal_.values().prefersDark.value_or(
        QGuiApplication::palette().color(QPalette::Window).lightness() < 128);
}

bool LinuxAppearance::wantsHighContrast() const {
    const QPalette colours = QGuiApplication::palette();
    const QRgb ground = colours.color(QPalette::Window).rgb() & RGB_MASK;
    const QRgb text = colours.color(QPalette::WindowText).rgb() & RGB_MASK;
    // Black on white or white on black is what desktops without such a setting have for it.
    const bool isPure = (ground ^ text) == RGB_MASK && (ground == 0 || text == 0);
    return isPure || portal_.wantsContrast();
}

bool LinuxAppearance::wantsLessMotion() const {
    return portal_.wantsLessMotion();
}

double LinuxAppearance::textScale() const {
    const double scale = portal_.values().textScale;
    if (scale != 1) return isInResolution(scale) ? 1 : scale;
    return scaleOfFont();
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
