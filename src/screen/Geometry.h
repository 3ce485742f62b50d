#pragma once
#include <cstddef>

/// Places on the screen in its own units, before any scaling. The origin is at the bottom left and
/// y goes up; views turn it over for the desktop.
struct Point {
    double x = 0;
    double y = 0;
    friend bool operator==(const Point&, const Point&) = default;
};

struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    friend bool operator==(const Rect&, const Rect&) = default;
};

/// A stretch of text in UTF-16 units.
struct TextRange {
    size_t location = 0;
    size_t length = 0;
    friend bool operator==(const TextRange&, const TextRange&) = default;
};
