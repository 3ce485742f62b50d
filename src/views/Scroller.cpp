#include "views/Scroller.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "views/Theme.h"

namespace {
constexpr double kInset = 2, kThin = 3, kThick = 6, kShortest = 28;
}

Scroller::Scroller(QWidget* parent, std::function<void(double)> moved)
    : QWidget(parent), moved_(std::move(moved)) {
    setCursor(Qt::ArrowCursor);
}

void Scroller::setTheme(const Theme* theme) {
    theme_ = theme;
    update();
}

void Scroller::setRange(double content, double shown, double offset) {
    content_ = content;
    shown_ = shown;
    offset_ = offset;
    update();
}

QRectF Scroller::thumb() const {
    if (content_ <= shown_ || content_ <= 0) return {};
    const double room = height() - 2 * kInset;
    const double length = std::min(room, std::max(kShortest, room * shown_ / content_));
    const double top = kInset + (room - length) * offset_ / (content_ - shown_);
    const double thickness = hovered_ ? kThick : kThin;
    const double left = isRightToLeft() ? kInset : width() - kInset - thickness;
    return {left, top, thickness, length};
}

void Scroller::paintEvent(QPaintEvent*) {
    const QRectF place = thumb();
    if (!theme_ || place.isEmpty()) return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme_->scroller);
    painter.drawRoundedRect(place, place.width() / 2, place.width() / 2);
}

void Scroller::mousePressEvent(QMouseEvent* event) {
    const QRectF place = thumb();
    const double y = event->position().y();
    // Beside the thumb: it jumps there.
    grip_ = y >= place.top() && y <= place.bottom() ? y - place.top() : place.height() / 2;
    mouseMoveEvent(event);
}

void Scroller::mouseMoveEvent(QMouseEvent* event) {
    if (!(event->buttons() & Qt::LeftButton)) return;
    const double room = height() - 2 * kInset - thumb().height();
    if (room <= 0) return;
    const double top = std::clamp(event->position().y() - grip_ - kInset, 0.0, room);
    moved_(top / room * (content_ - shown_));
}

void Scroller::enterEvent(QEnterEvent*) {
    hovered_ = true;
    update();
}

void Scroller::leaveEvent(QEvent*) {
    hovered_ = false;
    update();
}
