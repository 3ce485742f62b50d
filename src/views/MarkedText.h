#pragma once
#include <QString>
#include <string>
#include <vector>

#include "screen/Geometry.h"
#include "util/FunctionRef.h"

/// A text with some of its letters marked, and how it is made to fit its place.
/// Threads: any. Units: marks count UTF-16 units of the text, ascending.
struct MarkedText {
    QString text;
    std::vector<TextRange> marks;
};

/// What is safe to paint: control and direction characters become visible marks, unit for unit;
/// line breaks too. Without pictures of them in the font, control characters all get one mark.
QString plainText(const std::string& utf8, bool hasControlPictures = true);
/// The same, but lines stay lines.
QString plainLines(const std::string& utf8);
/// The same for a tool tip: lines stay lines, and what looks like markup is not taken for it.
QString plainToolTip(const std::string& utf8);

/// Takes out as much as it must, so that the text is no wider than width. The marked letters stay
/// in sight first, then the beginning and the end (where the extension stands), then what is around
/// these. Letters with their accents are not torn apart. Each hole shows as an ellipsis.
MarkedText elidedAroundMarks(const MarkedText& whole, double width,
                             FunctionRef<double(const QString&)> widthOf);

/// Keeps the components of a path in their order from left to right whatever script they are
/// written in, by invisible isolating characters.
MarkedText isolatingPathComponents(const MarkedText& path);
