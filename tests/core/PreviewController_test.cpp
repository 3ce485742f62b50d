#include "core/PreviewController.h"

#include "support/ApplicationTest.h"

namespace {

using Kind = PreviewContent::Kind;
constexpr uint64_t kArrow = kModifierNumericPad | kModifierFunction;
constexpr uint64_t kQuickLookKey = 16;

class PreviewControllerTest : public ApplicationTest {
  protected:
    void startWithFiles(std::initializer_list<const char*> names) {
        for (const char* name : names) home_.file(name);
        start();
        settle();
        type(u"qq");
    }
    SimulatedPreview& panel() { return screen().preview; }
    SimulatedDesktop::AskedPreviews& previews() { return desktop().previews; }
    void open() {
        ASSERT_TRUE(press(kQuickLookKey, kModifierCommand));
        settle();
        ASSERT_TRUE(panel().visible);
    }
    void later(double seconds = 0.1) {
        settle();
        session_->advance(seconds);
        settle();
    }
    std::string lastAsked() {
        return previews().asked.empty()
                   ? ""
                   : std::string(previews().asked.back().url.lastPathComponent());
    }
};

}  // namespace

TEST_F(PreviewControllerTest, FollowsTheSelectionAMomentLaterAndDropsWhatIsLate) {
    startWithFiles({"qq1", "qq2", "qq3"});
    open();
    EXPECT_EQ(lastAsked(), "qq1");
    for (const uint64_t key : {kKeyDown, kKeyDown}) press(key, kArrow);
    settle();
    EXPECT_EQ(previews().asked.size(), 1u) << "whoever runs through the list is not kept up";
    later();
    EXPECT_EQ(lastAsked(), "qq3");
    EXPECT_EQ(previews().asked.size(), 2u);

    previews().answers[0]({.kind = Preview::Kind::text, .text = "of qq1"});
    EXPECT_EQ(panel().content.name, "") << "an answer for what was selected before";
    previews().answers[1]({.kind = Preview::Kind::text,
                           .text = "of qq3",
                           .facts = {{"Si\nze", "1 \x01"}},
                           .message = "cut"});
    EXPECT_EQ(panel().content.name, "qq3");
    EXPECT_EQ(panel().content.text, "of qq3");
    EXPECT_EQ(panel().content.facts[0].value, "1 ␁");
    later(1);
    EXPECT_EQ(panel().content.kind, Kind::text) << "an answered one is not waited for";

    press(kKeyUp, kArrow);
    later();
    EXPECT_EQ(panel().content.name, "qq3") << "the old one stays for a moment";
    later(0.3);
    EXPECT_EQ(panel().content.kind, Kind::loading);
    EXPECT_EQ(panel().content.name, "qq2");
}

TEST_F(PreviewControllerTest, ClosesByEscapeItsKeyAndWithTheWindow) {
    startWithFiles({"qq1", "qq2"});
    open();
    EXPECT_TRUE(press(kKeyEscape));
    later();
    EXPECT_FALSE(panel().visible);
    EXPECT_EQ(field().content, u"qq") << "the text stays: Escape was the panel's";
    EXPECT_TRUE(screen().window.visible);

    open();
    EXPECT_TRUE(press(kQuickLookKey, kModifierCommand));
    EXPECT_FALSE(panel().visible);

    open();
    const int cancels = previews().cancels;
    session_->app().window().hideMainWindow();
    EXPECT_FALSE(panel().visible);
    EXPECT_GT(previews().cancels, cancels);
    later();
    session_->app().window().toggleMainWindow();
    later();
    EXPECT_FALSE(panel().visible);
}

TEST_F(PreviewControllerTest, TypingGoesOnBesideItAndReturnOpens) {
    startWithFiles({"qq1", "qq2"});
    open();
    type(u"2");
    later();
    EXPECT_EQ(lastAsked(), "qq2");
    type(u"xyz");
    later();
    EXPECT_EQ(panel().content.message, "Nothing is selected.");
    EXPECT_FALSE(press(kKeySpace)) << "a space is text";
    field().setText(u"");
    type(u"qq");
    press(kKeyDown, kArrow);
    press(kKeyUp, kArrow | kModifierShift);
    later();
    EXPECT_EQ(panel().content.name, "2 items are selected");
    press(kKeyDown, kArrow);
    later();
    desktop().takeRequests();
    EXPECT_TRUE(press(kKeyReturn));
    settle();
    EXPECT_EQ(requests("open").size(), 1u);
    EXPECT_FALSE(panel().visible);
}

TEST_F(PreviewControllerTest, FoldersAreListsWithIcons) {
    startWithFiles({"qq/a", "qq/sub/b"});
    open();
    previews().answers.back()({.kind = Preview::Kind::folder,
                               .isFolder = true,
                               .entries = {{"sub", true}, {"a.png", false}, {"\xff", false}}});
    EXPECT_EQ(panel().content.iconName, "folder");
    const std::vector<PreviewContent::Entry> entries = {
        {"folder", "sub"}, {"image-png", "a.png"}, {"text-x-generic", "\xef\xbf\xbd"}};
    EXPECT_EQ(panel().content.entries, entries);
}

TEST_F(PreviewControllerTest, NeedsASelection) {
    start();
    settle();
    press(kQuickLookKey, kModifierCommand);
    session_->world().mainQueue().runPending();
    EXPECT_FALSE(panel().visible);
    EXPECT_EQ(screen().infoBar.text, "No item selected");
}
