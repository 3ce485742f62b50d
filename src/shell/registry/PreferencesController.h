#pragma once
#include <nlohmann/json_fwd.hpp>

#include "shell/registry/builtinShortcuts.h"
#include "util/FileURL.h"

class OVUserDefaults;

/// The table of defaults of all settings that have one, and the switches of the settings window.
/// Threads: any.
class PreferencesController {
  public:
    struct Environment {
        FileURL home;
        FileURL library = home.appending("Library");
        /// Leave the folders of cloud storage out of the default project where there are none.
        bool onlyExistingFolders = false;
        KeyLayout layout = KeyLayout::qwerty;
    };

    /// An object of the 45 keys. The default project gets a new identity each time, and is the
    /// current one.
    static nlohmann::json userDefaults(const Environment& environment);
    /// Registers them; at launch, before anything else reads a setting.
    static void setupUserDefaults(OVUserDefaults& settings, const Environment& environment);
    /// Every warning that was switched off is shown again.
    static void resetWarnings(OVUserDefaults& settings);
};
