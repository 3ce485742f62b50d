#include "views/Theme.h"

#include <QPalette>
#include <algorithm>
#include <cmath>

#include "views/QtTest.h"

namespace {

double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour) {
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

/// The contrast of the Web Content Accessibility Guidelines.
double contrast(const QColor& text, const QColor& ground) {
    const auto mixed = [&](float over, float under) {
        return over * text.alphaF() + under * (1 - text.alphaF());
    };
    const QColor seen =
        QColor::fromRgbF(mixed(text.redF(), ground.redF()), mixed(text.greenF(), ground.greenF()),
                         mixed(text.blueF(), ground.blueF()));
    const double a = luminance(seen), b = luminance(ground);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

}  // namespace

class ThemeTest : public QtTest {};

TEST_F(ThemeTest, EveryOtherTextCanBeRead) {
    for (const QColor& desktop : {QColor(245, 245, 245), QColor(40, 40, 44)}) {
        const Theme theme = Theme::make(QPalette(desktop), QFont());
        EXPECT_EQ(theme.dark, desktop.lightness() < 128);
        const std::pair<QColor, QColor> pairs[] = {
            {theme.fieldText, theme.background},   {theme.placeholder, theme.background},
            {theme.name, theme.background},        {theme.nameMark, theme.background},
            {theme.info, theme.background},        {theme.error, theme.background},
            {theme.name, theme.otherSelection},    {theme.nameMark, theme.otherSelection},
            {theme.selectedText, theme.selection}, {theme.selectedPath, theme.selection},
        };
        for (const auto& [text, ground] : pairs)
            EXPECT_GE(contrast(text, ground), 4.5)
                << text.name().toStdString() << " on " << ground.name().toStdString();
    }
}

TEST_F(ThemeTest, KeepsTheColoursOfPathsByHue) {
    const auto expectColour = [](const QColor& colour, float saturation, float brightness) {
        EXPECT_NEAR(colour.hsvSaturationF(), saturation, 0.005);
        EXPECT_NEAR(colour.valueF(), brightness, 0.005);
    };
    const Theme dark = Theme::make(QPalette(Qt::black), QFont());
    expectColour(dark.path, 0.2F, 0.5F);
    expectColour(dark.pathMark, 0.3F, 0.4F);
    const Theme light = Theme::make(QPalette(Qt::white), QFont());
    expectColour(light.path, 0.1F, 0.5F);
    expectColour(light.pathMark, 0.3F, 0.1F);
}

TEST_F(ThemeTest, MarkedLettersAreHeavierAndSizesAreFixed) {
    const Theme theme = Theme::make(QPalette(Qt::white), QFont());
    EXPECT_GT(theme.nameMarkFont.weight(), theme.nameFont.weight());
    EXPECT_GT(theme.pathMarkFont.weight(), theme.pathFont.weight());
    EXPECT_EQ(theme.field.pixelSize(), 25);
    EXPECT_EQ(theme.nameFont.pixelSize(), 17);
    EXPECT_EQ(theme.pathFont.pixelSize(), 14);
    EXPECT_EQ(theme.info13.pixelSize(), 13);
}
