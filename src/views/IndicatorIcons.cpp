#include "views/IndicatorIcons.h"

#include <QPainter>

namespace {

// All shapes are drawn in a square of so many units.
constexpr double kUnits = 16;
constexpr float kPale = 0.45F;

QPen penOf(const QColor& colour, double width = 1.5) {
    return {colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

QColor paler(QColor colour) {
    colour.setAlphaF(colour.alphaF() * kPale);
    return colour;
}

void drawSheet(QPainter& p) {
    p.drawPolygon(QPolygonF({{3.5, 1.5}, {9.0, 1.5}, {12.5, 5.0}, {12.5, 14.5}, {3.5, 14.5}}));
    p.drawPolyline(QPolygonF({{9.0, 1.5}, {9.0, 5.0}, {12.5, 5.0}}));
}

void drawFolder(QPainter& p) {
    p.drawPolygon(
        QPolygonF({{1.5, 3.5}, {6.0, 3.5}, {7.5, 5.3}, {14.5, 5.3}, {14.5, 13.0}, {1.5, 13.0}}));
}

/// A funnel, and a cross: take it away.
void drawFilter(QPainter& p, const QColor& colour) {
    p.setPen(penOf(colour));
    p.setBrush(colour);
    p.drawPolygon(
        QPolygonF({{1.0, 2.5}, {11.5, 2.5}, {7.6, 7.4}, {7.6, 13.6}, {5.0, 12.0}, {5.0, 7.4}}));
    p.drawLine(QPointF(11.0, 10.4), QPointF(14.6, 14.0));
    p.drawLine(QPointF(14.6, 10.4), QPointF(11.0, 14.0));
}

/// A path as steps downward to a leaf; of a name alone the steps are pale.
void drawPath(QPainter& p, bool isNameOnly, const QColor& colour) {
    const QColor steps = isNameOnly ? paler(colour) : colour;
    p.setPen(penOf(steps, 1.4));
    p.drawPolyline(QPolygonF({{3.2, 4.6}, {3.2, 12.4}, {6.6, 12.4}}));
    p.drawLine(QPointF(3.2, 7.6), QPointF(6.6, 7.6));
    p.setBrush(steps);
    p.drawRoundedRect(QRectF(1.6, 1.6, 5.6, 3.0), 1, 1);
    p.setBrush(isNameOnly ? QBrush(Qt::NoBrush) : QBrush(steps));
    p.drawRoundedRect(QRectF(8.0, 6.1, 6.4, 3.0), 1, 1);
    p.setPen(penOf(colour, 1.4));
    p.setBrush(colour);
    p.drawRoundedRect(QRectF(8.0, 10.9, 6.4, 3.0), 1, 1);
}

}  // namespace

void IndicatorIcons::draw(QPainter& painter, const QRectF& square, IndicatorButton button,
                          bool isOn, const QColor& colour) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(square.topLeft());
    painter.scale(square.width() / kUnits, square.height() / kUnits);
    painter.setPen(penOf(isOn ? colour : paler(colour)));
    painter.setBrush(Qt::NoBrush);
    switch (button) {
        case IndicatorButton::enableMetadata:  // has a text
            break;
        case IndicatorButton::resetFilterButton:
            drawFilter(painter, colour);
            break;
        case IndicatorButton::searchPathOrFile:
            drawPath(painter, isOn, colour);
            break;
        case IndicatorButton::showFiles:
        case IndicatorButton::showFolders:
            if (isOn) {
                QColor ground = colour;
                ground.setAlphaF(0.25F);
                painter.setBrush(ground);
            }
            if (button == IndicatorButton::showFiles)
                drawSheet(painter);
            else
                drawFolder(painter);
            if (!isOn) {
                painter.setPen(penOf(colour, 1.6));
                painter.drawLine(QPointF(2.0, 14.5), QPointF(14.0, 1.5));
            }
            break;
    }
    painter.restore();
}
