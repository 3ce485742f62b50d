#include "views/Panel.h"

#include <QBitmap>
#include <QCloseEvent>
#include <QMouseEvent>
#include <QPainter>
#include <utility>

namespace {
constexpr double kRadius = 10;
constexpr qint64 kComesUp = 500;  // milliseconds: so long a window manager may take to place it
constexpr int kTitleBar = 64;     // higher is none
}  // namespace

Panel::Panel() : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint) {
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(QStringLiteral("Trovast"));
    setObjectName(QStringLiteral("searchWindow"));
}

void Panel::setTheme(const Theme* theme) {
    theme_ = theme;
    update();
}

void Panel::setComposited(bool composited) {
    composited_ = composited;
    updateMask();
}

QMargins Panel::shadowMargins() const {
    if (!composited_) return {};
    return {Shadow::kSide, Shadow::kTop, Shadow::kSide, Shadow::kBottom};
}

void Panel::setSheetSize(QSize size) {
    if (size == sheetSize_) return;
    sheetSize_ = size;
    updateMask();
    update();
}

QRect Panel::sheet() const {
    const QMargins shadow = shadowMargins();
    return {QPoint(shadow.left(), shadow.top()), sheetSize_};
}

void Panel::letClicksThrough(const WindowSystem& system) {
    windowSystem_ = &system;
    if (!system.takeClicksIn || !isVisible()) return;
    const double scale = devicePixelRatioF();
    const QRect part = sheet();
    // Where there is no shadow, the mask does it.
    system.takeClicksIn(winId(), composited_
                                     ? QRectF(part.topLeft() * scale, part.size() * scale).toRect()
                                     : QRect());
}

void Panel::watchScreen() {
    if (watched_ == windowHandle()) return;
    watched_ = windowHandle();
    connect(watched_, &QWindow::screenChanged, this, [this] {
        if (windowSystem_)
            letClicksThrough(*windowSystem_);  // in device pixels, of which it may have more
    });
}

void Panel::updateMask() {
    if (composited_ || sheetSize_.isEmpty()) {
        clearMask();
        return;
    }
    QBitmap shape(sheetSize_);
    shape.clear();
    QPainter painter(&shape);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::color1);
    painter.drawRoundedRect(sheet(), kRadius, kRadius);
    painter.end();
    setMask(shape);
}

void Panel::paintEvent(QPaintEvent*) {
    if (!theme_) return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF sheet(this->sheet());
    if (composited_)
        shadow_.draw(painter, this->sheet(), devicePixelRatioF(), theme_->dark);
    else
        painter.fillRect(rect(), theme_->background);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme_->background);
    painter.drawRoundedRect(sheet, kRadius, kRadius);
    // A hair line of one device pixel would vanish at scale 2: half a logical pixel inward.
    painter.setPen(QPen(theme_->border, kBorder));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(sheet.adjusted(0.5, 0.5, -0.5, -0.5), kRadius - 0.5, kRadius - 0.5);
}

void Panel::mousePressEvent(QMouseEvent* event) {
    // There is no title bar: any place without a meaning of its own moves the window.
    if (event->button() == Qt::LeftButton && windowHandle() &&
        sheet().contains(event->position().toPoint())) {
        asked_.reset();
        if (events_.dragBegan) events_.dragBegan();
        windowHandle()->startSystemMove();
    }
}

void Panel::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    asked_ = pos();
    sinceShown_.start();
    watchScreen();
}

bool Panel::isPutBack(const QMoveEvent& event) {
    if (!asked_) return false;
    if (!event.spontaneous()) {
        asked_ = pos();
        return false;
    }
    const int away = (pos() - *asked_).manhattanLength();
    if (away == 0) return false;
    const QPoint asked = *std::exchange(asked_, std::nullopt);
    if (away > kTitleBar || sinceShown_.elapsed() > kComesUp) return false;
    move(asked);
    return true;
}

void Panel::moveEvent(QMoveEvent* event) {
    QWidget::moveEvent(event);
    // Some window managers make room for a title bar that we have not. They are asked once more.
    if (!isPutBack(*event) && events_.moved) events_.moved();
}

void Panel::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    switch (event->type()) {
        case QEvent::ActivationChange:
            if (events_.activationChanged) events_.activationChanged(isActiveWindow());
            break;
        case QEvent::PaletteChange:
        case QEvent::ApplicationPaletteChange:
        case QEvent::FontChange:
        case QEvent::ThemeChange:
        case QEvent::StyleChange:
            if (events_.lookChanged) events_.lookChanged();
            break;
        default:
            break;
    }
}

void Panel::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (events_.closeAsked) events_.closeAsked();
}
