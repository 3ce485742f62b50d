#pragma once
#include <QColor>
#include <QMargins>
#include <QRect>
#include <cstdint>
#include <functional>
#include <string>

#include "screen/keyCodes.h"
#include "views/DesktopLook.h"

/// What our windows need of the desktop beyond Qt; each may be missing.
struct WindowSystem {
    /// Whether what is behind a translucent window is seen. Missing: no.
    std::function<bool()> isComposited = {};
    /// Before each showing: the native window, how far its shadow reaches around, in device pixels,
    /// and what a growing window shows until it is painted.
    std::function<void(uintptr_t window, QMargins shadow, QColor ground)> prepare = {};
    /// Clicks beside this part of the window, in device pixels, are not ours; empty: all are.
    std::function<void(uintptr_t window, QRect part)> takeClicksIn = {};
    /// Asks for the keyboard.
    std::function<void(uintptr_t window)> activate = {};
    /// Whether a symbolic link leads somewhere, answered later. Missing: all do.
    std::function<void(const std::string& path, std::function<void(bool)> answer)> followLink = {};
    KeySymbols keySymbols = {};
    /// As it is now. After a change each window gets a ThemeChange. Missing: by Qt's palette.
    std::function<DesktopLook()> look = {};
    DesktopLook lookNow() const;
};
