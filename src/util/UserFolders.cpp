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

FileURL base(const char* variable, std::string_view otherwiseInHome) {
    const FileURL url = fromEnvironment(variable);
    return url.empty() ? home().appending(otherwiseInHome) : url;
}

}  // namespace

FileURL home() {
    if (FileURL url = fromEnvironment("HOME"); !url.empty()) return url;
    const passwd* user = getpwuid(getuid());
    if (user && user->pw_dir && user->pw_dir[0] == '/') return FileURL::standardized(user->pw_dir);
    return FileURL("/");
}

FileURL cache() {
    return base("XDG_CACHE_HOME", ".cache");
}
FileURL configuration() {
    return base("XDG_CONFIG_HOME", ".config").appending("trovast");
}
FileURL state() {
    return base("XDG_STATE_HOME", ".local/state").appending("trovast");
}

}  // namespace userFolders
