#include "platform/linux/LinuxFileTypes.h"

#include <gtest/gtest.h>

namespace {
constexpr uint8_t kFile = 1, kFolder = 2, kLink = 8;  // bits of an item type
}

TEST(LinuxFileTypes, IconsFollowFromTheNameAlone) {
    const LinuxFileTypes types;
    const auto icon = [&](const char* path, uint8_t type = kFile) {
        return types.iconNameForItem(FileURL(path), type);
    };
    EXPECT_EQ(icon("/none/a.txt"), "text-plain");
    EXPECT_EQ(icon("/none/a.PNG"), "image-png");
    EXPECT_EQ(icon("/none/\xff\xfe.txt"), "text-plain");
    EXPECT_EQ(icon("/none/a.png", kFile | kLink), "image-png");
    EXPECT_EQ(icon("/none/a.png", kFolder), "folder");
    EXPECT_EQ(icon("/none/plain"), "unknown");
    // Not what the last extension alone would give.
    EXPECT_EQ(icon("/none/CMakeLists.txt"), "text-x-cmake");
    EXPECT_EQ(icon("/none/a.tar.gz"), "application-x-compressed-tar");
    EXPECT_FALSE(types.isFilePackageAtPath(FileURL("/none/a.app")));
}
