#pragma once
#include <exception>

#include "util/log.h"

/// Calls f; an exception out of it ends here, as a line of the log. Every loop that runs blocks of
/// others does it so: one block that fails takes neither its thread nor the program with it.
template <class F>
void runGuarded(F&& f) noexcept {
    try {
        f();
    } catch (const std::exception& exception) {
        logError("Caught exception: %s", exception.what());
    } catch (...) {
        logError("Caught exception: of an unknown kind");
    }
}
