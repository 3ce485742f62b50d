#include "platform/linux/ApplicationId.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

#include "support/TemporaryFolder.h"

TEST(ApplicationId, ControlGroupsNameTheUnit) {
    const struct {
        const char *text, *id;
    } cases[] = {
        {"0::/user.slice/app.slice/app-gnome-org.gnome.Nautilus-1234.scope\n",
         "org.gnome.Nautilus"},
        {"0::/a/app-org.kde.konsole-abc123.scope", "org.kde.konsole"},
        {"0::/a/app-org.kde.dolphin@77.service\n", "org.kde.dolphin"},
        {"0::/a/app-gnome-firefox\\x2desr-9.scope\n", "firefox-esr"},
        {"1:name=systemd:/x\n0::/a/app-flatpak-org.example.App-5.scope\n", "org.example.App"},
        {"0::/user.slice/session-2.scope\n", ""},
        {"0::/a/dbus.service\n", ""},
        {"0::/a/app-\n", ""},
        {"", ""},
    };
    for (const auto& [text, id] : cases) EXPECT_EQ(applicationId::fromControlGroup(text), id);
}

TEST(ApplicationId, TheEnvironmentNamesTheDesktopFileOfThatProcessAlone) {
    using namespace std::string_literals;
    const std::string text =
        "HOME=/home/a\0GIO_LAUNCHED_DESKTOP_FILE=/usr/share/applications/org.x.Y.desktop\0"
        "GIO_LAUNCHED_DESKTOP_FILE_PID=42\0"s;
    EXPECT_EQ(applicationId::fromEnvironment(text, 42), "org.x.Y");
    EXPECT_EQ(applicationId::fromEnvironment(text, 43), "");
    EXPECT_EQ(applicationId::fromEnvironment("HOME=/home/a", 0), "");
    EXPECT_EQ(applicationId::fromEnvironment("", 1), "");
}

// One test: GLib looks at the desktop's folders once.
TEST(ApplicationId, AWindowIsOfTheProgramWhoseDesktopFileFits) {
    TemporaryFolder folder;
    const std::string begin = "[Desktop Entry]\nType=Application\nName=x\nExec=true\n";
    folder.file("data/applications/org.x.Paint.desktop", begin + "StartupWMClass=Painter\n");
    folder.file("data/applications/plain.desktop", begin);
    setenv("XDG_DATA_HOME", folder.at("none").c_str(), 1);
    setenv("XDG_DATA_DIRS", folder.at("data").c_str(), 1);
    const auto id = [](applicationId::WindowFacts facts) { return applicationId::ofWindow(facts); };
    EXPECT_EQ(id({.gtkId = "org.g.App", .instance = "plain", .className = "Painter"}), "org.g.App");
    EXPECT_EQ(id({.gtkId = {}, .instance = "x", .className = "Painter"}), "org.x.Paint");
    EXPECT_EQ(id({.gtkId = {}, .instance = "x", .className = "Plain"}), "plain");
    EXPECT_EQ(id({.gtkId = {}, .instance = "plain", .className = "Other"}), "plain");
    EXPECT_EQ(id({.gtkId = {}, .instance = "x", .className = "../Other"}), "../Other");
    EXPECT_EQ(id({}), "");
    const auto self = unsigned(getpid());
    EXPECT_EQ(id({.gtkId = {}, .instance = {}, .className = {}, .pid = self}), "test_linux");
    EXPECT_EQ(applicationId::fileOf("plain", 0),
              folder.at("data/applications/plain.desktop").path());
    EXPECT_TRUE(applicationId::fileOf("nobody", self).ends_with("/test_linux"));
    EXPECT_EQ(applicationId::fileOf("nobody", 0), "");
    unsetenv("XDG_DATA_HOME");
    unsetenv("XDG_DATA_DIRS");
}
