// What the result table says: to assistive technologies, and in tool tips.
#include <QAccessible>
#include <QToolTip>

#include "views/MarkedText.h"
#include "views/ResultTable.h"
#include "views/rowSpeech.h"

QString ResultTable::spokenName(size_t row) const {
    const RowContent content = contentFor(row);
    return rowSpeech::name(content, isBroken(content));
}

QString ResultTable::spokenDetails(size_t row) const {
    const RowContent content = contentFor(row);
    QString words = rowSpeech::details(content);
    if (const auto action = actionOf(row, content))
        words += QStringLiteral(", ") + rowSpeech::action(*action);
    return words;
}

void ResultTable::tellReaders() {
    if (!QAccessible::isActive()) return;
    const auto row = selectedRow();
    if (row) {
        QAccessibleEvent selected(this, QAccessible::Selection);
        selected.setChild(int(*row));
        QAccessible::updateAccessibility(&selected);
    }
    QString words;
    if (row)
        words = QStringLiteral("%1, %2, %3 of %4")
                    .arg(spokenName(*row), rowSpeech::details(contentFor(*row)))
                    .arg(*row + 1)
                    .arg(count_);
    if (words == announced_) return;
    announced_ = words;
    if (announce_) announce_(words);
}

bool ResultTable::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QWidget::event(event);
    showToolTip(*static_cast<QHelpEvent*>(event));
    return true;
}

void ResultTable::showToolTip(const QHelpEvent& event) {
    const auto row = rowAt(event.pos().y());
    if (!row) {
        QToolTip::hideText();
        return;
    }
    const RowContent content = contentFor(*row);
    const QRectF place = rowPlace(*row);
    if (const auto action = painter_ ? actionOf(*row, content) : std::nullopt) {
        const QRectF icon = painter_->actionPlace(place, content, layoutDirection());
        if (icon.contains(event.pos())) {
            QToolTip::showText(event.globalPos(), plainToolTip(action->label), this,
                               icon.toAlignedRect());
            return;
        }
    }
    QToolTip::showText(event.globalPos(), rowSpeech::toolTip(content), this, place.toAlignedRect());
}
