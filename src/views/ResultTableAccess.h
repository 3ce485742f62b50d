#pragma once
#include <QAccessibleWidget>
#include <map>

class ResultTable;

/// The list of results for assistive technologies: a list with an item a row, made when asked for.
/// Owner:   Qt. Threads: main.
class ResultTableAccess : public QAccessibleWidget {
  public:
    explicit ResultTableAccess(ResultTable* table);
    ~ResultTableAccess() override;
    /// For QAccessible::installFactory: our widgets that are more than their class name tells.
    static QAccessibleInterface* make(const QString& className, QObject* object);

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QString text(QAccessible::Text kind) const override;

  private:
    class Row;
    ResultTable* table() const;

    mutable std::map<int, QAccessible::Id> rows_;
};
