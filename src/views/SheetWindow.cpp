#include "views/SheetWindow.h"

#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QScreen>
#include <QWindow>

namespace {

/// That of the window with the keyboard, or of ours that had it a moment ago; else the pointer's.
const QScreen* screenOfUser() {
    if (const QWindow* const focused = QGuiApplication::focusWindow()) return focused->screen();
    const QScreen* const atCursor = QGuiApplication::screenAt(QCursor::pos());
    return atCursor ? atCursor : QGuiApplication::primaryScreen();
}

}  // namespace

SheetWindow::SheetWindow(const WindowSystem& system, int padding)
    : system_(system), padding_(padding), column_(new QVBoxLayout(this)) {
    column_->setSpacing(0);
    column_->setSizeConstraint(QLayout::SetNoConstraint);
    theme_ = Theme::make(Theme::kOwnHue, system_.lookNow(), QApplication::font());
    setTheme(&theme_);
    setEvents({.closeAsked = [this] { closeAsked(); }, .lookChanged = [this] { renewTheme(); }});
}

void SheetWindow::renewTheme() {
    Theme theme = Theme::make(Theme::kOwnHue, system_.lookNow(), QApplication::font());
    keepsOldSizes_ = isVisible() && theme.zoom != theme_.zoom;
    if (keepsOldSizes_) theme.takeSizesOf(theme_);
    theme_ = theme;
    setTheme(&theme_);
    themeChanged();
    fit();
}

void SheetWindow::hideEvent(QHideEvent* event) {
    Panel::hideEvent(event);
    if (keepsOldSizes_) renewTheme();
}

void SheetWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        closeAsked();
    else
        Panel::keyPressEvent(event);
}

QPoint SheetWindow::cornerFor(QSize sheet) const {
    const QRect screen = screenOfUser()->availableGeometry();
    return {screen.x() + (screen.width() - sheet.width()) / 2,
            screen.y() + std::max(0, (screen.height() - sheet.height()) * 2 / 5)};
}

QRect SheetWindow::place() const {
    const QMargins shadow = shadowMargins();
    const QSize sheet = sizeHint().shrunkBy(shadow);
    return QRect(cornerFor(sheet), sheet).marginsAdded(shadow);
}

void SheetWindow::fit() {
    const QMargins shadow = shadowMargins();
    const int padding = theme_.scaled(padding_);
    column_->setContentsMargins(shadow + QMargins(padding, padding, padding, padding));
    column_->activate();
    const QSize wanted = sizeHint();
    setFixedSize(wanted);
    setSheetSize(wanted.shrunkBy(shadow));
    letClicksThrough(system_);
}

void SheetWindow::showCentred(Keyboard keyboard) {
    setAttribute(Qt::WA_ShowWithoutActivating, keyboard == Keyboard::left);
    if (!isVisible()) {
        setComposited(system_.isComposited && system_.isComposited());
        fit();
        move(place().topLeft());
        if (system_.prepare) {
            const QMargins shadow = (QMarginsF(shadowMargins()) * devicePixelRatioF()).toMargins();
            system_.prepare(winId(), shadow,
                            shadow.isNull() ? theme_.background : QColor(Qt::transparent));
        }
        show();
    }
    fit();
    raise();
    if (keyboard == Keyboard::left) return;
    activateWindow();
    if (system_.activate) system_.activate(winId());
}
