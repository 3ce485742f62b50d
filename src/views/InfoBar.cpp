#include "views/InfoBar.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>
#include <QStyle>
#include <QTimerEvent>
#include <algorithm>
#include <cmath>

#include "views/MarkedText.h"
#include "views/Theme.h"

namespace {
constexpr int kInset = 15;
constexpr int kRing = 10;
constexpr int kButtonsRight = 12, kBeforeButtons = 8;
constexpr int kBeforeRing = 200;  // milliseconds: what is shorter needs no ring
constexpr int kFrame = 40;        // milliseconds
constexpr int kStep = 18;         // degrees a frame: once around in 0.8 s
constexpr double kMarqueeStep = 1.6, kMarqueeGap = 60;
constexpr int kMarqueeRest = 40;  // frames in which its beginning can be read
}  // namespace

InfoBar::InfoBar() : indicators_(new IndicatorRow(this, [this] { layOut(); })) {
    setAccessibleName(QStringLiteral("Status"));
}

void InfoBar::setTheme(const Theme* theme) {
    theme_ = theme;
    makePieces();
    indicators_->setTheme(theme);
    moveWhileSeen();
    update();
}

void InfoBar::setText(const std::string& text) {
    const QString shown = plainText(text, theme_ && theme_->hasControlPictures);
    if (shown == text_) return;
    text_ = shown;
    tellReaders();
    update();
}

void InfoBar::setToolTip(const std::string& text) {
    ownToolTip_ = plainToolTip(text);
    showToolTip();
}

void InfoBar::setFreshness(const std::string& words, const std::string& toolTip) {
    const QString shown = plainText(words, false);
    if (shown != freshness_) {
        freshness_ = shown;
        tellReaders();
    }
    freshnessToolTip_ = plainToolTip(toolTip);
    showToolTip();
    update();
}

void InfoBar::tellReaders() {
    QString words = marquee_ ? plainText(plainText(*marquee_)) : text_;
    if (!marquee_ && !freshness_.isEmpty() && !isScanning_)
        words += QStringLiteral(", ") + freshness_;
    setAccessibleName(words.isEmpty() ? QStringLiteral("Status") : words);
}

void InfoBar::showToolTip() {
    QWidget::setToolTip(ownToolTip_.isEmpty() ? freshnessToolTip_ : ownToolTip_);
}

int InfoBar::freshnessWidth() const {
    if (!theme_ || freshness_.isEmpty()) return 0;
    return QFontMetrics(theme_->info13).horizontalAdvance(freshness_) + kInset;
}

void InfoBar::setErrorLook(bool isError) {
    isError_ = isError;
    update();
}

void InfoBar::setScanning(bool scanning) {
    const bool wasBusy = isBusy();
    isScanning_ = scanning;
    busyChanged(wasBusy);
}

void InfoBar::setSearching(bool searching) {
    const bool wasBusy = isBusy();
    isSearching_ = searching;
    busyChanged(wasBusy);
}

void InfoBar::busyChanged(bool wasBusy) {
    if (isBusy() == wasBusy) return;
    if (isBusy()) {
        beforeRing_.start(kBeforeRing, this);
        return;
    }
    beforeRing_.stop();
    hasRing_ = false;
    moveWhileSeen();
    update();
}

void InfoBar::setMarquee(const std::optional<StyledText>& text) {
    if (text == marquee_) return;
    marquee_ = text;
    tellReaders();
    marqueeOffset_ = 0;
    marqueeRest_ = kMarqueeRest;
    makePieces();
    moveWhileSeen();
    update();
}

void InfoBar::makePieces() {
    pieces_.clear();
    marqueeWidth_ = 0;
    if (!marquee_ || !theme_) return;
    QFont strong = theme_->info13;
    strong.setWeight(QFont::Bold);
    QFont token = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    token.setPixelSize(strong.pixelSize());
    token.setWeight(QFont::Bold);
    for (const StyledSpan& span : *marquee_) {
        using Look = StyledSpan::Look;
        const QFont& font = span.look == Look::strong  ? strong
                            : span.look == Look::token ? token
                                                       : theme_->info13;
        const QString text = plainText(span.text, theme_->hasControlPictures);
        const QColor& colour = span.look == Look::token   ? theme_->token
                               : span.look == Look::error ? theme_->error
                                                          : theme_->fieldText;
        pieces_.push_back({text, font, colour, QFontMetricsF(font).horizontalAdvance(text)});
        marqueeWidth_ += pieces_.back().width;
    }
}

void InfoBar::layOut() {
    const int needed = indicators_->neededWidth();
    const double zoom = this->zoom();
    const QRect place =
        QRectF((unitWidth() - kButtonsRight - needed) * zoom, 0, needed * zoom, height()).toRect();
    indicators_->setGeometry(QStyle::visualRect(layoutDirection(), rect(), place));
    moveWhileSeen();
    update();
}

double InfoBar::zoom() const {
    return theme_ ? theme_->zoom : 1;
}

QRect InfoBar::mirrored(const QRect& place) const {
    return QStyle::visualRect(layoutDirection(), {0, 0, unitWidth(), kHeight}, place);
}

