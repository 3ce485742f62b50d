#include "views/Shadow.h"

#include <QPainter>
#include <cmath>
#include <vector>

namespace {

/// One light's shadow of the sheet.
struct Light {
    double softness;  // standard deviation
    double drop;      // how far below the sheet it falls
    double darkness;  // in the dark look
};
constexpr double kInLightLook = 0.55;  // of that darkness
constexpr Light kLights[] = {{12, 8, 0.46}, {3, 1, 0.24}};
constexpr double kUnderEdge = 14;  // pixels below the sheet's rim, for its round corners

/// The shadow of a strip that reaches from 0 to length, at x.
double blurredStrip(double x, double length, double softness) {
    const double unit = softness * std::sqrt(2.0);
    return 0.5 * (std::erf(x / unit) - std::erf((x - length) / unit));
}

/// A Gaussian shadow of a rectangle is the product of two strips' shadows: one profile a side will
/// do. It ends softly where the picture ends.
std::vector<float> profile(int pixels, double scale, double before, double length, double after,
                           double softness, double drop) {
    std::vector<float> values(size_t(pixels), 0.0F);
    for (int i = 0; i < pixels; ++i) {
        const double at = (i + 0.5) / scale - before;
        const double rim = at < 0 ? -at / before : (at > length ? (at - length) / after : 0);
        const double fade = rim < 0.6 ? 1 : (1 - rim) / 0.4;
        values[size_t(i)] = float(blurredStrip(at - drop, length, softness) * fade);
    }
    return values;
}

}  // namespace

void Shadow::draw(QPainter& painter, const QRect& sheet, double scale, bool dark) {
    const QRect outer = sheet.adjusted(-kSide, -kTop, kSide, kBottom);
    if (const Look look{sheet.size(), scale, dark}; !(look == look_)) {
        look_ = look;
        const int width = int(std::ceil(outer.width() * scale));
        const int height = int(std::ceil(outer.height() * scale));
        picture_ = QImage(width, height, QImage::Format_ARGB32_Premultiplied);
        picture_.fill(Qt::transparent);
        picture_.setDevicePixelRatio(scale);
        std::vector<float> xs[2], ys[2];
        for (int i = 0; i < 2; ++i) {
            const Light& light = kLights[i];
            xs[i] = profile(width, scale, kSide, sheet.width(), kSide, light.softness, 0);
            ys[i] =
                profile(height, scale, kTop, sheet.height(), kBottom, light.softness, light.drop);
            for (float& value : ys[i]) value *= float(light.darkness * (dark ? 1 : kInLightLook));
        }
        // What the sheet covers stays empty.
        const int left = int((kSide + kUnderEdge) * scale), right = width - left;
        const int top = int((kTop + kUnderEdge) * scale);
        const int bottom = height - int((kBottom + kUnderEdge) * scale);
        for (int y = 0; y < height; ++y) {
            auto* line = reinterpret_cast<QRgb*>(picture_.scanLine(y));
            for (int x = 0; x < width; ++x) {
                if (x == left && y > top && y < bottom && right > left) x = right;
                const float wide = xs[0][size_t(x)] * ys[0][size_t(y)];
                const float close = xs[1][size_t(x)] * ys[1][size_t(y)];
                line[x] = qRgba(0, 0, 0, int((wide + close - wide * close) * 255.0F + 0.5F));
            }
        }
    }
    painter.drawImage(outer.topLeft(), picture_);
}
