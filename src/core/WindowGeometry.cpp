#include "core/WindowGeometry.h"

#include <algorithm>

namespace WindowGeometry {

namespace {
constexpr double kFullHeight = 515;  // of a window with all its rows, for the default place
}

Rect defaultFrame(Rect screen, double width, double height) {
    const double top = screen.height - (screen.height - kFullHeight) / 3;
    const Rect place{screen.width / 2 - width / 2, top - height, width, height};
    if (onScreen(place, screen) == place) return place;
    return {place.x + screen.x, place.y + screen.y, width, height};
}

double heightForRows(long shown, double rowHeight) {
    const auto rows = static_cast<double>(shown);
    return rowHeight * rows + kFieldAndInfoBar + (shown ? kRowSpacing * rows + 2 : 1);
}

long rowLimit(bool maximized, Rect visibleScreen, double rowHeight) {
    if (!maximized || rowHeight <= 0) return kMaxRows;
    const double room = visibleScreen.y + visibleScreen.height - kFieldAndInfoBar - 2;
    return std::max(0L, static_cast<long>(room / (rowHeight + kRowSpacing)));
}

Rect withHeight(Rect frame, double height) {
    return {frame.x, frame.y + frame.height - height, frame.width, height};
}

Rect onScreen(Rect frame, Rect visible) {
    const double x = std::clamp(frame.x, visible.x,
                                std::max(visible.x, visible.x + visible.width - frame.width));
    const double y = std::clamp(frame.y, visible.y,
                                std::max(visible.y, visible.y + visible.height - frame.height));
    return {x, y, frame.width, frame.height};
}

}  // namespace WindowGeometry
