#pragma once
#include "screen/Geometry.h"

/// Where the search window stands and how high it is. Pure arithmetic: origin at the bottom left of
/// the screen, y upward, in the screen's units.
namespace WindowGeometry {

constexpr double kDefaultWidth = 638;
constexpr double kRowHeight = 47;   // name and path
constexpr double kLineHeight = 20;  // each line of metadata
constexpr double kRowSpacing = 2;
constexpr double kFieldAndInfoBar = 63;
constexpr long kMaxRows = 10;  // unless maximised

/// The place of a window that has no stored one: centred, its top at a third of the height that a
/// full window leaves. Counted from the origin, or where that is off the screen, from its corner.
Rect defaultFrame(Rect screen, double width, double height);
/// Height of the window that shows so many rows.
double heightForRows(long shown, double rowHeight);
/// How many rows fit: kMaxRows, or what the screen's visible frame holds when maximised.
long rowLimit(bool maximized, Rect visibleScreen, double rowHeight);
/// The frame with a new height and the top edge where it was.
Rect withHeight(Rect frame, double height);
/// The frame moved so that it stands on the screen.
Rect onScreen(Rect frame, Rect visibleScreen);

}  // namespace WindowGeometry
