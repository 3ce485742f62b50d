#include "util/UserFolders.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

namespace userFolders {
namespace {

FileURL fromEnvironment(const char* name) {
    const char* value = std::getenv(name);
    return value && value[0] == '/' ? FileURL::standardized(value) : FileURL();
}

FileURL ownFolderIn(const char* variable, std::string_view otherwiseInHome) {
    FileURL base = fromEnvironment(variable);
    if (base.empty()) base = home().appending(otherwiseInHome);
    return base.appending("trovast");
}

}  // namespace

FileURL home() {
    if (FileURL url = fromEnvironment("HOME"); !url.empty()) return url;
    const passwd* user = getpwuid(getuid());
    if (user && user->pw_dir && user->pw_dir[0] == '/') return FileURL::standardized(user->pw_dir);
    return FileURL("/");
}

FileURL configuration() {
    return ownFolderIn("XDG_CONFIG_HOME", ".config");
}
FileURL state() {
    return ownFolderIn("XDG_STATE_HOME", ".local/state");
}

}  // namespace userFolders
