#pragma once
#include <QImage>

class QPainter;

/// The soft shadow around the window, where a compositor lets the desktop shine through.
/// Owner:   Panel. Threads: main. Units: logical pixels.
class Shadow {
  public:
    static constexpr int kSide = 30, kTop = 22, kBottom = 40;  // how far it reaches around

    /// Draws it around a sheet, into the frame of kSide, kTop and kBottom.
    void draw(QPainter& painter, const QRect& sheet, double scale, bool dark);

  private:
    struct Look {
        QSize sheet;
        double scale = 0;
        bool dark = false;
        friend bool operator==(const Look&, const Look&) = default;
    };
    Look look_;  // of the picture
    QImage picture_;
};
