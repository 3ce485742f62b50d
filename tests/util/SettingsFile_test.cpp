#include "util/settings/SettingsFile.h"

#include <dirent.h>
#include <sys/stat.h>

#include <nlohmann/json.hpp>

#include "util/TestSupport.h"
#include "util/settings/SettingsGate.h"

namespace {

using nlohmann::json;

/// A settings file in a folder of its own, and what a start makes of it.
struct Start {
    TemporaryFolder folder;
    FileURL url = folder.file("settings.json");
    LogLines log;

    json read() { return SettingsFile(url).read(); }
    /// As a run of the program does it: read, then write with one more key.
    json readAndWrite(const char* key) {
        SettingsFile file(url);
        json object = file.read();
        object[key] = true;
        file.write(object);
        return object;
    }
    std::vector<FileURL> setAside() const {
        std::vector<FileURL> found;
        DIR* list = opendir(folder.url().c_str());
        while (const dirent* entry = readdir(list))
            if (std::string_view(entry->d_name).starts_with("settings.json.corrupt-"))
                found.push_back(folder.file(entry->d_name));
        closedir(list);
        return found;
    }
};

mode_t modeOf(const FileURL& url) {
    struct stat info {};
    lstat(url.c_str(), &info);
    return info.st_mode & 07777;
}

}  // namespace

TEST(SettingsFile, IsMadeForItsUserAlone) {
    Start start;
    start.url = start.folder.file("config").appending("trovast").appending("settings.json");
    start.readAndWrite("a");
    EXPECT_EQ(start.read(), json({{"a", true}}));
    EXPECT_EQ(modeOf(start.url), 0600u);
    EXPECT_EQ(modeOf(start.url.deletingLastPathComponent()), 0700u);
    start.readAndWrite("b");
    EXPECT_EQ(json::parse(contentOf(FileURL(start.url.path() + ".bak"))), json({{"a", true}}));
    EXPECT_EQ(start.log.lines().size(), 0u);
}

TEST(SettingsFile, WhatIsNoObjectIsSetAsideWithEveryByte) {
    const std::string good = json({{"projects", {{{"name", "H\u00e9"}}}}, {"n", 1.5}}).dump();
    std::vector<std::string> corpus = {
        "",
        " ",
        "[]",
        "null",
        "12",
        "\"text\"",
        "{\"a\":1}x",
        "{\"a\":1,}",
        "{a:1}",
        "{\"a\":\"\xff\"}",
        "{\"a\":\"\\ud800\"}",
        "{\"a\":1e999}",
        std::string("{\"a\":1\0}", 8),
        std::string(300, '['),
        "{\"a\":" + std::string(250, '[') + std::string(250, ']') + "}"};
    for (size_t length = 0; length < good.size(); length++)
        corpus.push_back(good.substr(0, length));
    for (const std::string& bad : corpus) {
        Start start;
        setContent(start.url, bad);
        EXPECT_EQ(start.readAndWrite("a"), json({{"a", true}})) << bad;
        ASSERT_EQ(start.setAside().size(), 1u) << bad;
        EXPECT_EQ(contentOf(start.setAside()[0]), bad);
        EXPECT_EQ(start.read(), json({{"a", true}})) << "the next start has what was written";
        EXPECT_EQ(start.log.lines().size(), 1u);
    }
}

TEST(SettingsFile, ReadsWhatOnlyLooksStrange) {
    Start start;
    setContent(start.url, "\xEF\xBB\xBF { \"a\" : 1, \"b\" : \"[[[{{{\\\"\", \"a\": 2 }\n\n");
    EXPECT_EQ(start.read(), json({{"a", 2}, {"b", "[[[{{{\""}})) << "the last of two counts";
    const std::string deep =
        std::string(kMaxSettingsDepth - 1, '[') + std::string(kMaxSettingsDepth - 1, ']');
    setContent(start.url, "{\"a\":" + deep + "}");
    EXPECT_EQ(start.read().size(), 1u);
    EXPECT_EQ(start.log.lines().size(), 0u);
}

TEST(SettingsFile, AHugeFileIsNotRead) {
    Start start;
    setContent(start.url, "{}");
    ASSERT_EQ(truncate(start.url.c_str(), SettingsFile::kMaxBytes + 1), 0);
    EXPECT_EQ(start.read(), json::object());
    EXPECT_EQ(start.setAside().size(), 1u);
}

TEST(SettingsFile, TwoBadFilesOfOneSecondAreBothKept) {
    Start start;
    for (const char* bad : {"one", "two", "three"}) {
        setContent(start.url, bad);
        start.read();
    }
    EXPECT_EQ(start.setAside().size(), 3u);
}

