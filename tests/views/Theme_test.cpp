#include "views/Theme.h"

#include "views/Contrast.h"
#include "views/QtTest.h"

class ThemeTest : public QtTest {};

TEST_F(ThemeTest, EveryTextCanBeReadInEveryHue) {
    for (int percent = 0; percent < 100; percent += 3)
        for (const bool dark : {false, true})
            for (const bool highContrast : {false, true}) {
                const Theme theme = Theme::make(
                    percent / 100.0, {.isDark = dark, .highContrast = highContrast}, QFont());
                EXPECT_EQ(theme.dark, dark);
                const QColor& ground = theme.background;
                std::vector<std::pair<QColor, QColor>> pairs = {
                    {theme.fieldText, ground},
                    {theme.placeholder, ground},
                    {theme.error, ground},
                    {theme.errorTerm, ground},
                    {theme.incompleteTerm, ground},
                    {theme.token, ground},
                    {theme.regexpTerm, ground},
                    {theme.selectedText, theme.selection},
                    {theme.selectedPath, theme.selection},
                };
                for (const QColor& inRow : {theme.name, theme.nameMark, theme.path, theme.pathMark,
                                            theme.info, theme.accent})
                    for (const QColor& under : {ground, theme.otherSelection})
                        pairs.emplace_back(inRow, under);
                for (const auto& [text, under] : pairs)
                    EXPECT_GE(contrast::ratio(text, under), highContrast ? 7 : 4.5)
                        << text.name().toStdString() << " on " << under.name().toStdString()
                        << " of hue " << percent;
            }
}

TEST_F(ThemeTest, ContrastIsThatOfTheGuidelines) {
    EXPECT_NEAR(contrast::ratio(Qt::black, Qt::white), 21, 0.01);
    EXPECT_NEAR(contrast::ratio(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.01);
    EXPECT_NEAR(contrast::ratio(QColor(0, 0, 0, 0), Qt::white), 1, 0.01);
}

TEST_F(ThemeTest, KeepsTheColoursOfPathsByHueAsFarAsTheyCanBeRead) {
    const auto expectColour = [](const QColor& colour, float saturation, float least, float most) {
        EXPECT_NEAR(colour.hsvHueF(), Theme::kOwnHue, 0.01);
        EXPECT_NEAR(colour.hsvSaturationF(), saturation, 0.02);
        EXPECT_GE(colour.valueF(), least - 0.005F);
        EXPECT_LE(colour.valueF(), most + 0.005F);
    };
    const Theme dark = Theme::make(Theme::kOwnHue, true, QFont());
    expectColour(dark.path, 0.2F, 0.5F, 0.7F);
    expectColour(dark.pathMark, 0.3F, 0.4F, 0.72F);
    const Theme light = Theme::make(Theme::kOwnHue, false, QFont());
    expectColour(light.path, 0.1F, 0.4F, 0.5F);
    expectColour(light.pathMark, 0.3F, 0.1F, 0.1F);
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

TEST_F(ThemeTest, TextScaleIsOfAllFontsButNotOfThoseForScaledPainters) {
    const Theme theme = Theme::make(0.3, {.textScale = 1.5}, QFont());
    EXPECT_EQ(theme.info13.pixelSize(), 20);
    EXPECT_EQ(theme.inUnits().info13.pixelSize(), 13);
    EXPECT_EQ(theme.zoomed(theme.inUnits().pathFont).pixelSize(), 21);
}
