#include "views/ApplicationIcon.h"

#include <QPainter>

namespace {

QPixmap drawn(int size) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / 22.0, size / 22.0);
    painter.setPen(QPen(QColor::fromHsvF(0.585F, 0.55F, 0.95F), 2.4, Qt::SolidLine, Qt::RoundCap));
    painter.drawEllipse(QPointF(9.5, 9.5), 5.8, 5.8);
    painter.drawLine(QPointF(13.8, 13.8), QPointF(18.4, 18.4));
    return pixmap;
}

}  // namespace

QIcon applicationIcon() {
    QIcon icon;
    for (const int size : {22, 32, 44, 64, 128}) icon.addPixmap(drawn(size));
    return icon;
}
