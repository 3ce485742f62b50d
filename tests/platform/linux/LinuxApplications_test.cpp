#include "platform/linux/LinuxApplications.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <thread>

#include "support/TemporaryFolder.h"

namespace {

/// A desktop of its own: one application, which shows text and notes down what it was given.
struct Desktop {
    Desktop() {
        script("bin/show",
               "#!/bin/sh\nprintf '%s|%s' \"$1\" \"$QT_QPA_PLATFORM\" > \"$NOTE.new\"\n"
               "mv \"$NOTE.new\" \"$NOTE\"\n");
        folder.file("data/applications/show.desktop",
                    "[Desktop Entry]\nType=Application\nName=Show\nMimeType=text/plain;\nExec=" +
                        folder.at("bin/show").path() + " %f\n");
        folder.file("configuration/mimeapps.list",
                    "[Default Applications]\ntext/plain=show.desktop\n");
        folder.link("data/mime", "/usr/share/mime");
        setenv("XDG_DATA_HOME", folder.at("none").c_str(), 1);
        setenv("XDG_DATA_DIRS", folder.at("data").c_str(), 1);
        setenv("XDG_CONFIG_HOME", folder.at("configuration").c_str(), 1);
        setenv("XDG_CONFIG_DIRS", folder.at("none").c_str(), 1);
        setenv("NOTE", note.c_str(), 1);
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
    }
    ~Desktop() {
        for (const char* name : {"XDG_DATA_HOME", "XDG_DATA_DIRS", "XDG_CONFIG_HOME",
                                 "XDG_CONFIG_DIRS", "NOTE", "QT_QPA_PLATFORM"})
            unsetenv(name);
    }
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    FileURL script(const char* path, const std::string& text) const {
        const FileURL url = folder.file(path, text);
        chmod(url.c_str(), 0700);
        return url;
    }
    /// What the application was given; empty when it did not start.
    std::string shown() const {
        std::string text;
        for (int i = 0; i < 500 && text.empty(); ++i) {
            std::ifstream file(note.path());
            text.assign(std::istreambuf_iterator<char>(file), {});
            if (text.empty()) std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        unlink(note.c_str());
        return text;
    }

    TemporaryFolder folder;
    const FileURL note = folder.at("note");
};

/// With the application that the desktop has for it.
bool opened(LinuxApplications& applications, const FileURL& file) {
    auto application = applications.defaultApplicationForItem(file);
    if (!application) application = applications.defaultApplicationForDataOf(file);
    const auto opener = applications.defaultOpenerOf(file);  // shows the same beforehand
    return application && opener && opener->identifier == *application &&
           applications.openWithApplication({file}, *application);
}

}  // namespace

// One test: GLib looks at the desktop's folders once.
TEST(LinuxApplications, OpensEveryFileAsADocument) {
    const Desktop desktop;
    const FileURL ran = desktop.folder.at("ran");
    const std::string touch = "touch " + ran.path() + "\n";
    LinuxApplications applications(true);
    const FileURL files[] = {
        desktop.folder.file("a \"b\" $c.txt", "text"),
        desktop.folder.file("bytes\xff.txt", "text"),
        desktop.folder.file("of no known type", std::string("\0\1\2\3", 4)),
        desktop.script("run.sh", "#!/bin/sh\n" + touch),
        desktop.script("run.desktop", "[Desktop Entry]\nType=Application\nName=x\nExec=" + touch),
    };
    for (const FileURL& file : files) {
        ASSERT_TRUE(opened(applications, file)) << file.path();
        EXPECT_EQ(desktop.shown(), file.path() + "|");
    }
    EXPECT_NE(access(ran.c_str(), F_OK), 0);

    LinuxApplications keepsUsersChoice(false);
    ASSERT_TRUE(opened(keepsUsersChoice, files[0]));
    EXPECT_EQ(desktop.shown(), files[0].path() + "|offscreen");

    const FileURL folder = desktop.folder.folder("holiday");
    EXPECT_FALSE(applications.defaultApplicationForItem(folder));
    EXPECT_FALSE(applications.defaultApplicationForDataOf(folder));
    EXPECT_FALSE(applications.fileManager("com.apple.Finder"));
    EXPECT_FALSE(applications.defaultApplicationForItem(desktop.folder.at("missing")));
    EXPECT_FALSE(applications.defaultOpenerOf(folder));
    EXPECT_FALSE(applications.defaultOpenerOf(desktop.folder.at("missing")));

    const auto editor = applications.textEditor("com.apple.TextEdit");
    ASSERT_TRUE(editor);
    EXPECT_EQ(applications.textEditor(*editor), editor);
    const auto nobody = applications.openWithApplication({files[0]}, "nobody");
    ASSERT_FALSE(nobody);
    EXPECT_EQ(nobody.error().description, "Found no application to open a \"b\" $c.txt");
}
