#include <sys/stat.h>
#include <unistd.h>

#include "fileops/moveItem.h"
#include "modes/ModesTest.h"

namespace {

class RenameTest : public FileModesTest {
  protected:
    /// As the key handler does it.
    void rename(TRVModeRepresentingFiles& mode) {
        mode.setRenameState(TRVModeRepresentingFiles::kRenameRequested);
        field().setEnabled(false);
        mode.prepareRenameSelectionAtRow(table().selectedRows().front());
    }
    void commit(std::u16string_view text) {
        table().typeIntoEdit(text);
        table().sendToEdit(RowEditCommand::insertNewline);
        settle();
    }
    void expectNothingIsEdited(TRVMode& mode) {
        EXPECT_FALSE(table().edit());
        EXPECT_EQ(mode.renameState(), 0u);
        EXPECT_TRUE(field().takesTyping);
    }
};

TEST_F(RenameTest, TheNewNameReachesDiskIndexMarksAndSelection) {
    home_.file("root/one.txt");
    start();
    type(u"one");
    marked().markedItemsCache().addURL(under("/one.txt"));
    rename(searchMode());
    ASSERT_TRUE(table().edit());
    EXPECT_EQ(table().edit()->text, u"one.txt");
    EXPECT_EQ(table().edit()->selection, (TextRange{0, 3})) << "without the extension";
    EXPECT_FALSE(field().takesTyping);
    commit(u"onetwo.txt");
    expectNothingIsEdited(searchMode());
    EXPECT_TRUE(exists(under("/onetwo.txt")));
    EXPECT_EQ(names(), Names{"onetwo.txt"});
    EXPECT_EQ(selected(), Names{"onetwo.txt"});
    EXPECT_TRUE(table().row(0).isMarked);
    EXPECT_TRUE(marked().markedItemsCache().containsURL(under("/onetwo.txt")));
}

TEST_F(RenameTest, RefusalsLeaveEverythingAsItWas) {
    home_.file("root/a.txt");
    home_.file("root/taken.txt");
    struct Case {
        std::u16string text;
        bool showsError;
    };
    const std::vector<Case> cases = {{u"taken.txt", true},
                                     {u"", false},
                                     {u"a.txt", false},
                                     {u"x/y", true},
                                     {u"..", true},
                                     {std::u16string(u"\0b", 2), true},
                                     {std::u16string(300, u'n'), true}};
    start();
    enter(browser());
    behind([&] { browser().browsePath(root_, TRVBrowserMode::BundleAs::folder); });
    for (const Case& each : cases) {
        select("a.txt");
        rename(browser());
        ASSERT_TRUE(table().edit());
        commit(each.text);
        expectNothingIsEdited(browser());
        EXPECT_EQ(screen().infoBar.errorLook, each.showsError) << toUtf8(each.text);
        session_->advance(5);
        settle();
        EXPECT_EQ(names(), (Names{"a.txt", "taken.txt"})) << toUtf8(each.text);
        EXPECT_EQ(selected(), Names{"a.txt"});
    }
    EXPECT_TRUE(exists(under("/a.txt")) && exists(under("/taken.txt")));
}

TEST_F(RenameTest, AFileThatHasGoneIsNotEdited) {
    home_.file("root/a.txt");
    start();
    type(u"a.txt");
    unlink(under("/a.txt").c_str());
    rename(searchMode());
    settle();
    expectNothingIsEdited(searchMode());
    EXPECT_EQ(screen().infoBar.text, "Selected item does not exis");
}

TEST_F(RenameTest, AFileThatVanishesUnderItsEditorLeavesTheNextOneAlone) {
    home_.file("root/a1.txt");
    home_.file("root/a2.txt");
    start();
    type(u"a");
    select("a1.txt");
    rename(searchMode());
    ASSERT_TRUE(table().edit());
    unlink(under("/a1.txt").c_str());
    searchMode().currentCache()->removePath(under("/a1.txt"), 1);
    searchMode().consolidateFilteredList();
    settle();
    EXPECT_EQ(selected(), Names{"a2.txt"});
    commit(u"b.txt");
    expectNothingIsEdited(searchMode());
    EXPECT_TRUE(screen().infoBar.errorLook);
    EXPECT_TRUE(exists(under("/a2.txt")));
    EXPECT_FALSE(exists(under("/b.txt")));
}

TEST_F(RenameTest, AModeThatIsLeftMeanwhileIsNotStuckInIt) {
    home_.file("root/a1.txt");
    start();
    type(u"a1.txt");
    EXPECT_TRUE(press(kKeyTab));
    rename(searchMode());  // before the other mode has come
    settle();
    expectNothingIsEdited(searchMode());
    EXPECT_TRUE(browser().isActive());
    enter(searchMode());
    EXPECT_EQ(names(), Names{"a1.txt"});
}

TEST_F(RenameTest, APathSelectionGoesWithItsRow) {
    home_.file("root/s1/c.txt");
    home_.file("root/s2/cc.txt");
    start();
    for (const char* path : {"/s1/c.txt", "/s2/cc.txt"})
        marked().markedItemsCache().addURL(under(path));
    enter(marked());
    select("c.txt");
    EXPECT_TRUE(marked().shrinkPathSelection());
    EXPECT_EQ(marked().clickedOrSelectedURLs(), std::vector{under("/s1")});
    marked().handleFocusOrIgnoreSelectedURL(TRVModeSupportingPath::Narrowing::ignore);
    settle();
    EXPECT_EQ(names(), Names{"cc.txt"}) << "the selected folder is ignored, not the file alone";
    EXPECT_EQ(marked().clickedOrSelectedURLs(), std::vector{under("/s2/cc.txt")});
    EXPECT_FALSE(table().row(0).pathSelection);
}

TEST_F(RenameTest, KeepsALinkToNothingFromBeingRenamed) {
    ASSERT_EQ(symlink("/nowhere/at/all", under("/link").c_str()), 0);
    start();
    type(u"link");
    rename(searchMode());
    expectNothingIsEdited(searchMode());
}

TEST_F(RenameTest, AFolderThatTakesNoNamesSaysSo) {
    if (geteuid() == 0) GTEST_SKIP() << "the superuser may do it";
    home_.file("root/a.txt");
    start();
    type(u"a.txt");
    rename(searchMode());
    chmod(root_.c_str(), 0500);
    commit(u"b.txt");
    chmod(root_.c_str(), 0700);
    expectNothingIsEdited(searchMode());
    EXPECT_TRUE(screen().infoBar.errorLook);
    EXPECT_TRUE(exists(under("/a.txt")));
}

TEST_F(RenameTest, EscapeAndBytesThatAreNoTextLeaveTheNameAlone) {
    const std::string name = "a\xff.txt";
    home_.file("root/" + name);
    start();
    enter(browser());
    behind([&] { browser().browsePath(root_, TRVBrowserMode::BundleAs::folder); });
    rename(browser());
    ASSERT_TRUE(table().edit());
    const std::u16string text = table().edit()->text;
    table().sendToEdit(RowEditCommand::cancelOperation);
    settle();
    expectNothingIsEdited(browser());
    rename(browser());
    commit(text + u"2");
    EXPECT_TRUE(exists(under("/" + name + "2"))) << "the byte that is no text is kept";
}

TEST_F(RenameTest, AFolderOfThePathIsRenamedWithAllThatIsBelow) {
    home_.file("root/sub/deep/x1.txt");
    start();
    type(u"x1");
    EXPECT_TRUE(searchMode().shrinkPathSelection());
    EXPECT_EQ(searchMode().clickedOrSelectedURLs(), std::vector{under("/sub/deep")});
    EXPECT_TRUE(searchMode().shrinkPathSelection());
    EXPECT_EQ(searchMode().clickedOrSelectedURLs(), std::vector{under("/sub")});
    rename(searchMode());
    ASSERT_TRUE(table().edit());
    EXPECT_EQ(table().edit()->text, u"sub");
    EXPECT_EQ(searchMode().renameState(), 3u);
    EXPECT_FALSE(searchMode().shrinkPathSelection()) << "the key is the editor's";
    commit(u"other");
    expectNothingIsEdited(searchMode());
    EXPECT_TRUE(exists(under("/other/deep/x1.txt")));
    EXPECT_EQ(searchMode().urlOfFilteredItemAtIndex(0), under("/other/deep/x1.txt"));
    EXPECT_EQ(searchMode().clickedOrSelectedURLs(), std::vector{under("/other")});
}

TEST_F(RenameTest, APathSelectionCountsForItsRowAlone) {
    home_.file("root/sub/y1.txt");
    home_.file("root/sub/y2.txt");
    start();
    type(u"y");
    searchMode().shrinkPathSelection();
    EXPECT_TRUE(table().row(0).pathSelection);
    EXPECT_EQ(table().row(0).iconName, "folder");
    searchMode().extendPathSelection();
    EXPECT_FALSE(table().row(0).pathSelection) << "past the whole path nothing is selected";
    searchMode().shrinkPathSelection();
    table().click({1});
    EXPECT_FALSE(table().row(0).pathSelection);
    EXPECT_EQ(searchMode().clickedOrSelectedURLs(), std::vector{under("/sub/y2.txt")});
    table().setClickedRow(0);
    EXPECT_EQ(searchMode().clickedOrSelectedURLs(), std::vector{under("/sub/y1.txt")});
    EXPECT_EQ(table().selectedRows(), std::vector<size_t>{1});
}

TEST(PathSelection, GoesUpToTheRootAndThenToNothing) {
    PathSelection path(FileURL("/a/b"));
    std::vector<std::string> seen;
    for (int i = 0; i < 5; i++) {
        path.shrinkPathSelection();
        const auto url = path.urlFromSelectedPathComponents();
        seen.push_back(url ? url->path() : "-");
    }
    EXPECT_EQ(seen, (std::vector<std::string>{"/a/b", "/a", "/", "-", "/a/b"}));
    EXPECT_TRUE(path.clearPathSelection());
    EXPECT_FALSE(path.clearPathSelection());
    path.extendPathSelection();
    EXPECT_EQ(path.pathSelection(), FileURL("/"));
    path.setPathSelection(FileURL("/a/b/c/d"));
    EXPECT_FALSE(path.pathSelection()) << "deeper than the line";
}

TEST(moveItem, NeverReplaces) {
    TemporaryFolder folder;
    const FileURL a = folder.file("a"), b = folder.file("b"), d = folder.folder("d");
    EXPECT_EQ(moveItem(a, b).error().code, EEXIST);
    EXPECT_EQ(moveItem(a, d).error().code, EEXIST);
    EXPECT_EQ(moveItem(folder.url().appending("none"), b).error().code, ENOENT);
    EXPECT_EQ(moveItem(d, d.appending("in")).error().code, EINVAL);
    EXPECT_TRUE(moveItem(a, d.appending("a")));
    const FileURL upper = folder.url().appending("B");
    ASSERT_EQ(link(b.c_str(), upper.c_str()), 0);
    EXPECT_EQ(moveItem(b, upper).error().code, EEXIST) << "two links, not two cases of one name";
}

}  // namespace
