#pragma once
#include <QAbstractButton>
#include <QLabel>

struct Theme;

/// The pieces that our small windows are made of, in the colours of a theme that outlives them.
/// Threads: main. Texts are shown as they are.

/// A rounded push button; the main one of a window is filled.
class SheetButton : public QAbstractButton {
  public:
    enum class Kind { plain, main };
    SheetButton(const QString& text, Kind kind, const Theme* theme, QWidget* parent);
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void enterEvent(QEnterEvent*) override { update(); }
    void leaveEvent(QEvent*) override { update(); }

  private:
    const Kind kind_;
    const Theme* const theme_;
};

/// A box to tick, with a text.
class SheetCheckBox : public QAbstractButton {
  public:
    SheetCheckBox(const QString& text, const Theme* theme, QWidget* parent);
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    int textLeft() const;

    const Theme* const theme_;
};

/// Plain text of one size and colour; wrapped to a width where one is given.
QLabel* makeLabel(QWidget* parent, const QString& text, const QFont& font, const QColor& colour,
                  int wrapWidth = 0);
void setLabelColour(QLabel& label, const QColor& colour);
/// A ring around what has the keyboard.
void drawFocusRing(QPainter& painter, const QRectF& place, double radius, const Theme& theme);
