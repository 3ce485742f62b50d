#include "core/freshnessText.h"

#include <gtest/gtest.h>

namespace {

TEST(freshnessText, SaysWhatTheListIsWorth) {
    EXPECT_EQ(freshnessText({}).toolTip, "");
    const auto scanning =
        freshnessText({.hasProject = true, .isScanning = true, .entriesRead = 1234567});
    EXPECT_EQ(scanning.words, "1,234,567 read");
    EXPECT_EQ(freshnessText({.hasProject = true, .isScanning = true, .entriesRead = 999}).words,
              "999 read");
    const auto live = freshnessText({.hasProject = true});
    EXPECT_EQ(live.words, "");
    EXPECT_EQ(live.toolTip, "Live");
}

TEST(freshnessText, NamesTheFoldersThatAreOnlyCheckedAndWhen) {
    std::vector<FileURL> folders = {FileURL("/a\nb")};
    const auto shared = [&] { return std::make_shared<const std::vector<FileURL>>(folders); };
    Freshness freshness{.hasProject = true, .checkedOnly = shared()};
    EXPECT_EQ(freshnessText(freshness).toolTip,
              "Live, but these folders are only checked now and then:\n  • /a␊b");
    folders.insert(folders.end(), 9, FileURL("/c"));
    freshness.checkedOnly = shared();
    freshness.lastChecked = 1;
    const std::string text = freshnessText(freshness).toolTip;
    EXPECT_NE(text.find(", last at "), std::string::npos);
    EXPECT_NE(text.find("and 4 more"), std::string::npos);
}

}  // namespace
