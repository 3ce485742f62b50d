#include "util/FileIO.h"

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <random>

#include "util/TestSupport.h"
#include "util/UserFolders.h"
#include "util/Uuid.h"

TEST(FileIO, ReadsRegularFilesUpToTheLimit) {
    const TemporaryFolder folder;
    const FileURL url = folder.file("f");
    setContent(url, std::string("a\0b", 3));
    chmod(url.c_str(), 0640);
    const auto content = readFile(url, 3);
    ASSERT_TRUE(content);
    EXPECT_EQ(content.value().bytes, std::string("a\0b", 3));
    EXPECT_EQ(content.value().mode, 0640u);
    EXPECT_EQ(content.value().owner, geteuid());
    EXPECT_EQ(readFile(url, 2).error().code, EFBIG);
    EXPECT_EQ(readFile(folder.url(), 100).error().code, EISDIR);
    EXPECT_EQ(readFile(folder.file("none"), 100).error().code, ENOENT);
    ASSERT_EQ(mkfifo(folder.file("pipe").c_str(), 0600), 0);
    EXPECT_EQ(readFile(folder.file("pipe"), 100).error().code, EINVAL) << "and does not wait";
    EXPECT_TRUE(readFile(FileURL("/proc/self/status"), 100'000)) << "its size says 0";
}

TEST(FileIO, ReplacesKeepsAndLeavesNothingBehind) {
    const TemporaryFolder folder;
    const FileURL url = folder.file("f"), old = folder.file("f.bak");
    EXPECT_TRUE(replaceFile(url, "1", 0600, old));
    EXPECT_EQ(access(old.c_str(), F_OK), -1);
    EXPECT_TRUE(replaceFile(url, "2", 0600, old));
    EXPECT_TRUE(replaceFile(url, "3", 0620, old));
    EXPECT_EQ(contentOf(url), "3");
    EXPECT_EQ(contentOf(old), "2");
    struct stat info;
    ASSERT_EQ(stat(url.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0620u) << "whatever the umask says";
    EXPECT_EQ(info.st_nlink, 1u);
    ASSERT_EQ(mkdir(folder.file("folder").c_str(), 0700), 0);
    EXPECT_FALSE(replaceFile(folder.file("folder"), "x", 0600));
    EXPECT_FALSE(replaceFile(folder.file("none").appending("f"), "x", 0600));
    size_t names = 0;
    for (const char* name : {"f", "f.bak", "folder"})
        names += unlink(folder.file(name).c_str()) == 0;
    EXPECT_EQ(names, 2u);
    rmdir(folder.file("folder").c_str());
    EXPECT_EQ(rmdir(folder.url().c_str()), 0) << "nothing else was in it";
    mkdir(folder.url().c_str(), 0700);
}

TEST(FileIO, WhatAKillLeftIsRemovedLater) {
    const TemporaryFolder folder;
    const FileURL old = folder.file(".f.new-0011223344556677"), young = folder.file(".f.new-00"),
                  other = folder.file(".g.new-00");
    for (const FileURL& url : {old, young, other}) setContent(url, "x");
    const timespec hourAgo[2] = {{std::time(nullptr) - 3600, 0}, {std::time(nullptr) - 3600, 0}};
    for (const FileURL& url : {old, other}) utimensat(AT_FDCWD, url.c_str(), hourAgo, 0);
    removeStaleReplacements(folder.file("f"));
    EXPECT_EQ(access(old.c_str(), F_OK), -1);
    EXPECT_EQ(access(young.c_str(), F_OK), 0);
    EXPECT_EQ(access(other.c_str(), F_OK), 0);
}

// Killed at any moment, the file holds one of the states written, whole, and none older than the
// last one that was reported written.
TEST(FileIO, AKillLosesNothing) {
    const TemporaryFolder folder;
    const FileURL url = folder.file("f"), backup = folder.file("f.bak");
    std::mt19937 random(11);
    const auto state = [](int n) { return std::string(20'000, static_cast<char>('a' + n % 26)); };
    for (int round = 0; round < 40; round++) {
        int progress[2];
        ASSERT_EQ(pipe(progress), 0);
        const pid_t child = fork();
        if (child == 0) {
            for (char n = 0;; n = static_cast<char>((n + 1) % 26))
                if (!replaceFile(url, state(n), 0600, backup) || write(progress[1], &n, 1) != 1)
                    _exit(1);
        }
        close(progress[1]);
        char done = -1;
        ASSERT_EQ(read(progress[0], &done, 1), 1);
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 5000));
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status)) << "a write failed";
        while (read(progress[0], &done, 1) == 1) {}
        close(progress[0]);
        const std::string found = contentOf(url);
        ASSERT_TRUE(found == state(done) || found == state(done + 1)) << found.size();
        const std::string kept = contentOf(backup);
        ASSERT_TRUE(kept.empty() || kept == state(kept[0] - 'a'));
    }
}

TEST(FileIO, AFullDiskLeavesTheOldFileAndNothingElse) {
    const TemporaryFolder folder;
    const FileURL url = folder.file("f");
    ASSERT_TRUE(replaceFile(url, "old", 0600));
    const pid_t child = fork();
    if (child == 0) {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {1000, 1000};
        setrlimit(RLIMIT_FSIZE, &limit);
        const auto result = replaceFile(url, std::string(20'000, 'x'), 0600);
        _exit(!result && result.error().code == EFBIG ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(contentOf(url), "old");
    EXPECT_EQ(unlink(url.c_str()), 0);
    EXPECT_EQ(rmdir(folder.url().c_str()), 0) << "nothing else was in it";
    mkdir(folder.url().c_str(), 0700);
}

TEST(FileIO, PrivateFoldersAreMadeAndClosed) {
    const TemporaryFolder folder;
    const FileURL deep = folder.file("a").appending("b").appending("c");
    EXPECT_TRUE(makePrivateFolder(deep));
    EXPECT_TRUE(makePrivateFolder(deep));
    chmod(deep.c_str(), 0755);
    EXPECT_TRUE(makePrivateFolder(deep));
    struct stat info;
    ASSERT_EQ(stat(deep.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0700u);
    setContent(folder.file("file"), "");
    EXPECT_EQ(makePrivateFolder(folder.file("file")).error().code, ENOTDIR);
    EXPECT_EQ(makePrivateFolder(folder.file("file").appending("x")).error().code, ENOTDIR);
}

TEST(UserFolders, FollowTheVariablesThatAreAbsolute) {
    setenv("HOME", "/home/me", 1);
    unsetenv("XDG_STATE_HOME");
    setenv("XDG_CONFIG_HOME", "relative", 1);
    EXPECT_EQ(userFolders::configuration().path(), "/home/me/.config/trovast");
    EXPECT_EQ(userFolders::state().path(), "/home/me/.local/state/trovast");
    setenv("XDG_CONFIG_HOME", "/c//d/", 1);
    setenv("XDG_STATE_HOME", "", 1);
    EXPECT_EQ(userFolders::configuration().path(), "/c/d/trovast");
    EXPECT_EQ(userFolders::state().path(), "/home/me/.local/state/trovast");
    setenv("HOME", "", 1);
    EXPECT_TRUE(userFolders::home().isAbsolute());
    setenv("HOME", "/home/me", 1);
    setenv("XDG_CACHE_HOME", "cache", 1);
    EXPECT_EQ(userFolders::cache().path(), "/home/me/.cache");
    setenv("XDG_CACHE_HOME", "/cache/", 1);
    EXPECT_EQ(userFolders::cache().path(), "/cache");
}

TEST(Uuid, IsRandomOfVersionFour) {
    const std::string a = newUuid(), b = newUuid();
    EXPECT_NE(a, b);
    ASSERT_EQ(a.size(), 36u);
    for (size_t i = 0; i < a.size(); i++) {
        const bool dash = i == 8 || i == 13 || i == 18 || i == 23;
        EXPECT_TRUE(dash ? a[i] == '-' : std::isxdigit(a[i]) && !std::islower(a[i])) << a;
    }
    EXPECT_EQ(a[14], '4');
    EXPECT_NE(std::string_view("89AB").find(a[19]), std::string_view::npos);
}
