#include "views/Theme.h"

#include "views/Contrast.h"
#include "views/QtTest.h"

class ThemeTest : public QtTest {};

TEST_F(ThemeTest, EveryTextButThePathsCanBeReadInEveryHue) {
    for (const double hue : {0.0, 0.123, 0.33, Theme::kOwnHue, 0.751, 0.95})
        for (const bool dark : {false, true}) {
            const Theme theme = Theme::make(hue, dark, QFont());
            EXPECT_EQ(theme.dark, dark);
            const std::pair<QColor, QColor> pairs[] = {
                {theme.fieldText, theme.background},   {theme.placeholder, theme.background},
                {theme.name, theme.background},        {theme.nameMark, theme.background},
                {theme.info, theme.background},        {theme.error, theme.background},
                {theme.name, theme.otherSelection},    {theme.nameMark, theme.otherSelection},
                {theme.selectedText, theme.selection}, {theme.selectedPath, theme.selection},
            };
            for (const auto& [text, ground] : pairs)
                EXPECT_GE(contrast::ratio(text, ground), 4.5)
                    << text.name().toStdString() << " on " << ground.name().toStdString();
        }
}

TEST_F(ThemeTest, ContrastIsThatOfTheGuidelines) {
    EXPECT_NEAR(contrast::ratio(Qt::black, Qt::white), 21, 0.01);
    EXPECT_NEAR(contrast::ratio(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.01);
    EXPECT_NEAR(contrast::ratio(QColor(0, 0, 0, 0), Qt::white), 1, 0.01);
}

TEST_F(ThemeTest, KeepsTheColoursOfPathsByHue) {
    const auto expectColour = [](const QColor& colour, float saturation, float brightness) {
        EXPECT_NEAR(colour.hsvSaturationF(), saturation, 0.005);
        EXPECT_NEAR(colour.valueF(), brightness, 0.005);
    };
    const Theme dark = Theme::make(Theme::kOwnHue, true, QFont());
    expectColour(dark.path, 0.2F, 0.5F);
    expectColour(dark.pathMark, 0.3F, 0.4F);
    const Theme light = Theme::make(Theme::kOwnHue, false, QFont());
    expectColour(light.path, 0.1F, 0.5F);
    expectColour(light.pathMark, 0.3F, 0.1F);
}

TEST_F(ThemeTest, MarkedLettersAreHeavierAndSizesAreFixed) {
    const Theme theme = Theme::make(Theme::kOwnHue, false, QFont());
    EXPECT_GT(theme.nameMarkFont.weight(), theme.nameFont.weight());
    EXPECT_GT(theme.pathMarkFont.weight(), theme.pathFont.weight());
    EXPECT_EQ(theme.field.pixelSize(), 25);
    EXPECT_EQ(theme.nameFont.pixelSize(), 17);
    EXPECT_EQ(theme.pathFont.pixelSize(), 14);
    EXPECT_EQ(theme.info13.pixelSize(), 13);
}
