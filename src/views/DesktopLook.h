#pragma once

/// How the desktop wants our windows to look, beyond its fonts.
/// Units:   textScale: 1 is the size that our windows are drawn for.
struct DesktopLook {
    bool isDark = false;
    bool highContrast = false;
    bool lessMotion = false;  // nothing moves that need not
    double textScale = 1;
};
