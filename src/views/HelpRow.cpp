#include "views/HelpRow.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "views/MarkedText.h"
#include "views/Theme.h"

namespace {

constexpr double kCapHeight = 21, kCapInset = 6.5, kLeastCap = 21, kCapGap = 4, kRadius = 4.5;
constexpr double kStep = 25;                    // of combinations below each other
constexpr int kMargin = 4, kCompactMargin = 2;  // above and below
constexpr int kNameGap = 18;                    // between name and keys

constexpr QLatin1String kOr("or"), kNoKey("no key");

}  // namespace

HelpRow::HelpRow(const HelpLine& line, Look look, const Theme* theme, QWidget* parent)
    : QLabel(parent), theme_(theme), look_(look), capFont_(theme->textFont(12)) {
    setTextFormat(Qt::PlainText);
    setFont(theme->info13);
    setText(plainText(line.name));
    QStringList spoken;
    for (const KeyCaps& caps : line.keys) {
        Combination keys{.caps = {}, .width = -inZoom(kCapGap)};
        for (const std::string& cap : caps) {
            keys.caps.append(plainText(cap));
            keys.width += capWidth(keys.caps.back()) + inZoom(kCapGap);
        }
        spoken.append(keys.caps.join(QLatin1Char('+')));
        if (keys_.empty() || look != Look::compact) keys_.push_back(std::move(keys));
    }
    setAccessibleName(text() + QStringLiteral(": ") +
                      (spoken.isEmpty() ? QString(kNoKey) : spoken.join(QStringLiteral(" or "))));
}

double HelpRow::capWidth(const QString& cap) const {
    const double text = std::ceil(QFontMetricsF(capFont_).horizontalAdvance(cap));
    return std::max(inZoom(kLeastCap), text + 2 * inZoom(kCapInset));
}

double HelpRow::orWidth() const {
    return std::ceil(QFontMetricsF(capFont_).horizontalAdvance(kOr)) + 3 * inZoom(kCapGap);
}

double HelpRow::keysWidth() const {
    if (keys_.empty()) return QFontMetricsF(capFont_).horizontalAdvance(kNoKey);
    double width = double(keys_.size() - 1) * orWidth();
    for (const Combination& keys : keys_) width += keys.width;
    return width;
}

double HelpRow::widestKeys() const {
    double widest = 0;
    for (const Combination& keys : keys_) widest = std::max(widest, keys.width);
    return widest;
}

int HelpRow::naturalWidth() const {
    const double name = QFontMetricsF(font()).horizontalAdvance(text());
    return int(std::ceil(name + inZoom(kNameGap) + keysWidth()));
}

bool HelpRow::isStacked(int width) const {
    return keys_.size() > 1 && naturalWidth() > width;
}

int HelpRow::nameWidth(int width) const {
    const double keys = isStacked(width) ? widestKeys() : keysWidth();
    return std::max(theme_->scaled(60), width - int(std::ceil(inZoom(kNameGap) + keys)));
}

int HelpRow::heightForWidth(int width) const {
    const QRect room(0, 0, nameWidth(width), QWIDGETSIZE_MAX);
    const int name = QFontMetrics(font()).boundingRect(room, Qt::TextWordWrap, text()).height();
    const double more = isStacked(width) ? double(keys_.size() - 1) * inZoom(kStep) : 0;
    const int margin = theme_->scaled(look_ == Look::compact ? kCompactMargin : kMargin);
    return std::max(name, int(inZoom(kCapHeight) + more)) + 2 * margin + 1;
}

void HelpRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    // The texts are in Latin letters; only their places are mirrored.
    painter.setLayoutDirection(Qt::LeftToRight);
    drawName(painter);
    drawKeys(painter);
    if (look_ == Look::ruled)
        painter.fillRect(QRectF(0, height() - 1, width(), 1), theme_->separator);
}

void HelpRow::drawName(QPainter& painter) const {
    const int room = nameWidth(width());
    painter.setFont(font());
    painter.setPen(theme_->fieldText);
    painter.drawText(
        QRect(isRightToLeft() ? width() - room : 0, 0, room, height() - 1),
        (isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter | Qt::TextWordWrap,
        text());
}

void HelpRow::drawKeys(QPainter& painter) const {
    const bool mirrored = isRightToLeft();
    const double middle = (height() - 1) / 2.0;
    painter.setFont(capFont_);
    painter.setPen(theme_->info);
    if (keys_.empty()) {
        painter.drawText(QRectF(0, 0, width(), height() - 1),
                         (mirrored ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter, kNoKey);
        return;
    }
    if (isStacked(width())) {
        double y = middle - double(keys_.size() - 1) * inZoom(kStep) / 2;
        for (const Combination& keys : keys_) {
            drawCombination(painter, keys, mirrored ? 0 : width() - keys.width, y);
            y += inZoom(kStep);
        }
        return;
    }
    double x = mirrored ? 0 : width() - keysWidth();
    for (const Combination& keys : keys_) {
        if (&keys != &keys_.front()) {
            painter.setPen(theme_->info);
            painter.drawText(QRectF(x, 0, orWidth(), height() - 1), Qt::AlignCenter, kOr);
            x += orWidth();
        }
        drawCombination(painter, keys, x, middle);
        x += keys.width;
    }
}

void HelpRow::drawCombination(QPainter& painter, const Combination& keys, double x,
                              double middle) const {
    for (const QString& cap : keys.caps) {
        const double height = inZoom(kCapHeight);
        const QRectF place(x, middle - height / 2, capWidth(cap), height);
        // A key seen from above: its lower edge is thicker.
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme_->border);
        painter.drawRoundedRect(place, kRadius, kRadius);
        painter.setBrush(theme_->otherSelection);
        painter.drawRoundedRect(place.adjusted(1, 1, -1, -2), kRadius - 1, kRadius - 1);
        painter.setPen(theme_->fieldText);
        painter.drawText(place.adjusted(0, 0, 0, -1), Qt::AlignCenter | Qt::TextSingleLine, cap);
        x += place.width() + inZoom(kCapGap);
    }
}
