#include "views/ProgramIcon.h"

#include <QLinearGradient>
#include <QPainter>

namespace {

// All is drawn in a square of so many units.
constexpr double kUnits = 22;

QPixmap picture(int size) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / kUnits, size / kUnits);
    QLinearGradient ground(0, 1, 0, 21);
    ground.setColorAt(0, QColor(62, 139, 214));
    ground.setColorAt(1, QColor(30, 92, 160));
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(QRectF(1, 1, 20, 20), 5, 5);
    painter.setPen(QPen(Qt::white, 2.2, Qt::SolidLine, Qt::RoundCap));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(QPointF(9.8, 9.8), 4.5, 4.5);
    painter.drawLine(QPointF(13.3, 13.3), QPointF(16.8, 16.8));
    return pixmap;
}

}  // namespace

QIcon programIcon() {
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 44, 48, 64, 128}) icon.addPixmap(picture(size));
    return icon;
}
