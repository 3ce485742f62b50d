#pragma once
#include <QColor>
#include <QFont>

class QPalette;

/// Colours and fonts of the search window, derived from one hue and from whether the desktop is
/// light or dark. Each text stands at 4.5 to 1 at least against every ground that it comes on.
/// Owner:   SearchWindow, which makes it anew when the desktop's palette or font changes.
/// Units:   font sizes are logical pixels.
struct Theme {
    bool dark = false;

    QColor background, border, separator;
    QColor fieldText, placeholder, symbol;
    QColor name, nameMark, path, pathMark;
    QColor selection, selectedText, selectedPath, otherSelection;  // the last: without the keyboard
    QColor info, error, accent, scroller;

    /// The marks of matched letters are heavier than the text around them. Where the desktop's font
    /// has no light face, both are one step heavier.
    QFont field, nameFont, nameMarkFont, pathFont, pathMarkFont, info13;
    /// Whether the fonts can draw the pictures of control characters (U+2400 and on).
    bool hasControlPictures = false;

    static Theme make(const QPalette& palette, const QFont& desktopFont);
};
