#include "core/WindowPlace.h"

#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <optional>

#include "core/WindowGeometry.h"
#include "core/state/GlobalState.h"
#include "util/settings/OVUserDefaults.h"

namespace {

constexpr auto kTopLeft = "searchPanelTopLeft", kWidth = "searchPanelWidth";
constexpr double kWidthWithoutStored = 560, kNarrowest = 300;

/// "{1440, 900}": how sizes and points are stored.
std::string pairText(double first, double second) {
    char text[64];
    (void)std::snprintf(text, sizeof text, "{%.15g, %.15g}", first, second);
    return text;
}

std::optional<Point> pointFromText(const nlohmann::json& stored) {
    Point point;
    if (!stored.is_string() ||
        std::sscanf(stored.get_ref<const std::string&>().c_str(), " { %lf , %lf }", &point.x,
                    &point.y) != 2 ||
        !std::isfinite(point.x) || !std::isfinite(point.y))
        return std::nullopt;
    return point;
}

nlohmann::json entry(const char* setting, const std::string& key) {
    const auto stored = OVUserDefaults::sharedInstance().dictionaryForKey(setting);
    return stored.is_object() ? stored.value(key, nlohmann::json()) : nlohmann::json();
}

void setEntry(const char* setting, const std::string& key, nlohmann::json value) {
    auto& settings = OVUserDefaults::sharedInstance();
    auto stored = settings.dictionaryForKey(setting);
    if (!stored.is_object()) stored = nlohmann::json::object();
    stored[key] = std::move(value);
    settings.setObject(std::move(stored), setting);
}

bool isResizable() {
    return OVUserDefaults::sharedInstance().boolForKey("resizableSearchWindow");
}

}  // namespace

void WindowPlace::restoreWindowPosition() {
    const Rect screen = window_.screenFrame();
    const std::string key = pairText(screen.width, screen.height);
    Rect frame = window_.frame();
    if (const auto topLeft = pointFromText(entry(kTopLeft, key))) {
        frame.x = topLeft->x;
        frame.y = topLeft->y - frame.height;
        if (isResizable()) {
            const auto width = entry(kWidth, key);
            frame.width = width.is_number() ? width.get<double>() : kWidthWithoutStored;
            frame.width = std::clamp(frame.width, kNarrowest, std::max(kNarrowest, screen.width));
        }
    } else {
        frame = WindowGeometry::defaultFrame(screen, frame.width, frame.height);
    }
    // A screen may have gone, or another program may have written the settings.
    window_.setFrame(WindowGeometry::onScreen(frame, window_.visibleScreenFrameFor(frame)), false);
}

void WindowPlace::persistWindowPosition() {
    if (GlobalState::sharedInstance().maximized().value()) return;
    const Rect screen = window_.screenFrame();
    const Rect frame = window_.frame();
    const std::string key = pairText(screen.width, screen.height);
    setEntry(kTopLeft, key, pairText(frame.x, frame.y + frame.height));
    if (isResizable()) setEntry(kWidth, key, frame.width);
}
