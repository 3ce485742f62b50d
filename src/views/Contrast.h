#pragma once
#include <QColor>

/// How well a text can be read on its ground, by the Web Content Accessibility Guidelines.
/// Threads: any.
namespace contrast {

/// From 1, the same, to 21, black on white.
double ratio(const QColor& text, const QColor& ground);
/// The ground, as much darker as it takes for the text to stand at 4.5 to 1.
QColor groundFor(const QColor& text, QColor ground);
/// The text, lighter or darker, away from the ground, until it stands at 4.5 to 1.
QColor textOn(const QColor& ground, QColor text);

}  // namespace contrast
