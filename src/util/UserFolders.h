#pragma once
#include "util/FileURL.h"

/// Where the user's things are, by the XDG base directory rules: a variable that is empty or no
/// absolute path counts as unset. Reads the environment: to be called at launch, before threads.
namespace userFolders {

/// $HOME, else what the user database says, else "/".
FileURL home();
/// $XDG_CACHE_HOME or ~/.cache, with the folders of all programs.
FileURL cache();
/// "trovast" in $XDG_CONFIG_HOME or ~/.config: settings.
FileURL configuration();
/// "trovast" in $XDG_STATE_HOME or ~/.local/state: the log.
FileURL state();

}  // namespace userFolders
