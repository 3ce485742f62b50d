#include <sys/stat.h>
#include <unistd.h>

#include "modes/ModesTest.h"

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
    EXPECT_TRUE(field().placeholder.starts_with("Browse (⌘↓ peek ⌘↑ parent "))
        << field().placeholder;
    browser().toggleDirSearchHidesDotFiles();
    settle();
    EXPECT_EQ(names(), (Names{".hidden", "a", "b", "c", "File.txt"}));
    type(u"file");
    EXPECT_EQ(names(), Names{"File.txt"});
    EXPECT_EQ(field().placeholder, "Browse ⌘↑ parent");
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

TEST_F(BrowserModeTest, AFolderThatCannotBeReadSaysWhy) {
    if (geteuid() == 0) GTEST_SKIP() << "the superuser reads all";
    begin();
    chmod(under("/b").c_str(), 0);
    browse(under("/b"));
    EXPECT_TRUE(screen().infoBar.errorLook);
    EXPECT_EQ(here(), under("/b"));
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
        session_->advance(1.1);
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

}  // namespace
