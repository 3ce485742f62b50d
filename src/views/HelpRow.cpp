#include "views/HelpRow.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "views/MarkedText.h"
#include "views/Theme.h"

namespace {

constexpr double kCapHeight = 21, kCapInset = 6.5, kLeastCap = 21, kCapGap = 4, kRadius = 4.5;
constexpr double kStep = 25;  // of combinations below each other
constexpr int kMargin = 4;    // above and below
constexpr int kNameGap = 18;  // between name and keys

QString orWord() {
    return QStringLiteral("or");
}
QString noKeys() {
    return QStringLiteral("no key");
}

}  // namespace

HelpRow::HelpRow(const HelpLine& line, Rule rule, const Theme* theme, QWidget* parent)
    : QLabel(parent), theme_(theme), rule_(rule), capFont_(theme->info13) {
    capFont_.setPixelSize(12);
    setTextFormat(Qt::PlainText);
    setFont(theme->info13);
    setText(plainText(line.name));
    QStringList spoken;
    for (const KeyCaps& caps : line.keys) {
        Combination keys{.caps = {}, .width = -kCapGap};
        for (const std::string& cap : caps) {
            keys.caps.append(plainText(cap));
            keys.width += capWidth(keys.caps.back()) + kCapGap;
        }
        spoken.append(keys.caps.join(QLatin1Char('+')));
        keys_.push_back(std::move(keys));
    }
    setAccessibleName(text() + QStringLiteral(": ") +
                      (spoken.isEmpty() ? noKeys() : spoken.join(QStringLiteral(" or "))));
}

double HelpRow::capWidth(const QString& cap) const {
    return std::max(kLeastCap,
                    std::ceil(QFontMetricsF(capFont_).horizontalAdvance(cap)) + 2 * kCapInset);
}

double HelpRow::keysWidth() const {
    const QFontMetricsF metrics(capFont_);
    if (keys_.empty()) return metrics.horizontalAdvance(noKeys());
    double width = 0;
    for (const Combination& keys : keys_) width += keys.width;
    const double between = metrics.horizontalAdvance(orWord()) + 2 * kCapGap + 4;
    return width + double(keys_.size() - 1) * between;
}

double HelpRow::widestKeys() const {
    double widest = 0;
    for (const Combination& keys : keys_) widest = std::max(widest, keys.width);
    return keys_.empty() ? keysWidth() : widest;
}

int HelpRow::naturalWidth() const {
    const double name = QFontMetricsF(font()).horizontalAdvance(text());
    return int(std::ceil(name + kNameGap + (keys_.size() > 2 ? widestKeys() : keysWidth())));
}

bool HelpRow::isStacked(int width) const {
    return keys_.size() > 1 && naturalWidth() > width;
}

int HelpRow::nameWidth(int width) const {
    const double keys = isStacked(width) ? widestKeys() : keysWidth();
    return std::max(60, width - kNameGap - int(std::ceil(keys)));
}

int HelpRow::heightForWidth(int width) const {
    const int name = QFontMetrics(font())
                         .boundingRect(0, 0, nameWidth(width), 1000, Qt::TextWordWrap, text())
                         .height();
    const double keys =
        isStacked(width) ? kCapHeight + double(keys_.size() - 1) * kStep : kCapHeight;
    return std::max(name, int(keys)) + 2 * kMargin + 1;
}

void HelpRow::drawCombination(QPainter& painter, const Combination& keys, double x,
                              double middle) const {
    for (const QString& cap : keys.caps) {
        const QRectF place(x, middle - kCapHeight / 2, capWidth(cap), kCapHeight);
        painter.setPen(Qt::NoPen);
        // A key seen from above: its lower edge is thicker.
        painter.setBrush(theme_->border);
        painter.drawRoundedRect(place, kRadius, kRadius);
        painter.setBrush(theme_->otherSelection);
        painter.drawRoundedRect(place.adjusted(1, 1, -1, -2), kRadius - 1, kRadius - 1);
        painter.setPen(theme_->fieldText);
        painter.drawText(place.adjusted(0, 0, 0, -1), Qt::AlignCenter | Qt::TextSingleLine, cap);
        x += place.width() + kCapGap;
    }
}

void HelpRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool mirrored = isRightToLeft();
    const int side = mirrored ? Qt::AlignRight : Qt::AlignLeft;
    const int nameWidth = this->nameWidth(width());
    painter.setFont(font());
    painter.setPen(theme_->fieldText);
    painter.drawText(QRect(mirrored ? width() - nameWidth : 0, 0, nameWidth, height() - 1),
                     side | Qt::AlignVCenter | Qt::TextWordWrap, text());
    if (rule_ == Rule::below) {
        painter.setPen(Qt::NoPen);
        painter.fillRect(QRectF(0, height() - 1, width(), 1), theme_->separator);
    }
    painter.setFont(capFont_);
    const double centre = (height() - 1) / 2.0;
    if (keys_.empty()) {
        painter.setPen(theme_->info);
        painter.drawText(QRectF(0, 0, width(), height() - 1),
                         (mirrored ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter, noKeys());
        return;
    }
    if (isStacked(width())) {
        double middle = centre - double(keys_.size() - 1) * kStep / 2;
        for (const Combination& keys : keys_) {
            drawCombination(painter, keys, mirrored ? 0 : width() - keys.width, middle);
            middle += kStep;
        }
        return;
    }
    const double between = (keys_.size() > 1 ? (keysWidth() -
                                                [this] {
                                                    double width = 0;
                                                    for (const Combination& keys : keys_)
                                                        width += keys.width;
                                                    return width;
                                                }()) /
                                                   double(keys_.size() - 1)
                                             : 0);
    double x = mirrored ? 0 : width() - keysWidth();
    for (const Combination& keys : keys_) {
        if (&keys != &keys_.front()) {
            painter.setPen(theme_->info);
            painter.drawText(QRectF(x, 0, between, height() - 1),
                             Qt::AlignCenter | Qt::TextSingleLine, orWord());
            x += between;
        }
        drawCombination(painter, keys, x, centre);
        x += keys.width;
    }
}
