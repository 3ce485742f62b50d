#pragma once
#include "screen/KeyEvent.h"
#include "screen/keyCodes.h"

class QKeyEvent;

/// From the events of the toolkit to the program's. keySymbols may be empty: then the symbols that
/// the event itself carries have to do. A modifier key is a change of the flags, which then are
/// those after it. Threads: main.
KeyEvent keyEventFrom(const QKeyEvent& event, const KeySymbols& keySymbols);

/// Alt or Super with a key that writes something: the toolkit's editors would take it for typing,
/// such as the repeats of a command whose key is held down.
bool isCombinationWithText(const QKeyEvent& event);