QRect InfoBar::inPixels(const QRect& units) const {
    return QRectF(units.topLeft() * zoom(), QSizeF(units.size()) * zoom()).toAlignedRect();
}

Qt::Alignment InfoBar::leading() const {
    return (isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignAbsolute;
}

int InfoBar::rightInset() const {
    const int needed = indicators_->neededWidth();
    return std::max({kInset, inset_, needed > 0 ? needed + kButtonsRight + kBeforeButtons : 0});
}

void InfoBar::setInset(double width) {
    inset_ = int(std::ceil(width));
    moveWhileSeen();
    update();
}

void InfoBar::moveWhileSeen() {
    const bool isTooLong = marquee_ && marqueeWidth_ > textPlace().width();
    if (!isTooLong) marqueeOffset_ = 0;
    if (isVisible() && (hasRing_ || isTooLong) && !(theme_ && theme_->lessMotion)) {
        if (!frames_.isActive()) frames_.start(kFrame, this);
    } else {
        frames_.stop();
    }
}

void InfoBar::timerEvent(QTimerEvent* event) {
    if (event->timerId() == beforeRing_.timerId()) {
        beforeRing_.stop();
        hasRing_ = true;
        moveWhileSeen();
        update();
        return;
    }
    if (event->timerId() != frames_.timerId()) return;
    turn_ = (turn_ + kStep) % 360;
    if (hasRing_) update(inPixels(ringPlace().adjusted(-2, -2, 2, 2)));
    if (!marquee_ || marqueeWidth_ <= textPlace().width()) return;
    if (marqueeRest_ > 0) {
        marqueeRest_--;
        return;
    }
    marqueeOffset_ += kMarqueeStep;
    if (marqueeOffset_ >= marqueeWidth_ + kMarqueeGap) {
        marqueeOffset_ = 0;
        marqueeRest_ = kMarqueeRest;
    }
    update(inPixels(textPlace()));
}

QRect InfoBar::ringPlace() const {
    return mirrored({unitWidth() - rightInset() - kRing, (kHeight - kRing) / 2 - 1, kRing, kRing});
}

QRect InfoBar::textPlace() const {
    const int right = rightInset() + (hasRing_ ? kRing + kInset / 2 : 0);
    const int width = unitWidth() - kInset - right - freshnessWidth();
    return mirrored({kInset, -2, std::max(0, width), kHeight});
}

void InfoBar::paintText(QPainter& painter) const {
    painter.setPen(isError_ ? theme_->error : theme_->info);
    const QFontMetrics metrics(theme_->info13);
    painter.drawText(textPlace(), leading() | Qt::AlignVCenter | Qt::TextSingleLine,
                     metrics.elidedText(text_, Qt::ElideMiddle, textPlace().width()));
    if (freshness_.isEmpty()) return;
    painter.setPen(theme_->info);
    const QRect text = textPlace();
    const int wide = freshnessWidth();
    const bool fromRight = isRightToLeft();
    const QRect place(fromRight ? text.left() - wide : text.right(), text.top(), wide, kHeight);
    painter.drawText(place,
                     (fromRight ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignAbsolute |
                         Qt::AlignVCenter | Qt::TextSingleLine,
                     freshness_);
}

void InfoBar::paintMarquee(QPainter& painter) const {
    const QRect place = textPlace();
    painter.save();
    painter.setClipRect(place);
    const QFontMetricsF metrics(theme_->info13);
    const double baseLine =
        place.top() + (place.height() + metrics.ascent() - metrics.descent()) / 2;
    const bool moves = marqueeWidth_ > place.width() && !theme_->lessMotion;
    // Our messages are English: from the left, but at the end where the window begins.
    const double begin = isRightToLeft() && marqueeWidth_ < place.width()
                             ? place.right() + 1 - marqueeWidth_
                             : place.left();
    for (double x = begin - marqueeOffset_; x < place.right(); x += marqueeWidth_ + kMarqueeGap) {
        double left = x;
        for (const MarqueePiece& piece : pieces_) {
            painter.setFont(piece.font);
            painter.setPen(piece.colour);
            painter.drawText(QPointF(left, baseLine), piece.text);
            left += piece.width;
        }
        if (!moves) break;
    }
    painter.restore();
}

void InfoBar::paintRing(QPainter& painter) const {
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF ring = QRectF(ringPlace()).adjusted(1, 1, -1, -1);
    QColor track = theme_->accent;
    track.setAlphaF(0.25F);
    painter.setPen(QPen(track, 1.6));
    painter.drawEllipse(ring);
    painter.setPen(QPen(theme_->accent, 1.6, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(ring, (90 - turn_) * 16, -100 * 16);
}

void InfoBar::paintEvent(QPaintEvent*) {
    if (!theme_) return;
    QPainter painter(this);
    painter.scale(zoom(), zoom());
    painter.setFont(theme_->info13);
    if (marquee_)
        paintMarquee(painter);
    else
        paintText(painter);
    if (hasRing_) paintRing(painter);
}