TEST(SettingsFile, TheStateBeforeTakesThePlaceOfABadOne) {
    Start start;
    start.readAndWrite("a");
    start.readAndWrite("b");
    setContent(start.url, "{\"a\": tr");
    EXPECT_EQ(start.read(), json({{"a", true}}));
    EXPECT_EQ(start.setAside().size(), 1u);
    EXPECT_EQ(json::parse(contentOf(start.url)), json({{"a", true}})) << "at once, not at a write";
    EXPECT_EQ(start.log.count("The settings before the last change count"), 1u);
    setContent(start.url, "no");
    setContent(FileURL(start.url.path() + ".bak"), "neither");
    EXPECT_EQ(start.read(), json::object());
    unlink(start.url.c_str());
    setContent(FileURL(start.url.path() + ".bak"), "{\"x\":1}");
    EXPECT_EQ(start.read(), json::object()) << "who removes the file wants the defaults";
}

TEST(SettingsFile, WhatCannotBeReadIsNeverTouched) {
    const auto staysInMemory = [](Start& start) {
        EXPECT_EQ(start.readAndWrite("a"), json({{"a", true}}));
        EXPECT_EQ(start.log.count("cannot be read, changes will not be kept"), 1u);
        EXPECT_EQ(start.setAside().size(), 0u);
    };
    {
        Start start;
        mkdir(start.url.c_str(), 0700);
        staysInMemory(start);
        EXPECT_EQ(rmdir(start.url.c_str()), 0);
    }
    {
        Start start;
        mkfifo(start.url.c_str(), 0600);
        staysInMemory(start);
        struct stat info {};
        lstat(start.url.c_str(), &info);
        EXPECT_TRUE(S_ISFIFO(info.st_mode));
    }
    {
        Start start;
        ASSERT_EQ(symlink("settings.json", start.url.c_str()), 0);
        staysInMemory(start);
    }
    {
        Start start;
        setContent(start.url, "not a folder");
        start.url = start.url.appending("settings.json");
        staysInMemory(start);
    }
    if (geteuid() != 0) {
        Start start;
        setContent(start.url, "{}");
        chmod(start.url.c_str(), 0);
        staysInMemory(start);
    }
}

TEST(SettingsFile, AnUnwritableHomeIsToldOnce) {
    Start start;
    start.url = FileURL("/proc/trovast/settings.json");
    SettingsFile file(start.url);
    EXPECT_EQ(file.read(), json::object());
    for (int i = 0; i < 3; i++) EXPECT_FALSE(file.write({{"a", i}}));
    EXPECT_EQ(start.log.count("Settings cannot be saved"), 1u);
    EXPECT_EQ(start.log.lines().size(), 1u);
}

TEST(SettingsFile, WhatOthersCanWriteIsNotTrusted) {
    for (const mode_t mode : {0620u, 0602u, 0666u}) {
        Start start;
        setContent(start.url, "{\"userDefinedActions\": []}");
        chmod(start.url.c_str(), mode);
        for (int run = 0; run < 2; run++) {
            SettingsFile file(start.url);
            EXPECT_EQ(file.read().count("userDefinedActions"), 1u) << "loaded all the same";
            EXPECT_FALSE(file.isTrusted()) << "a write of ours must not make it good";
            EXPECT_TRUE(file.write({{"userDefinedActions", {run}}}));
            EXPECT_EQ(start.log.lines().size(), static_cast<size_t>(run + 1));
        }
        chmod(start.url.c_str(), 0600);
        SettingsFile file(start.url);
        EXPECT_EQ(file.read()["userDefinedActions"], json({1}));
        EXPECT_TRUE(file.isTrusted());
    }
}

TEST(SettingsFile, AnotherUsersFileIsReadAndLeftAlone) {
    Start start;
    setContent(start.url, "{\"a\": 1}");
    if (chown(start.url.c_str(), geteuid() + 1, static_cast<gid_t>(-1)) != 0)
        GTEST_SKIP() << "only root gives files away";
    SettingsFile file(start.url);
    EXPECT_EQ(file.read(), json({{"a", 1}}));
    EXPECT_FALSE(file.isTrusted());
    EXPECT_TRUE(file.write({{"a", 2}}));
    EXPECT_EQ(contentOf(start.url), "{\"a\": 1}");
}

TEST(SettingsFile, FollowsALinkToWhereTheFileIs) {
    Start start;
    const FileURL elsewhere = start.folder.file("shared");
    mkdir(elsewhere.c_str(), 0755);
    const FileURL shared = elsewhere.appending("s.json");
    setContent(shared, "{\"a\": 1}");
    ASSERT_EQ(symlink(shared.c_str(), start.url.c_str()), 0);
    start.readAndWrite("b");
    EXPECT_EQ(json::parse(contentOf(shared)), json({{"a", 1}, {"b", true}}));
    char target[8];
    EXPECT_GT(readlink(start.url.c_str(), target, sizeof target), 0) << "still a link";
    EXPECT_EQ(modeOf(elsewhere), 0755u) << "that folder is not ours to close";
}
