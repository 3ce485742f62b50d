#include "index/PathCache.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "platform/FileTypes.h"
#include "support/TemporaryFolder.h"
#include "util/World.h"
#include "util/settings/OVUserDefaults.h"

namespace {

class Packages : public FileTypes {
  public:
    bool isFilePackageAtPath(const FileURL& url) const override {
        return url.pathExtension() == "app";
    }
    std::string iconNameForItem(const FileURL&, uint8_t) const override { return {}; }
};

class PathCacheTest : public testing::Test {
  protected:
    FileURL at(const char* name) const { return folder_.at(name); }
    nlohmann::json stored() const { return settings_.dictionaryForKey("markedItems"); }
    World world_;
    OVUserDefaults settings_;
    Packages types_;
    TemporaryFolder folder_;
};

TEST_F(PathCacheTest, KeepsLinksApartFromFiles) {
    folder_.file("file");
    folder_.folder("folder");
    folder_.folder("x.app");
    folder_.link("link", "file");
    PathCache cache(types_, settings_, "markedItems");
    for (const char* name : {"file", "folder", "x.app", "link", "gone"}) cache.addURL(at(name));
    EXPECT_EQ(cache.count(), 5u);
    EXPECT_EQ(cache.urlsMatchingVisibleItemTypes(1),
              (std::vector<FileURL>{at("file"), at("gone"), at("x.app")}));
    EXPECT_EQ(cache.urlsMatchingVisibleItemTypes(2),
              (std::vector<FileURL>{at("folder"), at("link")}));
    EXPECT_EQ(stored()[at("link").path()], 2);
}

TEST_F(PathCacheTest, EveryChangeIsStoredAndReadBack) {
    const FileURL odd("/a/\xFF");
    {
        PathCache cache(types_, settings_, "markedItems");
        EXPECT_EQ(cache.addOrRemoveURL(odd), PathCache::Toggled::added);
        EXPECT_EQ(cache.addOrRemoveURL(FileURL("/b")), PathCache::Toggled::added);
        EXPECT_EQ(cache.addOrRemoveURL(FileURL("/b")), PathCache::Toggled::removed);
    }
    PathCache again(types_, settings_, "markedItems");
    EXPECT_EQ(again.urls(), std::vector<FileURL>{odd});
    EXPECT_EQ(again.count(), 1u);
    again.clear();
    EXPECT_TRUE(stored().empty());
    PathCache inMemory(types_);
    inMemory.addURL(odd);
    EXPECT_TRUE(stored().empty());
}

TEST_F(PathCacheTest, StoredNumbersAreTakenAsTheyAre) {
    settings_.setObject({{"/a/", 3}, {"/b", "?"}}, "markedItems");
    const PathCache cache(types_, settings_, "markedItems");
    EXPECT_EQ(cache.count(), 2u);
    EXPECT_TRUE(cache.containsURL(FileURL("/a")));
    EXPECT_EQ(cache.urlsMatchingVisibleItemTypes(2), std::vector<FileURL>{FileURL("/a")});
    EXPECT_EQ(cache.urlsMatchingVisibleItemTypes(1).size(), 2u) << "a mark is never lost";
}

TEST_F(PathCacheTest, ARenameTakesWhatIsBelowAlongAndNoNeighbour) {
    PathCache cache(types_);
    cache.setURLs({FileURL("/a"), FileURL("/a/x"), FileURL("/ab"), folder_.url()});
    EXPECT_TRUE(cache.renameURL(FileURL("/a"), FileURL("/0/b")));
    EXPECT_EQ(cache.urls(), (std::vector<FileURL>{FileURL("/0/b"), FileURL("/0/b/x"),
                                                  FileURL("/ab"), folder_.url()}));
    EXPECT_FALSE(cache.renameURL(FileURL("/zzz"), FileURL("/y")));
    EXPECT_TRUE(cache.renameURL(FileURL("/0/b"), folder_.url())) << "replaces the folder";
    EXPECT_EQ(cache.count(), 3u);
    EXPECT_TRUE(cache.urlsMatchingVisibleItemTypes(2).empty());
}

TEST_F(PathCacheTest, AMarkGoesOnlyWhenItsFileIsGone) {
    folder_.file("file");
    PathCache cache(types_, settings_, "markedItems");
    cache.setURLs({at("file"), at("gone"), at("file/below"), at("other")});
    for (const char* name : {"file", "gone", "file/below"}) cache.removePathIfGone(at(name));
    EXPECT_EQ(cache.urls(), (std::vector<FileURL>{at("file"), at("other")}));
    EXPECT_EQ(cache.count(), 2u);
    EXPECT_EQ(stored().size(), 4u) << "stored once for all";
    cache.storeRemovedPaths();
    EXPECT_EQ(stored().size(), 2u);
    cache.removeURL(at("file"));
    EXPECT_EQ(stored().size(), 1u);
}

}  // namespace
