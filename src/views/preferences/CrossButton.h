#pragma once
#include <QAbstractButton>

struct Theme;

/// A small cross: closes, or takes something away. Owner: its window. Threads: main.
class CrossButton : public QAbstractButton {
  public:
    CrossButton(const QString& name, const Theme* theme, QWidget* parent);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    const Theme* const theme_;
};
