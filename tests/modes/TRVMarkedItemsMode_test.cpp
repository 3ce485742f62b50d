#include "modes/ModesTest.h"
#include "modes/framework/TRVModeWithParentMode.h"

namespace {

/// A mode that was opened from another one.
class SubMode : public TRVModeWithParentMode {
  public:
    SubMode() : TRVModeWithParentMode(kActionsMode) {}
    std::string searchFieldPlaceholderText() override { return "Sub"; }
    std::string infoString() override { return "sub"; }
    std::vector<RowContent> rowContents(size_t, size_t) override { return {}; }
    void searchForString(const std::u16string&, const SearchFinalBlock& block) override {
        block(true, std::nullopt);
    }
    void saveSelection() override {}
    void restoreSelection() override {}
};

class MarkedItemsModeTest : public FileModesTest {
  protected:
    MarkedItemsModeTest() {
        for (const char* name : {"root/a1", "root/a2", "root/a3"}) home_.file(name);
    }
    ~MarkedItemsModeTest() override { session_.reset(); }
    std::vector<FileURL> three() { return {under("/a1"), under("/a2"), under("/a3")}; }

    SubMode sub_;
};

TEST_F(MarkedItemsModeTest, MarksAreShownEverywhereAndOutliveTheProgram) {
    start();
    type(u"a");
    marked().toggleMarkedItemFlag({under("/a2")});
    settle();
    for (size_t row = 0; row < 3; row++)
        EXPECT_EQ(table().row(row).isMarked, table().row(row).name == "a2");
    EXPECT_EQ(table().row(0).source, RowContent::Source::none);
    EXPECT_EQ(OVUserDefaults::sharedInstance().dictionaryForKey("markedItems").size(), 1u);
    session_.reset();
    FileModesTest::start();
    enter(marked());
    EXPECT_EQ(names(), Names{"a2"});
    EXPECT_EQ(screen().infoBar.text, "Marked items [1/1]");
    marked().toggleMarkedItemFlag({under("/a2")});
    settle();
    EXPECT_TRUE(names().empty());
    EXPECT_TRUE(OVUserDefaults::sharedInstance().dictionaryForKey("markedItems").empty());
}

TEST_F(MarkedItemsModeTest, MarksOfFilesThatExistOutliveAScan) {
    start();
    marked().toggleMarkedItemFlag({under("/a1"), under("/a2")});
    unlink(under("/a2").c_str());
    searchMode().scanParameterModified(searchMode().currentProject());
    settle();
    EXPECT_EQ(marked().markedItemsCache().urls(), std::vector{under("/a1")});
}

TEST_F(MarkedItemsModeTest, TheCopyListIsAPassingState) {
    start();
    sub_.setHost(&app().modeHost());
    marked().toggleMarkedItemFlag({under("/a1")});
    marked().selectItemsAsSource(three(), TRVMarkedItemsMode::kCopy);
    settle();
    EXPECT_EQ(screen().infoBar.text, "Items set as copy source");
    session_->advance(3);
    enter(marked());
    marked().toggleMarkedItemsMode();
    settle();
    EXPECT_EQ(names(), (Names{"a1", "a2", "a3"}));
    EXPECT_EQ(table().row(1).source, RowContent::Source::copy);
    type(u"a1");
    EXPECT_EQ(screen().infoBar.text, "Items marked for copying [1/3]");

    sub_.setParentMode(&marked());
    enter(sub_);
    enter(marked());
    EXPECT_TRUE(marked().isFileOperationsMode()) << "back from a mode opened from the list";
    enter(sub_);
    enter(searchMode());
    EXPECT_FALSE(marked().isFileOperationsMode()) << "the sub mode was left for another one";
    enter(marked());
    marked().toggleMarkedItemsMode();
    enter(searchMode());
    EXPECT_FALSE(marked().isFileOperationsMode());
}

TEST_F(MarkedItemsModeTest, CopyAndMoveDoNotMix) {
    start();
    EXPECT_TRUE(marked().addItemsToSource({under("/a1")}, TRVMarkedItemsMode::kMove));
    EXPECT_FALSE(marked().addItemsToSource({under("/a2")}, TRVMarkedItemsMode::kCopy));
    settle();
    EXPECT_EQ(screen().infoBar.text, "Cannot mix copy/move actions");
    EXPECT_TRUE(marked().addItemsToSource({under("/a2")}, TRVMarkedItemsMode::kMove));
    EXPECT_TRUE(marked().addItemsToSource({under("/a1")}, TRVMarkedItemsMode::kMove));
    EXPECT_EQ(marked().fileOperationItemsCache().urls(), std::vector{under("/a2")});
}

TEST_F(MarkedItemsModeTest, EachListHasItsSelection) {
    start();
    for (const FileURL& url : three()) marked().markedItemsCache().addURL(url);
    marked().fileOperationItemsCache().setURLs(three());
    enter(marked());
    select("a3");
    marked().toggleMarkedItemsMode();
    settle();
    select("a2");
    marked().toggleMarkedItemsMode();
    settle();
    EXPECT_EQ(selected(), Names{"a3"});
    marked().toggleMarkedItemsMode();
    settle();
    EXPECT_EQ(selected(), Names{"a2"});
}

TEST_F(MarkedItemsModeTest, TermsOrderAndLinesTellOfMetadata) {
    off_t size = 0;
    for (const FileURL& url : three()) ASSERT_EQ(truncate(url.c_str(), size += 5), 0);
    start({{"showMetadata", 2}, {"processMetadata", true}});
    for (const FileURL& url : three()) marked().markedItemsCache().addURL(url);
    enter(marked());
    EXPECT_TRUE(table().row(0).attributes.empty());
    search(u"a \\s:d");
    EXPECT_EQ(names(), (Names{"a3", "a2", "a1"}));
    ASSERT_EQ(table().row(0).attributes.size(), 1u);
    EXPECT_TRUE(table().row(0).attributes[0].text.starts_with("⚖️ 15 Bytes"));
    search(u"\\s>12");
    EXPECT_EQ(names(), Names{"a3"});
}

TEST_F(MarkedItemsModeTest, ItsKeyChangesTheList) {
    start();
    marked().fileOperationItemsCache().setURLs(three());
    enter(marked());
    EXPECT_TRUE(press(46, kModifierCommand));
    settle();
    EXPECT_TRUE(marked().isFileOperationsMode());
    EXPECT_EQ(names().size(), 3u);
}

}  // namespace
