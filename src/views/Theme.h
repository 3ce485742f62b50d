#pragma once
#include <QColor>
#include <QFont>
#include <QPalette>

#include "views/DesktopLook.h"

/// Colours and fonts of our windows, derived from one hue and from light or dark. Each text
/// stands at 4.5 to 1 at least against every ground that it comes on, at 7 to 1 in high contrast.
/// Owner:   the window, which makes it anew when the mode's look or the desktop's font changes.
/// Units:   font sizes are logical pixels, the desktop's text scale included.
struct Theme {
    bool dark = false;
    bool highContrast = false;  // a selection has a frame
    bool lessMotion = false;
    double zoom = 1;  // the desktop's text scale: of all that must fit the text

    QColor background, border, separator;
    QColor fieldText, placeholder, symbol;
    QColor name, nameMark, path, pathMark;
    QColor selection, selectedText, selectedPath, otherSelection;  // the last: without the keyboard
    QColor info, error, accent, scroller;
    QColor regexpTerm, errorTerm, incompleteTerm;  // in the search field
    QColor token;                                  // what can be typed

    /// The marks of matched letters are heavier than the text around them. Where the desktop's font
    /// has no light face, both are one step heavier.
    QFont field, nameFont, nameMarkFont, pathFont, pathMarkFont, info13;
    /// Whether the fonts can draw the pictures of control characters (U+2400 and on).
    bool hasControlPictures = false;
    /// Whether some font of the desktop has the small pictures before metadata.
    bool hasPictures = false;

    /// hue: from 0 to 1.
    static Theme make(double hue, const DesktopLook& look, const QFont& desktopFont);
    static Theme make(double hue, bool dark, const QFont& desktopFont) {
        return make(hue, DesktopLook{.isDark = dark}, desktopFont);
    }
    /// The same for a painter that is scaled by zoom: fonts of the sizes at a text scale of 1.
    Theme inUnits() const;
    /// Fonts and text scale of another one, in the colours of this.
    void takeSizesOf(const Theme& other);
    QFont zoomed(QFont unitFont) const;
    /// A length at a text scale of 1, as it is at this one.
    int scaled(double units) const { return qRound(units * zoom); }
    /// info13 in another size at a text scale of 1.
    QFont textFont(int pixels, QFont::Weight weight = QFont::Normal) const;
    /// For a widget of Qt's own that shows or takes text on the window's ground.
    QPalette textColours(QPalette colours) const;
    /// For a line of metadata, whose size is so many pixels.
    static QFont attributeFont(const QFont& desktopFont, int pixels, bool isMark);
    static constexpr double kOwnHue = 0.585;  // where no mode says another
};

/// The same, as a heading has it.
QFont headingFont(QFont font);
