#pragma once

class ModeHost;

/// Remembers the current mode's search text: something was done with what it found. Main thread.
void updateSearchStringHistory(const ModeHost& host);
