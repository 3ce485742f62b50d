#pragma once
#include <QIcon>

/// The sign of the program, for the desktop's bar and its lists of windows: seen on light and dark.
/// Threads: main.
QIcon programIcon();
