#include "views/InfoBar.h"

#include <QFontMetrics>
#include <QPainter>
#include <QTimerEvent>

#include "views/MarkedText.h"
#include "views/Theme.h"

namespace {
constexpr int kInset = 15;
constexpr int kRing = 10;
constexpr int kFrame = 40;  // milliseconds
constexpr int kStep = 18;   // degrees a frame: once around in 0.8 s
}  // namespace

InfoBar::InfoBar() {
    setFixedHeight(kHeight);
    setAccessibleName(QStringLiteral("Status"));
}

void InfoBar::setTheme(const Theme* theme) {
    theme_ = theme;
    update();
}

void InfoBar::setText(const std::string& text) {
    const QString shown = plainText(text, theme_ && theme_->hasControlPictures);
    if (shown == text_) return;
    text_ = shown;
    setAccessibleDescription(text_);
    update();
}

void InfoBar::setToolTip(const std::string& text) {
    QWidget::setToolTip(plainToolTip(text));
}

void InfoBar::setErrorLook(bool isError) {
    isError_ = isError;
    update();
}

void InfoBar::setBusy(bool busy) {
    if (busy == busy_) return;
    busy_ = busy;
    turnWhileSeen();
    update();
}

void InfoBar::turnWhileSeen() {
    if (busy_ && isVisible())
        turning_.start(kFrame, this);
    else
        turning_.stop();
}

QRect InfoBar::ringPlace() const {
    return {width() - kInset - kRing, (height() - kRing) / 2 - 1, kRing, kRing};
}

void InfoBar::timerEvent(QTimerEvent* event) {
    if (event->timerId() != turning_.timerId()) return;
    turn_ = (turn_ + kStep) % 360;
    update(ringPlace().adjusted(-2, -2, 2, 2));
}

void InfoBar::paintEvent(QPaintEvent*) {
    if (!theme_) return;
    QPainter painter(this);
    painter.setFont(theme_->info13);
    painter.setPen(isError_ ? theme_->error : theme_->info);
    QRect place(kInset, -2, width() - 2 * kInset, height());
    if (busy_) place.setRight(ringPlace().left() - kInset / 2);
    const QFontMetrics metrics(theme_->info13);
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     metrics.elidedText(text_, Qt::ElideMiddle, place.width()));
    if (!busy_) return;
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF ring = QRectF(ringPlace()).adjusted(1, 1, -1, -1);
    QColor track = theme_->accent;
    track.setAlphaF(0.25F);
    painter.setPen(QPen(track, 1.6));
    painter.drawEllipse(ring);
    painter.setPen(QPen(theme_->accent, 1.6, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(ring, (90 - turn_) * 16, -100 * 16);
}
