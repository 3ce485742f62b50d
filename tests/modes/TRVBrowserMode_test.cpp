#include <sys/stat.h>
#include <unistd.h>

#include "modes/BrowserListing.h"
#include "modes/ModesTest.h"
#include "searchmodes/RegexSearch.h"
#include "shell/registry/shortcutText.h"

namespace {

constexpr uint64_t kCommandArrow = kModifierCommand | kModifierNumericPad | kModifierFunction;

class BrowserModeTest : public FileModesTest {
  protected:
    BrowserModeTest() {
        for (const char* name : {"root/b/in1", "root/b/in2", "root/a/x", "root/c/y",
                                 "root/.hidden/z", "root/File.txt"})
            home_.file(name);
    }
    void browse(const FileURL& url) {
        behind([&] { browser().browsePath(url, TRVBrowserMode::BundleAs::folder); });
    }
    void begin(bool followsDisk = false) {
        start({}, followsDisk);
        enter(browser());
        browse(root_);
    }
    void sibling(bool preceding, bool wantMarked = false) {
        browser().browseSiblingDirectory(preceding, wantMarked);
        settle();
    }
    FileURL here() { return browser().currentDirectoryURL(); }
};

TEST_F(BrowserModeTest, ShowsAndFiltersAFolderWithoutAnIndex) {
    start();
    enter(browser());
    EXPECT_EQ(here(), home_.url());
    browse(root_);
    EXPECT_EQ(names(), (Names{"a", "b", "c", "File.txt"}));
    EXPECT_EQ(screen().infoBar.text, "Browse " + root_.path());
    EXPECT_EQ(field().placeholder, "Browse (Ctrl+Down peek Ctrl+Up parent " +
                                       stringRepresentationFor("SearchSelection") + " search)");
    browser().toggleDirSearchHidesDotFiles();
    settle();
    EXPECT_EQ(names(), (Names{".hidden", "a", "b", "c", "File.txt"}));
    type(u"file");
    EXPECT_EQ(names(), Names{"File.txt"});
    EXPECT_EQ(field().placeholder, "Browse Ctrl+Up parent");
    table().deselectAll();
    EXPECT_EQ(field().placeholder, "Browse (Ctrl+Up parent)");
}

TEST_F(BrowserModeTest, LevelsComeBackAsTheyWere) {
    begin();
    type(u"b");
    select("b");
    EXPECT_TRUE(screen().send({.keyCode = 44, .characters = u"/"}));
    settle();
    EXPECT_EQ(here(), under("/b"));
    EXPECT_EQ(field().content, u"");
    EXPECT_EQ(names(), (Names{"in1", "in2"}));
    EXPECT_TRUE(press(kKeyUp, kCommandArrow));
    settle();
    EXPECT_EQ(here(), root_);
    EXPECT_EQ(field().content, u"b");
    EXPECT_EQ(selected(), Names{"b"});
}

TEST_F(BrowserModeTest, SiblingsKeepTheirStates) {
    begin();
    browse(under("/b"));
    type(u"in");
    select("in2");
    sibling(false);
    EXPECT_EQ(here(), under("/c"));
    EXPECT_EQ(field().content, u"");
    sibling(false);
    EXPECT_EQ(here(), under("/c")) << "there is none behind it";
    sibling(true);
    EXPECT_EQ(here(), under("/b"));
    EXPECT_EQ(field().content, u"in");
    EXPECT_EQ(selected(), Names{"in2"});
    marked().markedItemsCache().addURL(under("/c"));
    browse(under("/a"));
    sibling(false, true);
    EXPECT_EQ(here(), under("/c"));
    unlink(under("/b/in1").c_str());
    unlink(under("/b/in2").c_str());
    rmdir(under("/b").c_str());
    sibling(true);
    EXPECT_EQ(here(), under("/a")) << "one that has vanished is passed over";
}

TEST_F(BrowserModeTest, PathsOfAllKindsLeadSomewhere) {
    ASSERT_EQ(symlink("circle", under("/circle").c_str()), 0);
    ASSERT_EQ(symlink("b", under("/link").c_str()), 0);
    begin();
    browse(under("/link"));
    EXPECT_EQ(here(), under("/b"));
    browse(under("/File.txt"));
    EXPECT_EQ(here(), root_);
    EXPECT_EQ(selected(), Names{"File.txt"});
    for (const char* path : {"/circle", "/nothing/there"}) {
        browse(under(path));
        EXPECT_EQ(here(), home_.url()) << path;
        browse(root_);
    }
    EXPECT_TRUE(browser().browseSelection({under("/File.txt")})) << "a file is no place";
    settle();
    EXPECT_EQ(here(), root_);
    EXPECT_FALSE(browser().browseSelection({}));
    EXPECT_FALSE(browser().browseSelection({under("/a"), under("/b")}));
    browse(FileURL());
    EXPECT_TRUE(here().empty());
    browser().toggleSearchRootDirectory();
    EXPECT_EQ(here(), home_.url());
    browser().toggleSearchRootDirectory();
    EXPECT_EQ(here().path(), "/");
    browser().toggleSearchRootDirectory();
    EXPECT_NE(here().path(), "/") << "the folder of disks, or home where there is none";
    browse(FileURL("/"));
    behind([&] { browser().browseParentDirectory(); });
    EXPECT_EQ(here().path(), "/");
}

TEST_F(BrowserModeTest, AVanishedFolderLeadsToTheNearestThatIsThere) {
    home_.file("root/d/e/f/g");
    begin();
    browse(under("/d/e/f"));
    ASSERT_EQ(std::system(("rm -r " + under("/d").path()).c_str()), 0);
    behind([&] { browser().browseParentDirectory(); });
    EXPECT_EQ(here(), root_);
}

TEST_F(BrowserModeTest, TheFolderOnShowMayVanish) {
    home_.file("root/d/e/f/g");
    begin();
    browse(under("/d/e/f"));
    ASSERT_EQ(std::system(("rm -r " + under("/d").path()).c_str()), 0);
    browser().fsEventCallback(
        {{.id = 1, .flags = kFSEventStreamEventFlagRootChanged, .path = under("/d/e/f").path()}});
    settle();
    session_->advance(1.1);
    settle();
    EXPECT_EQ(here(), root_);
    EXPECT_EQ(names(), (Names{"a", "b", "c", "File.txt"}));
    EXPECT_EQ(screen().infoBar.text, "No such file or directory");
}

TEST_F(BrowserModeTest, HasKeysOfItsOwn) {
    begin();
    browse(under("/b"));
    constexpr uint64_t kOwn[] = {kModifierCommand, kModifierControl,
                                 kModifierControl | kModifierShift};
    const auto key = [&](uint64_t keyCode, uint64_t flags) {
        EXPECT_TRUE(press(keyCode, flags));
        settle();
    };
    key(kKeyPeriod, kOwn[1]);
    EXPECT_EQ(here(), under("/c"));
    marked().markedItemsCache().addURL(under("/a"));
    key(43, kOwn[2]);
    EXPECT_EQ(here(), under("/a")) << "the marked one before it";
    key(kKeyPeriod, kOwn[0]);
    EXPECT_FALSE(browser().dirSearchHidesDotFiles());
    key(44, kOwn[0]);
    EXPECT_EQ(here(), home_.url());
}

TEST_F(BrowserModeTest, OrdersAsAReaderDoesOrAsTheTermsAsk) {
    for (const auto& [name, size] :
         std::vector<std::pair<const char*, off_t>>{{"root/many/B.txt", 30},
                                                    {"root/many/a.txt", 10},
                                                    {"root/many/\xc3\xa9.txt", 40},
                                                    {"root/many/b.txt", 20},
                                                    {"root/many/Ab.txt", 50}})
        ASSERT_EQ(truncate(home_.file(name).c_str(), size), 0);
    start({{"showMetadata", 1}, {"processMetadata", true}});
    enter(browser());
    browse(under("/many"));
    EXPECT_EQ(names(), (Names{"a.txt", "Ab.txt", "B.txt", "b.txt", "\xc3\xa9.txt"}));
    EXPECT_EQ(browser().rowIndexOfFilteredItemByURL(under("/many/b.txt")), 3u);
    EXPECT_FALSE(browser().rowIndexOfFilteredItemByURL(under("/b.txt")));
    ASSERT_EQ(table().row(0).attributes.size(), 2u);
    EXPECT_TRUE(table().row(0).attributes[1].text.starts_with("⚖️ 10 Bytes"));
    search(u"txt \\s:d");
    EXPECT_EQ(names(), (Names{"Ab.txt", "\xc3\xa9.txt", "B.txt", "b.txt", "a.txt"}));
    EXPECT_EQ(browser().rowIndexOfFilteredItemByURL(under("/many/a.txt")), 4u);
    search(u"txt \\s<25");
    EXPECT_EQ(names().size(), 2u);
    search(u"e.txt");
    EXPECT_TRUE(names().empty());
    OVUserDefaults::sharedInstance().setBool(true, "browserIgnoreDiacritics");
    search(u"e.txt");
    EXPECT_EQ(names(), Names{"\xc3\xa9.txt"});
    unlink(under("/many/a.txt").c_str());
    search(u"txt");
    EXPECT_EQ(names().size(), 4u) << "what has vanished is no row";
}

TEST_F(BrowserModeTest, AFolderThatCannotBeReadSaysWhy) {
    if (geteuid() == 0) GTEST_SKIP() << "the superuser reads all";
    begin();
    chmod(under("/b").c_str(), 0);
    browse(under("/b"));
    EXPECT_TRUE(screen().infoBar.errorLook);
    EXPECT_EQ(here(), under("/b"));
    browse(root_);
    chmod(under("/a").c_str(), 0);
    session_->advance(5);
    browse(under("/a/x"));
    EXPECT_EQ(screen().infoBar.text, "Permission denied");
    EXPECT_EQ(here(), root_) << "what is out of reach is no reason to leave";
    chmod(under("/a").c_str(), 0700);
    chmod(under("/b").c_str(), 0700);
}

TEST_F(BrowserModeTest, OpensFromAnotherModeOnAFolder) {
    start();
    EXPECT_TRUE(browser().browseSelection({under("/b")}));
    settle();
    EXPECT_TRUE(browser().isActive());
    EXPECT_EQ(names(), (Names{"in1", "in2"}));
}

TEST_F(BrowserModeTest, FollowsTheDisk) {
    begin(true);
    home_.file("root/new.txt");
    home_.file("root/b/deeper");
    for (int i = 0; i < 100 && names().size() < 5; i++) {
        usleep(20'000);
        session_->advance(0.2);
        settle();
    }
    EXPECT_EQ(names(), (Names{"a", "b", "c", "File.txt", "new.txt"}));
    select("new.txt");
    ::rename(under("/new.txt").c_str(), under("/newer.txt").c_str());
    for (int i = 0; i < 100 && names().back() != "newer.txt"; i++) {
        usleep(20'000);
        session_->advance(0.2);
        settle();
    }
    EXPECT_EQ(selected(), Names{"newer.txt"});
}

TEST_F(BrowserModeTest, EventsAreTakenByWhatTheyMean) {
    begin();
    const auto happens = [&](FileEventBatch batch) {
        table().takeChanges();
        browser().fsEventCallback(std::move(batch));
        settle();
        const bool atOnce = !table().takeChanges().empty();
        session_->advance(2);  // whole seconds: nothing else that ticks falls due at the end
        settle();
        return std::pair(atOnce, !table().takeChanges().empty());
    };
    const auto event = [&](const char* path, uint32_t flags) {
        return FileEvent{.id = 1, .flags = flags, .path = under(path).path()};
    };
    constexpr uint32_t kCreated = kFSEventStreamEventFlagItemCreated;
    constexpr uint32_t kRemoved = kFSEventStreamEventFlagItemRemoved;
    constexpr uint32_t kModified = kFSEventStreamEventFlagItemModified;
    constexpr uint32_t kRenamed = kFSEventStreamEventFlagItemRenamed;
    constexpr uint32_t kOwn = kFSEventStreamEventFlagOwnEvent;
    using Reloads = std::pair<bool, bool>;  // at once, later
    EXPECT_EQ(happens({event("/b/in1", kModified)}), Reloads(false, false)) << "too deep";
    EXPECT_EQ(happens({event("/unknown", kModified)}), Reloads(false, false));
    EXPECT_EQ(happens({event("/File.txt", kModified)}), Reloads(true, false)) << "its row alone";
    EXPECT_EQ(happens({event("/n", kCreated)}), Reloads(false, true)) << "a single one waits";
    EXPECT_EQ(happens({event("/n", kCreated), event("/m", kCreated)}), Reloads(true, false));
    EXPECT_EQ(happens({event("/gone", kRenamed)}), Reloads(false, true)) << "it left the folder";
    select("a");
    ::rename(under("/a").c_str(), under("/z").c_str());
    happens({event("/a", kRenamed), event("/File.txt", kModified), event("/z", kRenamed)});
    EXPECT_EQ(selected(), Names{"b"}) << "halves that something stands between are no pair";
    select("z");
    ::rename(under("/z").c_str(), under("/a").c_str());
    happens({event("/z", kRenamed), event("/a", kRenamed)});
    EXPECT_EQ(selected(), Names{"a"});

    select("File.txt");
    unlink(under("/File.txt").c_str());
    happens({event("/File.txt", kRemoved | kOwn)});
    EXPECT_TRUE(selected().empty());
    EXPECT_EQ(names(), (Names{"a", "b", "c"}));
    select("b");
    ASSERT_EQ(std::system(("rm -r " + under("/b").path()).c_str()), 0);
    happens({event("/b", kRemoved)});
    EXPECT_EQ(selected(), Names{"c"}) << "the neighbour";
}

TEST(BrowserListing, RowsKeepTheirMarksWhenTheNextSearchBegins) {
    const TemporaryFolder folder;
    Relaxed<bool> stale = false;
    RankRequest request{.searchString = u"+n1", .abortSearch = &stale};
    request.makeRegexEngine = RegexSearch::maker(request.searchString, &stale);
    BrowserListing listing(
        std::make_shared<BrowserFolder>(folder.url(), std::vector<std::string>{"in1", "in2"},
                                        BrowserFolder::Diacritics::kept),
        request);
    folder.file("in1");
    ASSERT_TRUE(listing.search());
    ASSERT_EQ(listing.count(), 1u);
    stale = true;
    EXPECT_EQ(listing.item(0)->indexes.items(), (std::vector<uint64_t>{1, 2}));
}

}  // namespace
