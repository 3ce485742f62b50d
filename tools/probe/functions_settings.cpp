#include "Ops.h"
#include "Stored.h"
#include "shell/registry/PreferencesController.h"

/// The table of settings.
namespace ops {

json settingsDefaults(const Fields& request, Session&) {
    const json defaults = PreferencesController::userDefaults(
        {.home = request.absolutePath("home"), .library = request.absolutePath("library")});
    return {{"defaults", carriedFromStored(defaults)}};
}

}  // namespace ops
