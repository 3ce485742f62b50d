#include "util/FileURL.h"

#include <gtest/gtest.h>

TEST(FileURL, PartsOfAPath) {
    struct {
        const char *path, *name, *extension, *parent;
        size_t components;
    } const rows[] = {
        {"/a/b.txt", "b.txt", "txt", "/a", 2},
        {"/a", "a", "", "/", 1},
        {"/", "/", "", "/", 0},
        {"//", "/", "", "/", 0},
        {"", "", "", "", 0},
        {"a", "a", "", "", 1},
        {"a/b", "b", "", "a", 2},
        {"/a//b/", "b", "", "/a", 2},
        {"/.profile", ".profile", "", "/", 1},
        {"/x/.a.b", ".a.b", "b", "/x", 2},
        {"/name.", "name.", "", "/", 1},
        {"/a.d/b", "b", "", "/a.d", 2},
        {"/a\xff.\xfe", "a\xff.\xfe", "\xfe", "/", 1},
    };
    for (const auto& row : rows) {
        const FileURL url(row.path);
        EXPECT_EQ(url.lastPathComponent(), row.name) << row.path;
        EXPECT_EQ(url.pathExtension(), row.extension) << row.path;
        EXPECT_EQ(url.deletingLastPathComponent().path(), row.parent) << row.path;
        EXPECT_EQ(url.pathComponents().size(), row.components) << row.path;
    }
}

TEST(FileURL, IsPutTogetherWithOneSlash) {
    EXPECT_EQ(FileURL("/").appending("a").path(), "/a");
    EXPECT_EQ(FileURL("/a").appending("b").path(), "/a/b");
    EXPECT_EQ(FileURL("/a/").appending("b").path(), "/a/b");
    EXPECT_EQ(FileURL().appending("b").path(), "b");
    EXPECT_EQ(FileURL::standardized("//a///b//").path(), "/a/b");
    EXPECT_EQ(FileURL::standardized("///").path(), "/");
    EXPECT_EQ(FileURL::standardized("").path(), "");
    EXPECT_EQ(FileURL::standardized("/a/../b").path(), "/a/../b") << "may be behind a link";
}

TEST(FileURL, PrefixGoesByWholeComponents) {
    const FileURL url("/home/me/src");
    EXPECT_TRUE(url.hasPrefix(FileURL("/home/me")));
    EXPECT_TRUE(url.hasPrefix(FileURL("/home/me/")));
    EXPECT_TRUE(url.hasPrefix(url));
    EXPECT_TRUE(url.hasPrefix(FileURL("/")));
    EXPECT_FALSE(url.hasPrefix(FileURL("/home/m")));
    EXPECT_FALSE(url.hasPrefix(FileURL("/home/me/src/x")));
    EXPECT_FALSE(url.hasPrefix(FileURL("/Home/me")));
}

TEST(FileURL, IsComparedByteForByte) {
    EXPECT_NE(FileURL("/\xC3\xA9"), FileURL("/e\xCC\x81"));
    EXPECT_NE(FileURL("/a"), FileURL("/a/"));
    EXPECT_LT(FileURL("/a"), FileURL("/b"));
    EXPECT_EQ(std::hash<FileURL>{}(FileURL("/a")), std::hash<FileURL>{}(FileURL("/a")));
}
