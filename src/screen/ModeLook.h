#pragma once

/// Hue, saturation, brightness and alpha, each from 0 to 1.
struct Colour {
    double hue = 0;
    double saturation = 0;
    double brightness = 0;
    double alpha = 1;
    friend bool operator==(const Colour&, const Colour&) = default;
};

/// How a piece of a row's text looks. Sizes in the screen's units.
struct TextAttributes {
    enum class Weight { thin, regular };
    enum class Elide { middle, start };
    Colour colour = {};
    Weight weight = Weight::thin;
    double size = 17;
    Elide elide = Elide::middle;
    bool underline = false;
    friend bool operator==(const TextAttributes&, const TextAttributes&) = default;
};

/// The colours that a mode gives the window.
struct ModeLook {
    bool isDark = false;
    Colour background = {};
    Colour oddRow = {};
    Colour evenRow = {};
    Colour selectedText = {};
    TextAttributes normalFile = {}, hiliteFile = {}, normalPath = {}, hilitePath = {};
    friend bool operator==(const ModeLook&, const ModeLook&) = default;
};
