#include "views/TryRow.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QPainter>
#include <algorithm>

#include "views/Theme.h"

namespace {
constexpr int kHeight = 46, kInset = 16, kQueryWidth = 132, kGap = 16;
constexpr double kRadius = 8;
}  // namespace

TryRow::TryRow(const QString& query, const QString& explanation, const Theme* theme,
               QWidget* parent)
    : QAbstractButton(parent), explanation_(explanation), theme_(theme) {
    setText(query);
    setAccessibleDescription(explanation);
    setFixedHeight(theme->scaled(kHeight));
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::PointingHandCursor);
}

void TryRow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

void TryRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF place(rect());
    const bool isChosen = hasFocus() || isDown();
    if (isChosen || underMouse()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(isChosen ? theme_->selection : theme_->otherSelection);
        painter.drawRoundedRect(place.adjusted(0, 1, 0, -1), kRadius, kRadius);
    }
    painter.setFont(theme_->nameFont);
    painter.setPen(isChosen ? theme_->selectedText : theme_->fieldText);
    const QFontMetricsF query(theme_->nameFont);
    const int inset = theme_->scaled(kInset), gap = theme_->scaled(kGap);
    const double width = std::clamp(query.horizontalAdvance(text()) + gap,
                                    double(theme_->scaled(kQueryWidth)), place.width() / 2);
    const QRectF left(inset, 0, width - gap, place.height());
    painter.drawText(left, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     query.elidedText(text(), Qt::ElideRight, left.width()));
    const QFont font = theme_->textFont(14);
    painter.setFont(font);
    painter.setPen(isChosen ? theme_->selectedPath : theme_->info);
    const QRectF right(inset + width, 0, place.width() - 2 * inset - width, place.height());
    painter.drawText(right, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     QFontMetricsF(font).elidedText(explanation_, Qt::ElideRight, right.width()));
}
