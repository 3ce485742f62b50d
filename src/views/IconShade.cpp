#include "views/IconShade.h"

#include <QPainter>

namespace {
constexpr int kKept = 128;
constexpr double kReach = 0.03, kBelow = 0.02;  // of the icon's width
constexpr double kDarkness = 0.22;
constexpr QPointF kSides[] = {{-1, 0}, {1, 0}, {0, -1}, {0, 1}};
}  // namespace

QPixmap IconShade::make(const QPixmap& icon) {
    QPixmap dark = icon;
    {
        QPainter painter(&dark);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(dark.rect(), Qt::black);
    }
    const double width = icon.deviceIndependentSize().width();
    QPixmap rim(icon.size());
    rim.setDevicePixelRatio(icon.devicePixelRatio());
    rim.fill(Qt::transparent);
    QPainter painter(&rim);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setOpacity(kDarkness);
    for (const QPointF& side : kSides)
        painter.drawPixmap(side * kReach * width + QPointF(0, kBelow * width), dark);
    return rim;
}

void IconShade::draw(QPainter& painter, const QRectF& place, const QPixmap& icon) {
    if (icon.isNull()) return;
    auto found = rims_.constFind(icon.cacheKey());
    if (found == rims_.constEnd()) {
        if (rims_.size() >= kKept) rims_.clear();
        found = rims_.insert(icon.cacheKey(), make(icon));
    }
    painter.drawPixmap(place, *found, found->rect());
}
