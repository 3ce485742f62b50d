#pragma once
#include <QWidget>
#include <functional>

/// A strip along the side of a window by which its width is dragged.
/// Owner:   the window's panel. Threads: main. Units: logical pixels.
class EdgeGrip : public QWidget {
  public:
    static constexpr int kWidth = 5;

    struct Drag {
        std::function<void()> began;
        std::function<void(int distance)> moved;  // to the right, from where it began
    };
    EdgeGrip(QWidget* parent, Drag drag);

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

  private:
    const Drag drag_;
    int begin_ = 0;
};
