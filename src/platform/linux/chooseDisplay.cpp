#include "platform/linux/chooseDisplay.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

DisplayChoice setPlatform(const char* name) {
    setenv("QT_QPA_PLATFORM", name, 1);
    return DisplayChoice::ours;
}

bool answersX11() {
    if (environment("DISPLAY").empty()) return false;
    xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
    const bool answers = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return answers;
}

bool answersWayland() {
    std::string path = environment("WAYLAND_DISPLAY");
    if (path.empty()) return false;
    if (path[0] != '/') path = environment("XDG_RUNTIME_DIR") + "/" + path;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) return false;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0) return false;
    const bool answers =
        connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(fd);
    return answers;
}

}  // namespace

DisplayChoice chooseDisplay() {
    const std::string chosen = environment("QT_QPA_PLATFORM");
    const bool isX11 = chosen.empty() || chosen.starts_with("xcb");
    const bool isWayland = chosen.empty() || chosen.starts_with("wayland");
    if (!isX11 && !isWayland) return DisplayChoice::users;  // such as "offscreen"
    if (isX11 && answersX11()) return chosen.empty() ? setPlatform("xcb") : DisplayChoice::users;
    if (isWayland && answersWayland())
        return chosen.empty() ? setPlatform("wayland") : DisplayChoice::users;
    std::fprintf(stderr,
                 "Trovast needs a display: none answers (DISPLAY is \"%s\", "
                 "WAYLAND_DISPLAY is \"%s\").\n",
                 environment("DISPLAY").c_str(), environment("WAYLAND_DISPLAY").c_str());
    return DisplayChoice::none;
}
