#include "views/ResultTableAccess.h"

#include "views/InfoBar.h"
#include "views/MarkedText.h"
#include "views/ResultTable.h"

class ResultTableAccess::Row : public QAccessibleInterface {
  public:
    Row(ResultTable* table, int row) : table_(table), row_(row) {}
    int index() const { return row_; }

    bool isValid() const override { return table_ && size_t(row_) < table_->count(); }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(table_);
    }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    void setText(QAccessible::Text, const QString&) override {}
    QRect rect() const override {
        if (!isValid()) return {};
        const QRect place = table_->placeOf(size_t(row_)).toAlignedRect() & table_->rect();
        return {table_->mapToGlobal(place.topLeft()), place.size()};
    }
    QAccessible::State state() const override {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        state.selectable = state.focusable = true;
        state.multiSelectable = state.extSelectable = table_->allowsMultipleSelection();
        state.selected = table_->isSelected(size_t(row_));
        state.active = state.focused = table_->selectedRow() == size_t(row_);
        state.invisible = !table_->isVisible();
        state.offscreen = !table_->isRowVisible(size_t(row_));
        return state;
    }
    QString text(QAccessible::Text kind) const override {
        if (!isValid()) return {};
        if (kind == QAccessible::Name) return table_->spokenName(size_t(row_));
        if (kind == QAccessible::Description) return table_->spokenDetails(size_t(row_));
        return {};
    }

  private:
    const QPointer<ResultTable> table_;
    const int row_;
};

ResultTableAccess::ResultTableAccess(ResultTable* table)
    : QAccessibleWidget(table, QAccessible::List) {}

ResultTableAccess::~ResultTableAccess() {
    for (const auto& [row, id] : rows_) QAccessible::deleteAccessibleInterface(id);
}

QAccessibleInterface* ResultTableAccess::make(const QString&, QObject* object) {
    if (auto* const table = dynamic_cast<ResultTable*>(object)) return new ResultTableAccess(table);
    if (auto* const bar = dynamic_cast<InfoBar*>(object))
        return new QAccessibleWidget(bar, QAccessible::StatusBar);
    return nullptr;
}

ResultTable* ResultTableAccess::table() const {
    return static_cast<ResultTable*>(widget());
}

int ResultTableAccess::childCount() const {
    return table() ? int(table()->count()) : 0;
}

QAccessibleInterface* ResultTableAccess::child(int index) const {
    if (index < 0 || index >= childCount()) return nullptr;
    const auto found = rows_.find(index);
    if (found != rows_.end()) return QAccessible::accessibleInterface(found->second);
    auto* const row = new Row(table(), index);  // Qt owns it until it is deleted by its id
    rows_.emplace(index, QAccessible::registerAccessibleInterface(row));
    return row;
}

QAccessibleInterface* ResultTableAccess::childAt(int x, int y) const {
    if (!table()) return nullptr;
    const auto row = table()->rowUnder(table()->mapFromGlobal(QPoint(x, y)).y());
    return row ? child(int(*row)) : nullptr;
}

int ResultTableAccess::indexOfChild(const QAccessibleInterface* child) const {
    const auto* const row = dynamic_cast<const Row*>(child);
    return row ? row->index() : -1;
}

QString ResultTableAccess::text(QAccessible::Text kind) const {
    if (kind == QAccessible::Description)
        return childCount() == 1 ? QStringLiteral("1 row")
                                 : QStringLiteral("%1 rows").arg(childCount());
    return QAccessibleWidget::text(kind);
}
