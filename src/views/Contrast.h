#pragma once
#include <QColor>

/// How well a text can be read on its ground, by the Web Content Accessibility Guidelines.
/// Threads: any.
namespace contrast {

/// From 1, the same, to 21, black on white.
double ratio(const QColor& text, const QColor& ground);
/// What normal text takes, and what a desktop of high contrast asks for.
constexpr double kReadable = 4.5, kHigh = 7;
/// The ground, as much darker as it takes for the text to stand at that ratio.
QColor groundFor(const QColor& text, QColor ground, double least = kReadable);
/// The text, lighter or darker, away from the ground, until it stands at that ratio. The hue stays.
QColor textOn(const QColor& ground, QColor text, double least = kReadable);

}  // namespace contrast
