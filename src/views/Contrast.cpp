#include "views/Contrast.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kStep = 0.02F;

double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour) {
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

QColor over(const QColor& text, const QColor& ground) {
    const auto mixed = [&](float above, float below) {
        return above * text.alphaF() + below * (1 - text.alphaF());
    };
    return QColor::fromRgbF(mixed(text.redF(), ground.redF()),
                            mixed(text.greenF(), ground.greenF()),
                            mixed(text.blueF(), ground.blueF()));
}

QColor withBrightness(const QColor& colour, float saturation, float brightness) {
    return QColor::fromHsvF(std::max(0.0F, colour.hsvHueF()), std::clamp(saturation, 0.0F, 1.0F),
                            std::clamp(brightness, 0.0F, 1.0F), colour.alphaF());
}

}  // namespace

double contrast::ratio(const QColor& text, const QColor& ground) {
    const double a = luminance(over(text, ground)), b = luminance(ground);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QColor contrast::groundFor(const QColor& text, QColor ground, double least) {
    for (float value = ground.valueF(); value > 0 && ratio(text, ground) < least;) {
        value -= kStep;
        ground = withBrightness(ground, ground.hsvSaturationF(), value);
    }
    return ground;
}

QColor contrast::textOn(const QColor& ground, QColor text, double least) {
    const bool towardsWhite = luminance(ground) < 0.18;
    float saturation = text.hsvSaturationF(), value = text.valueF();
    for (int i = 0; i < 100 && ratio(text, ground) < least; ++i) {
        if (!towardsWhite)
            value -= kStep;
        else if (value < 1)
            value += kStep;
        else
            saturation -= kStep;
        text = withBrightness(text, saturation, value);
    }
    return text;
}
