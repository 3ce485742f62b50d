// What the result table says: to assistive technologies, and in tool tips.
#include <QAccessible>
#include <QToolTip>
#include <algorithm>

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
    announce();
}

void ResultTable::announce() {
    const auto row = selectedRow();
    QString words;
    if (row)
        words = QStringLiteral("%1, %2, %3 of %4")
                    .arg(spokenName(*row), spokenDetails(*row), QString::number(*row + 1),
                         QString::number(count_));
    if (words == announced_) return;
    announced_ = words;
    if (announce_) announce_(words);
}

void ResultTable::redrawActions(const std::vector<size_t>& rows) {
    for (const size_t row : rows) updateRow(row);
    if (QToolTip::isVisible() && !actionTip_.isEmpty() && QToolTip::text() == actionTip_)
        QToolTip::hideText();
    const auto row = selectedRow();
    if (!QAccessible::isActive() || !row || std::find(rows.begin(), rows.end(), *row) == rows.end())
        return;
    QAccessibleEvent changed(this, QAccessible::DescriptionChanged);
    changed.setChild(int(*row));
    QAccessible::updateAccessibility(&changed);
    announce();
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
            actionTip_ = plainToolTip(action->label);
            QToolTip::showText(event.globalPos(), actionTip_, this, icon.toAlignedRect());
            return;
        }
    }
    QToolTip::showText(event.globalPos(), rowSpeech::toolTip(content), this, place.toAlignedRect());
}
