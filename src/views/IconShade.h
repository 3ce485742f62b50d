#pragma once
#include <QHash>
#include <QPixmap>

class QPainter;

/// A thin dark rim behind an icon, so that a pale one stands out from a light ground.
/// Owner:   RowPainter. Threads: main.
class IconShade {
  public:
    void draw(QPainter& painter, const QRectF& place, const QPixmap& icon);

  private:
    static QPixmap make(const QPixmap& icon);

    QHash<qint64, QPixmap> rims_;  // by the icon's cache key
};
