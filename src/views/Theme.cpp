#include "views/Theme.h"

#include <QFontDatabase>
#include <QFontMetrics>
#include <QGlyphRun>
#include <QTextLayout>

#include "views/Contrast.h"

namespace {

/// A colour of the one hue.
struct Hue {
    float hue;
    QColor operator()(double saturation, double brightness, double alpha = 1) const {
        return QColor::fromHsvF(hue, float(saturation), float(brightness), float(alpha));
    }
};

bool hasLightFace(const QString& family) {
    for (const QString& style : QFontDatabase::styles(family)) {
        const int weight = QFontDatabase::weight(family, style);
        if (weight > 0 && weight <= QFont::Light) return true;
    }
    return false;
}

QFont sized(QFont font, int pixels, QFont::Weight weight) {
    font.setPixelSize(pixels);
    font.setWeight(weight);
    return font;
}

/// With whatever font stands in for the one that is asked for.
bool canDraw(const QFont& font, const QString& text) {
    QTextLayout layout(text, font);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    for (const QGlyphRun& run : layout.glyphRuns())
        if (run.glyphIndexes().contains(0)) return false;
    return true;
}

void setFonts(Theme& theme, const QFont& desktopFont) {
    const bool light = hasLightFace(desktopFont.family());
    const QFont::Weight thin = light ? QFont::Light : QFont::Normal;
    const QFont::Weight marked = light ? QFont::Normal : QFont::DemiBold;
    theme.field = sized(desktopFont, 25, thin);
    theme.nameFont = sized(desktopFont, 17, thin);
    theme.nameMarkFont = sized(desktopFont, 17, marked);
    theme.pathFont = sized(desktopFont, 14, thin);
    theme.pathMarkFont = sized(desktopFont, 14, marked);
    theme.info13 = sized(desktopFont, 13, QFont::Normal);
    constexpr QChar kPictureOfLineFeed(0x240A);
    theme.hasPictures = canDraw(theme.info13, QString::fromUtf8("✨📎👤🔒"));
    theme.hasControlPictures = QFontMetrics(theme.nameFont).inFont(kPictureOfLineFeed);
}

void setDarkColours(Theme& theme, const Hue& hsb) {
    theme.background = hsb(0.26, 0.125);
    theme.border = hsb(0.15, 0.9, 0.16);
    theme.separator = hsb(0.15, 0.9, 0.10);
    theme.fieldText = hsb(0.05, 0.97);
    theme.placeholder = hsb(0.18, 0.60);
    theme.symbol = hsb(0.35, 0.78);
    theme.name = hsb(0.1, 1.0);
    theme.nameMark = hsb(0.2, 0.9);
    theme.path = hsb(0.2, 0.5);
    // Kept: darker than the path around it; weight and underline make the mark.
    theme.pathMark = hsb(0.3, 0.4);
    theme.selection = hsb(0.72, 0.58);
    theme.otherSelection = hsb(0.30, 0.22);
    theme.selectedText = hsb(0.1, 1.0);
    theme.selectedPath = hsb(0.1, 1.0, 0.87);
    theme.info = hsb(0.15, 0.58);
    theme.error = QColor::fromHsvF(0.0F, 0.55F, 1.0F);
    theme.regexpTerm = QColor::fromHsvF(0.36F, 0.45F, 0.85F);
    theme.errorTerm = QColor::fromHsvF(0.0F, 0.55F, 1.0F);
    theme.incompleteTerm = QColor::fromHsvF(0.10F, 0.65F, 1.0F);
    theme.accent = hsb(0.6, 0.95);
    theme.scroller = hsb(0.1, 0.8, 0.35);
}

void setLightColours(Theme& theme, const Hue& hsb) {
    theme.background = hsb(0.015, 0.985);
    theme.border = hsb(0.5, 0.2, 0.22);
    theme.separator = hsb(0.5, 0.2, 0.12);
    theme.fieldText = hsb(0.3, 0.14);
    theme.placeholder = hsb(0.10, 0.46);
    theme.symbol = hsb(0.45, 0.55);
    theme.name = hsb(0.1, 0.1, 0.8);
    theme.nameMark = hsb(0.3, 0.2, 0.8);
    theme.path = hsb(0.1, 0.5);
    theme.pathMark = hsb(0.3, 0.1);
    theme.selection = hsb(0.80, 0.68);
    theme.otherSelection = hsb(0.07, 0.93);
    theme.selectedText = Qt::white;
    theme.selectedPath = QColor(255, 255, 255, 222);
    theme.info = hsb(0.15, 0.45);
    theme.error = QColor::fromHsvF(0.0F, 0.85F, 0.75F);
    theme.regexpTerm = QColor::fromHsvF(0.36F, 0.95F, 0.50F);
    theme.errorTerm = QColor::fromHsvF(0.0F, 0.85F, 0.75F);
    theme.incompleteTerm = QColor::fromHsvF(0.08F, 1.0F, 0.72F);
    theme.accent = hsb(0.78, 0.80);
    theme.scroller = hsb(0.3, 0.3, 0.35);
}

}  // namespace

QFont Theme::attributeFont(const QFont& desktopFont, int pixels, bool isMark) {
    return sized(desktopFont, pixels, isMark ? QFont::DemiBold : QFont::Normal);
}

Theme Theme::make(double hue, bool dark, const QFont& desktopFont) {
    Theme theme;
    theme.dark = dark;
    const Hue hsb{float(hue)};
    if (dark)
        setDarkColours(theme, hsb);
    else
        setLightColours(theme, hsb);
    // Yellow and green are lighter than blue of the same brightness.
    theme.selection = contrast::groundFor(theme.selectedPath, theme.selection);
    for (QColor* text : {&theme.placeholder, &theme.info, &theme.accent, &theme.regexpTerm,
                         &theme.errorTerm, &theme.incompleteTerm})
        *text = contrast::textOn(theme.background, *text);
    theme.token = theme.incompleteTerm;
    setFonts(theme, desktopFont);
    return theme;
}
