#pragma once
#include <QWidget>
#include <functional>

struct Theme;

/// A slim scroll bar that lies over the right edge of the list and takes no room from it.
/// Owner:   ResultTable. Threads: main.
class Scroller : public QWidget {
  public:
    static constexpr int kWidth = 12;

    /// moved is called with the new offset while the user drags.
    Scroller(QWidget* parent, std::function<void(double offset)> moved);
    void setTheme(const Theme* theme);
    /// How much there is, how much of it shows, and from where.
    void setRange(double content, double shown, double offset);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

  private:
    QRectF thumb() const;

    const std::function<void(double)> moved_;
    const Theme* theme_ = nullptr;
    double content_ = 0, shown_ = 0, offset_ = 0;
    double grip_ = 0;  // of the mouse, from the thumb's top
    bool hovered_ = false;
};
