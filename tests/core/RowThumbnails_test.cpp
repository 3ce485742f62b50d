#include "core/RowThumbnails.h"

#include "core/isExcluded.h"
#include "datatypes/Project.h"
#include "index/globalRules.h"
#include "support/ApplicationTest.h"

namespace {

class RowThumbnailsTest : public ApplicationTest {
  protected:
    SimulatedDesktop::AskedThumbnails& thumbnails() { return desktop().thumbnails; }
    void later(double seconds) {
        settle();
        session_->advance(seconds);
        settle();
    }
    std::vector<std::string> lastAsked() {
        std::vector<std::string> names;
        if (thumbnails().asked.empty()) return names;
        for (const FileURL& url : thumbnails().asked.back())
            names.emplace_back(url.lastPathComponent());
        return names;
    }
    std::shared_ptr<const Picture> shown(size_t row) { return screen().table.row(row).thumbnail; }
};

using Names = std::vector<std::string>;

}  // namespace

TEST_F(RowThumbnailsTest, AreAskedForWhenItIsQuietAndOnlyForPictures) {
    for (const char* name : {"qq1.png", "qq2.txt", "qq3.png"}) home_.file(name);
    start();
    settle();
    field().type(u"q");
    later(0.4);
    field().type(u"q");
    later(0.4);
    EXPECT_TRUE(thumbnails().asked.empty()) << "somebody types";
    later(0.4);
    EXPECT_EQ(lastAsked(), (Names{"qq1.png", "qq3.png"}));

    const auto picture = std::make_shared<Picture>(Picture{1, 1, {0xff0000ff}});
    const auto answer = thumbnails().answer;
    answer(thumbnails().asked.back()[1], picture);
    answer(thumbnails().asked.back()[0], nullptr);
    EXPECT_EQ(shown(2), picture);
    EXPECT_EQ(shown(0), nullptr);
    EXPECT_EQ(shown(1), nullptr);

    screen().table.click({1});
    EXPECT_FALSE(thumbnails().answer) << "work stops when the user goes on";
    const size_t asked = thumbnails().asked.size();
    later(1);
    EXPECT_EQ(thumbnails().asked.size(), asked) << "both are known, also the one without";
    later(61);
    screen().table.click({0});
    later(1);
    EXPECT_EQ(lastAsked(), (Names{"qq1.png", "qq3.png"})) << "the files may have changed";
}

TEST_F(RowThumbnailsTest, AreForRowsInSight) {
    for (int i = 100; i < 600; i++) home_.file("qq" + std::to_string(i) + ".png");
    start({{"maxResultsetSize", 1000}});
    settle();
    type(u"qq");
    later(1);
    const size_t inSight = lastAsked().size();
    EXPECT_GT(inSight, 3u);
    EXPECT_LT(inSight, 20u);
    screen().table.scrollTo(1200);
    later(1);
    EXPECT_NEAR(double(lastAsked().size()), double(inSight), 1);
    EXPECT_GT(lastAsked().front(), "qq110.png");
    screen().table.scrollTo(20000);
    later(1);
    EXPECT_NEAR(double(lastAsked().size()), double(inSight), 1);
    size_t row = 0;
    while (!screen().table.isRowVisible(row)) row++;
    EXPECT_EQ(lastAsked().front(), names()[row]);
    screen().table.takeChanges();
    session_->app().table().updateMarkersOfVisibleItems();
    const auto drawn = screen().table.takeChanges().back().rows;
    for (; screen().table.isRowVisible(row); row++)
        EXPECT_EQ(std::count(drawn.begin(), drawn.end(), row), 1) << row;
}

TEST_F(RowThumbnailsTest, RulesOfTheUserKeepFilesOut) {
    launch();
    const auto project = std::make_shared<const Project>(
        nlohmann::json{{"uuid", "p"},
                       {"name", "p"},
                       {"folders",
                        {{{"path", "/home/me"},
                          {"excludedFolders",
                           {{{"pattern", "secret"}, {"patternType", 0}, {"fsItemType", 2}}}}}}}});
    const std::shared_ptr<const Project> projects[] = {project};
    const auto excluded = [&](const char* path) {
        return isExcluded(FileURL(path), projects, GlobalRules::fromSettings(), desktop());
    };
    EXPECT_FALSE(excluded("/home/me/open/a.png"));
    EXPECT_TRUE(excluded("/home/me/secret/a.png"));
    EXPECT_TRUE(excluded("/home/me/secret/deep/a.png"));
    EXPECT_FALSE(excluded("/elsewhere/a.png"));
    const auto sources = std::make_shared<const Project>(nlohmann::json{
        {"uuid", "q"},
        {"name", "q"},
        {"folders",
         {{{"path", "/sources"},
           {"ruleType", 1},
           {"ignoreGlobalFolderRules", true},
           {"rules", {{{"pattern", "*.cpp"}, {"patternType", 1}, {"fsItemType", 1}}}}}}}});
    const std::shared_ptr<const Project> included[] = {sources};
    const auto left = [&](const char* path) {
        return isExcluded(FileURL(path), included, GlobalRules::fromSettings(), desktop());
    };
    EXPECT_TRUE(left("/sources/a.png")) << "only what is included";
    EXPECT_FALSE(left("/sources/a.cpp"));
}
