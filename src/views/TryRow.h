#pragma once
#include <QAbstractButton>

struct Theme;

/// A query to try: the letters as they are typed, and what they find. A click or Return tries it.
/// Owner:   the window that it stands in. Threads: main. The theme outlives it.
class TryRow : public QAbstractButton {
  public:
    TryRow(const QString& query, const QString& explanation, const Theme* theme, QWidget* parent);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void enterEvent(QEnterEvent*) override { update(); }
    void leaveEvent(QEvent*) override { update(); }

  private:
    const QString explanation_;
    const Theme* const theme_;
};
