#pragma once
#include <QColor>
#include <QMargins>
#include <QRect>
#include <cstdint>

#include "screen/keyCodes.h"

/// What our window needs of the X server beyond what Qt tells it, and what a key writes. Under
/// other platforms than X11 nothing happens and no key has a symbol.
/// Owner:   none. Threads: main, after QApplication is made. Calls wait for the X server unless
///          they say otherwise.
/// Fails:   silently: a window manager that does not know a hint passes it over.
namespace WindowHints {

/// Before each showing: the window stays out of task bars and pagers, the window manager learns how
/// far its shadow reaches, in device pixels, and until we have painted what a growing window adds,
/// it has this colour.
void prepareWindow(uintptr_t window, const QMargins& shadow, const QColor& ground);
/// Clicks beside this part of the window, in device pixels, go to what is behind it. An empty one
/// takes that back. Does not wait.
void takeClicksIn(uintptr_t window, const QRect& part);

/// The keysym that a key has without modifiers. scanCode: evdev's plus 8; group: of the key map,
/// from 0. 0: none.
uint32_t keySymbol(uint32_t scanCode, unsigned group);
/// The same; empty where there is no X server to ask, so that what a key's event says counts.
KeySymbols keySymbols();

}  // namespace WindowHints
