#include "views/ActionSymbols.h"

#include <QPainter>
#include <QPainterPath>

namespace {

// All shapes are drawn in a square of so many units.
constexpr double kUnits = 16;
constexpr double kLine = 1.4;

using Symbol = RowAction::Symbol;
using Points = QPolygonF;

void drawOpen(QPainter& p) {
    p.drawPolyline(Points({{7.5, 3.0},
                           {4.0, 3.0},
                           {3.0, 4.0},
                           {3.0, 12.0},
                           {4.0, 13.0},
                           {12.0, 13.0},
                           {13.0, 12.0},
                           {13.0, 8.5}}));
    p.drawLine(QPointF(8.0, 8.0), QPointF(13.4, 2.6));
    p.drawPolyline(Points({{9.8, 2.4}, {13.6, 2.4}, {13.6, 6.2}}));
}

void drawOpenFolder(QPainter& p) {
    p.drawPolyline(
        Points({{1.8, 12.8}, {1.8, 3.4}, {6.0, 3.4}, {7.4, 5.2}, {12.6, 5.2}, {12.6, 7.4}}));
    p.drawPolygon(Points({{1.8, 12.8}, {4.4, 7.4}, {14.8, 7.4}, {12.4, 12.8}}));
}

void drawInFrontmost(QPainter& p) {
    p.drawPolyline(Points({{3.6, 10.6}, {1.6, 10.6}, {1.6, 2.4}, {11.4, 2.4}, {11.4, 4.2}}));
    p.drawRoundedRect(QRectF(4.6, 5.4, 9.8, 8.2), 1.2, 1.2);
    p.drawLine(QPointF(4.6, 8.0), QPointF(14.4, 8.0));
}

void drawSheets(QPainter& p) {
    p.drawPolyline(Points({{3.4, 11.4}, {2.2, 11.4}, {2.2, 1.8}, {10.2, 1.8}, {10.2, 2.8}}));
    p.drawRoundedRect(QRectF(5.0, 4.4, 8.8, 9.8), 1.0, 1.0);
}

void drawSlash(QPainter& p) {
    p.drawLine(QPointF(7.6, 12.0), QPointF(11.2, 6.6));
}

void drawCopyPath(QPainter& p) {
    drawSheets(p);
    drawSlash(p);
}

void drawCopyName(QPainter& p) {
    drawSheets(p);
    p.drawPolyline(Points({{7.3, 11.8}, {9.4, 6.6}, {11.5, 11.8}}));
    p.drawLine(QPointF(8.1, 10.2), QPointF(10.7, 10.2));
}

void drawCopyContent(QPainter& p) {
    drawSheets(p);
    for (const double y : {7.2, 9.3, 11.4})
        p.drawLine(QPointF(7.3, y), QPointF(y > 11 ? 9.6 : 11.5, y));
}

void drawTextCursor(QPainter& p) {
    p.drawPolyline(
        Points({{1.6, 2.2}, {2.8, 2.2}, {3.7, 3.1}, {3.7, 12.9}, {2.8, 13.8}, {1.6, 13.8}}));
    p.drawPolyline(Points({{5.8, 2.2}, {4.6, 2.2}, {3.7, 3.1}}));
    p.drawPolyline(Points({{5.8, 13.8}, {4.6, 13.8}, {3.7, 12.9}}));
}

void drawTypePath(QPainter& p) {
    drawTextCursor(p);
    p.drawLine(QPointF(8.2, 12.4), QPointF(12.2, 3.6));
}

void drawTypeName(QPainter& p) {
    drawTextCursor(p);
    p.drawPolyline(Points({{7.4, 11.4}, {10.6, 4.2}, {13.8, 11.4}}));
    p.drawLine(QPointF(8.6, 9.0), QPointF(12.6, 9.0));
}

void drawRename(QPainter& p) {
    p.drawPolygon(Points({{2.4, 13.6}, {3.2, 10.2}, {10.8, 2.6}, {13.4, 5.2}, {5.8, 12.8}}));
    p.drawLine(QPointF(9.0, 4.4), QPointF(11.6, 7.0));
}

void drawFolder(QPainter& p) {
    p.drawPolyline(Points(
        {{6.4, 12.6}, {1.6, 12.6}, {1.6, 3.0}, {5.8, 3.0}, {7.2, 4.8}, {14.0, 4.8}, {14.0, 6.4}}));
}

void drawReveal(QPainter& p) {
    drawFolder(p);
    p.drawEllipse(QPointF(10.4, 9.8), 2.8, 2.8);
    p.drawLine(QPointF(12.5, 11.9), QPointF(14.4, 13.8));
}

void drawInfo(QPainter& p) {
    p.drawEllipse(QPointF(8, 8), 6.2, 6.2);
    p.drawLine(QPointF(8, 7.4), QPointF(8, 11.2));
    p.drawPoint(QPointF(8, 4.9));
}

void drawEdit(QPainter& p) {
    p.drawRoundedRect(QRectF(2.8, 1.8, 10.4, 12.4), 1.2, 1.2);
    for (const double y : {5.2, 8.0, 10.8})
        p.drawLine(QPointF(5.4, y), QPointF(y > 10 ? 8.2 : 10.6, y));
}

void drawTerminal(QPainter& p) {
    p.drawRoundedRect(QRectF(1.8, 2.6, 12.4, 10.8), 1.4, 1.4);
    p.drawPolyline(Points({{4.6, 5.6}, {7.0, 8.0}, {4.6, 10.4}}));
    p.drawLine(QPointF(8.6, 10.4), QPointF(11.4, 10.4));
}

void drawSearch(QPainter& p) {
    p.drawEllipse(QPointF(6.8, 6.8), 4.6, 4.6);
    p.drawLine(QPointF(10.2, 10.2), QPointF(14.0, 14.0));
}

void drawBrowse(QPainter& p) {
    drawFolder(p);
    p.drawLine(QPointF(7.6, 10.2), QPointF(14.0, 10.2));
    p.drawPolyline(Points({{11.6, 7.6}, {14.2, 10.2}, {11.6, 12.8}}));
}

void drawCommand(QPainter& p) {
    p.drawPolygon(
        Points({{9.2, 1.6}, {3.4, 9.2}, {7.4, 9.2}, {6.6, 14.4}, {12.6, 6.6}, {8.4, 6.6}}));
}

void drawUserAction(QPainter& p) {
    constexpr int kTeeth = 8;
    p.drawEllipse(QPointF(8, 8), 2.0, 2.0);
    p.drawEllipse(QPointF(8, 8), 4.8, 4.8);
    p.translate(8, 8);
    for (int i = 0; i < kTeeth; ++i) {
        p.drawLine(QPointF(0, -5.0), QPointF(0, -6.6));
        p.rotate(360.0 / kTeeth);
    }
}

using Drawing = void (*)(QPainter&);

Drawing drawingOf(Symbol symbol) {
    switch (symbol) {
        case Symbol::pending:
            return nullptr;
        case Symbol::open:
            return drawOpen;
        case Symbol::openFolder:
            return drawOpenFolder;
        case Symbol::openInFrontmost:
            return drawInFrontmost;
        case Symbol::copyPath:
            return drawCopyPath;
        case Symbol::copyName:
            return drawCopyName;
        case Symbol::copyContent:
            return drawCopyContent;
        case Symbol::typePath:
            return drawTypePath;
        case Symbol::typeName:
            return drawTypeName;
        case Symbol::rename:
            return drawRename;
        case Symbol::reveal:
            return drawReveal;
        case Symbol::showInfo:
            return drawInfo;
        case Symbol::edit:
            return drawEdit;
        case Symbol::terminal:
            return drawTerminal;
        case Symbol::search:
            return drawSearch;
        case Symbol::browse:
            return drawBrowse;
        case Symbol::command:
            return drawCommand;
        case Symbol::userAction:
            return drawUserAction;
    }
    return nullptr;
}

}  // namespace

void ActionSymbols::draw(QPainter& painter, const QRectF& square, Symbol symbol,
                         const QColor& colour) {
    const Drawing drawing = drawingOf(symbol);
    if (!drawing) return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(square.topLeft());
    painter.scale(square.width() / kUnits, square.height() / kUnits);
    painter.setPen(QPen(colour, kLine, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    drawing(painter);
    painter.restore();
}
