#include "views/DrawnIcons.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace {

// All shapes are drawn in a square of so many units.
constexpr double kUnits = 32;

using Sign = void (*)(QPainter&, const QColor&);

void lines(QPainter& p, const QColor& colour) {
    p.setPen(QPen(colour, 1.6, Qt::SolidLine, Qt::RoundCap));
    for (const double y : {14.5, 18.0, 21.5}) p.drawLine(QPointF(10.5, y), QPointF(21.5, y));
    p.drawLine(QPointF(10.5, 25.0), QPointF(17.5, 25.0));
}

void landscape(QPainter& p, const QColor& colour) {
    p.setPen(Qt::NoPen);
    p.setBrush(colour.lighter(165));
    p.drawEllipse(QPointF(20.2, 15.4), 2.1, 2.1);
    p.setBrush(colour);
    p.drawPolygon(QPolygonF({{9.5, 25.0}, {14.0, 17.0}, {17.2, 22.0}, {19.2, 19.6}, {22.5, 25.0}}));
}

void note(QPainter& p, const QColor& colour) {
    p.setPen(QPen(colour, 1.7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(Qt::NoBrush);
    p.drawPolyline(QPolygonF({{13.6, 23.6}, {13.6, 14.6}, {20.4, 13.2}, {20.4, 22.2}}));
    p.setPen(Qt::NoPen);
    p.setBrush(colour);
    p.drawEllipse(QPointF(12.0, 23.8), 2.3, 1.8);
    p.drawEllipse(QPointF(18.8, 22.4), 2.3, 1.8);
}

void film(QPainter& p, const QColor& colour) {
    QPainterPath path;
    path.moveTo(13.0, 14.4);
    path.lineTo(21.6, 19.5);
    path.lineTo(13.0, 24.6);
    path.closeSubpath();
    p.setPen(QPen(colour, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.fillPath(path, colour);
    p.drawPath(path);
}

void zip(QPainter& p, const QColor& colour) {
    p.setPen(Qt::NoPen);
    p.setBrush(colour);
    for (int i = 0; i < 6; ++i) p.drawRect(QRectF(i % 2 ? 16.0 : 13.6, 4.6 + 2.3 * i, 2.4, 2.3));
    p.drawRoundedRect(QRectF(13.2, 19.4, 5.6, 6.4), 1.4, 1.4);
    p.setBrush(Qt::white);
    p.drawRoundedRect(QRectF(14.9, 22.4, 2.2, 1.9), 0.6, 0.6);
}

void prompt(QPainter& p, const QColor& colour) {
    p.setPen(QPen(colour, 2.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.drawPolyline(QPolygonF({{11.0, 15.4}, {15.0, 19.0}, {11.0, 22.6}}));
    p.drawLine(QPointF(16.6, 23.6), QPointF(21.4, 23.6));
}

void brackets(QPainter& p, const QColor& colour) {
    p.setPen(QPen(colour, 1.9, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.drawPolyline(QPolygonF({{13.4, 15.6}, {10.0, 19.4}, {13.4, 23.2}}));
    p.drawPolyline(QPolygonF({{18.6, 15.6}, {22.0, 19.4}, {18.6, 23.2}}));
}

void globe(QPainter& p, const QColor& colour) {
    p.setPen(QPen(colour, 1.4));
    p.setBrush(Qt::NoBrush);
    p.drawEllipse(QPointF(16, 19.4), 5.8, 5.8);
    p.drawEllipse(QPointF(16, 19.4), 2.5, 5.8);
    p.drawLine(QPointF(10.2, 19.4), QPointF(21.8, 19.4));
}

void table(QPainter& p, const QColor& colour) {
    p.setPen(QPen(colour, 1.4));
    p.setBrush(Qt::NoBrush);
    p.drawRoundedRect(QRectF(10, 14, 12, 11), 1, 1);
    p.drawLine(QPointF(10, 17.6), QPointF(22, 17.6));
    p.drawLine(QPointF(10, 21.3), QPointF(22, 21.3));
    p.drawLine(QPointF(14.4, 14), QPointF(14.4, 25));
}

struct Kind {
    const char* begins;  // of the icon name; the first row that fits is taken
    Sign sign;
    int hue;  // degrees
    int saturation;
};

// The names follow the freedesktop icon naming rules: a media type with dashes, or a generic name.
constexpr Kind kKinds[] = {
    Kind{"image-", landscape, 158, 165},
    Kind{"audio-", note, 292, 120},
    Kind{"video-", film, 268, 130},
    Kind{"text-html", globe, 205, 190},
    Kind{"text-markdown", lines, 215, 60},
    Kind{"text-csv", table, 140, 160},
    Kind{"text-plain", lines, 215, 60},
    Kind{"text-x-generic", lines, 215, 60},
    Kind{"text-x-log", lines, 215, 60},
    Kind{"text-", brackets, 212, 175},
    Kind{"x-office-spreadsheet", table, 140, 160},
    Kind{"x-office-presentation", landscape, 22, 190},
    Kind{"x-office-", lines, 212, 175},
    Kind{"application-pdf", lines, 2, 185},
    Kind{"application-json", brackets, 212, 175},
    Kind{"application-xml", brackets, 212, 175},
    Kind{"application-javascript", brackets, 45, 200},
    Kind{"package-", zip, 32, 190},
    Kind{"application-zip", zip, 32, 190},
    Kind{"application-gzip", zip, 32, 190},
    Kind{"application-x-tar", zip, 32, 190},
    Kind{"application-x-7z", zip, 32, 190},
    Kind{"application-x-compressed", zip, 32, 190},
    Kind{"application-x-executable", prompt, 200, 70},
    Kind{"application-x-sharedlib", prompt, 200, 70},
    Kind{"application-x-shellscript", prompt, 200, 70},
    Kind{"application-x-desktop", prompt, 200, 70},
};

void drawFolder(QPainter& p) {
    const QColor back = QColor::fromHsv(210, 150, 190);
    QPainterPath tab;
    tab.addRoundedRect(QRectF(2.5, 5.5, 13, 9), 2.4, 2.4);
    tab.addRoundedRect(QRectF(2.5, 8.5, 27, 17), 2.4, 2.4);
    tab.setFillRule(Qt::WindingFill);
    p.fillPath(tab, back);
    QLinearGradient light(0, 11, 0, 27);
    light.setColorAt(0, QColor::fromHsv(207, 118, 245));
    light.setColorAt(1, QColor::fromHsv(210, 148, 226));
    p.setPen(Qt::NoPen);
    p.setBrush(light);
    p.drawRoundedRect(QRectF(2.5, 11, 27, 16), 2.6, 2.6);
    p.setPen(QPen(QColor(255, 255, 255, 90), 0.8));
    p.drawLine(QPointF(4.8, 11.7), QPointF(27.2, 11.7));
}

void drawSheet(QPainter& p) {
    constexpr double kLeft = 5.5, kRight = 26.5, kTop = 1.5, kBottom = 30.5, kFold = 7, kR = 2;
    QPainterPath sheet(QPointF(kLeft + kR, kTop));
    sheet.lineTo(kRight - kFold, kTop);
    sheet.lineTo(kRight, kTop + kFold);
    sheet.lineTo(kRight, kBottom - kR);
    sheet.quadTo(kRight, kBottom, kRight - kR, kBottom);
    sheet.lineTo(kLeft + kR, kBottom);
    sheet.quadTo(kLeft, kBottom, kLeft, kBottom - kR);
    sheet.lineTo(kLeft, kTop + kR);
    sheet.quadTo(kLeft, kTop, kLeft + kR, kTop);
    QLinearGradient light(0, kTop, 0, kBottom);
    light.setColorAt(0, QColor(255, 255, 255));
    light.setColorAt(1, QColor(240, 243, 247));
    p.setPen(QPen(QColor(70, 85, 105, 110), 0.9));
    p.setBrush(light);
    p.drawPath(sheet);
    p.setBrush(QColor(216, 223, 232));
    p.drawPolygon(QPolygonF(
        {{kRight - kFold, kTop}, {kRight - kFold, kTop + kFold}, {kRight, kTop + kFold}}));
}

bool isFolder(const QString& iconName) {
    return iconName.startsWith(QLatin1String("folder")) ||
           iconName == QLatin1String("inode-directory") || iconName == QLatin1String("user-home") ||
           iconName == QLatin1String("user-desktop");
}

const Kind* kindOf(const QString& iconName) {
    for (const Kind& kind : kKinds)
        if (iconName.startsWith(QLatin1String(kind.begins))) return &kind;
    return nullptr;
}

}  // namespace

void DrawnIcons::draw(QPainter& painter, const QRectF& square, const QString& iconName,
                      const QString& genericName) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(square.topLeft());
    painter.scale(square.width() / kUnits, square.height() / kUnits);
    if (isFolder(iconName)) {
        drawFolder(painter);
    } else {
        drawSheet(painter);
        const Kind* kind = kindOf(iconName);
        if (!kind) kind = kindOf(genericName);
        if (kind) kind->sign(painter, QColor::fromHsv(kind->hue, kind->saturation, 175));
    }
    painter.restore();
}
