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
        // Thinner ones are for headlines: at our sizes their strokes fade.
        if (weight > QFont::ExtraLight && weight <= QFont::Light) return true;
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

void setFonts(Theme& theme, const QFont& desktopFont, double zoom) {
    const bool light = !theme.highContrast && hasLightFace(desktopFont.family());
    const QFont::Weight thin = light ? QFont::Light : QFont::Normal;
    const QFont::Weight marked = light ? QFont::Normal : QFont::DemiBold;
    const auto pixels = [&](int size) { return qRound(size * zoom); };
    theme.field = sized(desktopFont, pixels(25), thin);
    theme.nameFont = sized(desktopFont, pixels(17), thin);
    theme.nameMarkFont = sized(desktopFont, pixels(17), marked);
    theme.pathFont = sized(desktopFont, pixels(14), thin);
    theme.pathMarkFont = sized(desktopFont, pixels(14), marked);
    theme.info13 = sized(desktopFont, pixels(13), QFont::Normal);
    constexpr QChar kPictureOfLineFeed(0x240A);
    theme.hasPictures = canDraw(theme.info13, QString::fromUtf8("✨📎👤🔒"));
    theme.hasControlPictures = canDraw(theme.nameFont, QString(kPictureOfLineFeed));
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
    // Kept: no lighter than the path around it; weight and underline make the mark. Both are made
    // lighter below, as far as it takes to read them.
    theme.pathMark = hsb(0.3, 0.4);
    theme.selection = hsb(0.72, 0.58);
    theme.otherSelection = hsb(0.30, 0.19);
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

/// Black and white, and the hue in what is marked.
void setHighContrast(Theme& theme) {
    const QColor ground = theme.dark ? Qt::black : Qt::white;
    const QColor text = theme.dark ? Qt::white : Qt::black;
    theme.background = theme.otherSelection = ground;
    theme.border = theme.separator = theme.scroller = text;
    for (QColor* each :
         {&theme.fieldText, &theme.symbol, &theme.name, &theme.path, &theme.info, &theme.selection})
        *each = text;
    theme.selectedText = theme.selectedPath = ground;
    theme.nameMark = theme.pathMark = theme.accent;
}

void makeReadable(Theme& theme) {
    const double least = theme.highContrast ? contrast::kHigh : contrast::kReadable;
    // Yellow and green are lighter than blue of the same brightness.
    if (!theme.highContrast)
        theme.selection = contrast::groundFor(theme.selectedPath, theme.selection);
    for (QColor* text : {&theme.placeholder, &theme.info, &theme.error, &theme.accent,
                         &theme.regexpTerm, &theme.errorTerm, &theme.incompleteTerm})
        *text = contrast::textOn(theme.background, *text, least);
    // A row's ground may be that of a selection without the keyboard.
    for (QColor* text :
         {&theme.name, &theme.nameMark, &theme.path, &theme.pathMark, &theme.info, &theme.accent})
        *text = contrast::textOn(theme.otherSelection,
                                 contrast::textOn(theme.background, *text, least), least);
}

}  // namespace

QPalette Theme::textColours(QPalette colours) const {
    colours.setColor(QPalette::Base, Qt::transparent);
    colours.setColor(QPalette::Window, background);
    colours.setColor(QPalette::Text, fieldText);
    colours.setColor(QPalette::PlaceholderText, placeholder);
    colours.setColor(QPalette::Highlight, selection);
    colours.setColor(QPalette::HighlightedText, selectedText);
    return colours;
}

QFont headingFont(QFont font) {
    font.setWeight(QFont::DemiBold);
    return font;
}

QFont Theme::attributeFont(const QFont& desktopFont, int pixels, bool isMark) {
    return sized(desktopFont, pixels, isMark ? QFont::DemiBold : QFont::Normal);
}

Theme Theme::make(double hue, const DesktopLook& look, const QFont& desktopFont) {
    Theme theme;
    theme.dark = look.isDark;
    theme.highContrast = look.highContrast;
    theme.lessMotion = look.lessMotion;
    theme.zoom = look.textScale;
    const Hue hsb{float(hue)};
    if (look.isDark)
        setDarkColours(theme, hsb);
    else
        setLightColours(theme, hsb);
    if (look.highContrast) setHighContrast(theme);
    makeReadable(theme);
    theme.token = theme.incompleteTerm;
    setFonts(theme, desktopFont, theme.zoom);
    return theme;
}

Theme Theme::inUnits() const {
    Theme theme = *this;
    if (zoom != 1) setFonts(theme, field, 1);
    return theme;
}

void Theme::takeSizesOf(const Theme& other) {
    zoom = other.zoom;
    for (QFont Theme::*font : {&Theme::field, &Theme::nameFont, &Theme::nameMarkFont,
                               &Theme::pathFont, &Theme::pathMarkFont, &Theme::info13})
        this->*font = other.*font;
}

QFont Theme::textFont(int pixels, QFont::Weight weight) const {
    return sized(info13, scaled(pixels), weight);
}

QFont Theme::zoomed(QFont unitFont) const {
    unitFont.setPixelSize(qRound(unitFont.pixelSize() * zoom));
    return unitFont;
}
