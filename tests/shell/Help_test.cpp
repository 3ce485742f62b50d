#include "shell/Help.h"

#include "shell/HelpContent.h"
#include "shell/registry/KeyboardShortcuts.h"
#include "support/ApplicationTest.h"

namespace {

using Keys = std::vector<std::string>;
using Kind = HelpView::Kind;

class HelpTest : public ApplicationTest {
  protected:
    void SetUp() override {
        home_.file("qq1");
        home_.file("qq2");
        launch({{"projects", {project("A", home_.url())}}, {"currentProject", "A"}});
        session_->app().window().toggleMainWindow();
        settle();
    }
    KeyboardShortcuts& registry() { return KeyboardShortcuts::sharedInstance(); }
    static std::vector<const HelpLine*> linesOf(const std::vector<HelpGroup>& groups,
                                                const std::string& section,
                                                const std::string& name) {
        std::vector<const HelpLine*> found;
        for (const HelpGroup& group : groups)
            for (const HelpLine& line : group.lines)
                if (group.title == section && line.name == name) found.push_back(&line);
        return found;
    }
    static Keys keysOf(const HelpLine& line) {
        Keys keys;
        for (const KeyCaps& caps : line.keys) keys.push_back(helpContent::joined(caps));
        return keys;
    }
    std::vector<HelpGroup> shownGroups() { return screen().help.content.groups; }
    size_t count(const std::vector<HelpGroup>& groups) {
        size_t lines = 0;
        for (const HelpGroup& group : groups) lines += group.lines.size();
        return lines;
    }
    bool modifiers(uint64_t flags) {
        return screen().send({.modifierFlags = flags, .kind = KeyEvent::Kind::flagsChanged});
    }
    /// And lets the disk answer.
    void advance(double seconds) {
        session_->advance(seconds);
        settle();
    }
    std::optional<Kind> shown() { return screen().help.kind; }
    void toggleSheet() { press(44, kModifierCommand | kModifierShift); }
};

}  // namespace

TEST_F(HelpTest, EachCommandOfAModeIsListedOnceWithItsKeys) {
    for (uint64_t mode = 1; mode <= 16; mode *= 2) {
        const auto groups = helpContent::allKeys({registry(), mode});
        std::string section;
        size_t commands = 0;
        for (const KeyboardShortcutEntry& entry : registry().builtinActionKeyboardShortcuts()) {
            if (!entry.definition) {
                section = entry.title;
                continue;
            }
            const auto& definition = *entry.definition;
            const auto lines = linesOf(groups, section, definition.actionName());
            ASSERT_EQ(lines.size(), definition.matchesMode(mode) ? 1u : 0u)
                << mode << " " << definition.identifier();
            if (lines.empty()) continue;
            commands++;
            const std::string keys = definition.stringRepresentation();
            EXPECT_EQ(lines[0]->keys.empty() ? "" : keysOf(*lines[0])[0], keys);
        }
        EXPECT_GT(commands, 15u) << mode;
    }
}

TEST_F(HelpTest, KeysAreThoseOfTheUserAndOfThisDesktop) {
    const auto keys = [this](uint64_t mode, const char* section, const char* name) {
        const auto groups = helpContent::allKeys({registry(), mode});
        const auto lines = linesOf(groups, section, name);
        return lines.size() == 1 ? keysOf(*lines[0]) : Keys{"not there once"};
    };
    const auto reveal = registry().keyboardShortcutDefinitionFor("RevealInFinder");
    reveal->setKeys(69, kModifierOption);
    EXPECT_EQ(keys(1, "Selection", "Reveal in File Manager"), Keys{"Super+Keypad +"});
    reveal->setKeys(69, 0);  // which never fires
    EXPECT_EQ(keys(1, "Selection", "Reveal in File Manager"), Keys{});
    EXPECT_EQ(keys(1, "Selection", "Send to Alfred"), Keys{});
    EXPECT_EQ(keys(1, "File Management", "Rename"), (Keys{"Alt+Return", "F2"}));
    EXPECT_EQ(keys(1, "General", "Delete Word before Cursor"), (Keys{"Ctrl+Backspace", "Alt+W"}));
    EXPECT_EQ(keys(1, "Switching modes", "Browser"), (Keys{"Ctrl+B", "Tab"}));
    EXPECT_EQ(keys(4, "Switching modes", "Browser"), Keys{"Ctrl+B"});
    EXPECT_EQ(keys(2, "Selection", "Browse"), (Keys{"Ctrl+Shift+B", "Ctrl+Down", "/"}));
    EXPECT_EQ(keys(1, "Switching modes", "First to Ninth Project"), Keys{"Ctrl+1–9"});
    EXPECT_EQ(keys(8, "Switching modes", "First to Ninth Project"), Keys{"not there once"});
}

TEST_F(HelpTest, TheFilterLooksAtNamesKeysAndTitles) {
    const std::vector<HelpGroup> all = {
        {.title = "Paths", .lines = {{"Copy Path", {{"Ctrl", "C"}}}, {"Äpfel", {{"F2"}}}}},
        {.title = "Other", .lines = {{"Copy", {{"Alt", "C"}, {"Ctrl", "Shift", "C"}}}}}};
    const struct {
        const char* filter;
        size_t groups, lines;
    } cases[] = {{"", 2, 3},         {"  ", 2, 3},      {"copy", 2, 2},  {"COPY path", 1, 1},
                 {"ctrl+c", 1, 1},   {"shift+C", 1, 1}, {"äp", 1, 1},    {"paths", 1, 2},
                 {"f2 paths", 1, 1}, {"copy f2", 0, 0}, {"ccopy", 0, 0}, {" other  alt ", 1, 1}};
    for (const auto& each : cases) {
        const auto left = helpContent::filtered(all, each.filter);
        EXPECT_EQ(left.size(), each.groups) << each.filter;
        EXPECT_EQ(count(left), each.lines) << each.filter;
    }
}

TEST_F(HelpTest, TheSheetComesWithItsKeyAndGoesInFourWays) {
    toggleSheet();
    ASSERT_EQ(shown(), Kind::sheet);
    EXPECT_EQ(screen().help.content.title, "Keys in Search");
    const size_t all = count(shownGroups());
    screen().send({.keyCode = 8, .characters = u"q"});
    screen().send({.keyCode = 8, .characters = u"u"});
    EXPECT_LT(count(shownGroups()), all);
    EXPECT_TRUE(field().content.empty());
    press(kKeyDelete);
    press(kKeyDelete);
    EXPECT_EQ(count(shownGroups()), all);
    EXPECT_TRUE(press(kKeyPageDown, kModifierFunction));
    EXPECT_TRUE(press(kKeyTab));
    EXPECT_EQ(screen().help.scrolled, std::vector{HelpView::Scroll::pageDown});

    EXPECT_TRUE(press(kKeyEscape));
    EXPECT_FALSE(shown());
    EXPECT_TRUE(screen().window.visible);
    toggleSheet();
    toggleSheet();
    EXPECT_FALSE(shown());
    toggleSheet();
    EXPECT_TRUE(press(13, kModifierCommand));
    EXPECT_FALSE(shown());
    EXPECT_FALSE(screen().window.visible);
    session_->app().window().toggleMainWindow();
    toggleSheet();
    ASSERT_TRUE(shown());
    session_->app().window().toggleMainWindow();
    EXPECT_FALSE(shown());
}

TEST_F(HelpTest, HoldingCtrlAloneShowsWhatTheSelectionCanHave) {
    const auto holdFor = [this](double seconds) {
        modifiers(kModifierCommand);
        advance(seconds);
    };
    holdFor(2);
    EXPECT_FALSE(shown()) << "nothing is selected";
    modifiers(0);
    type(u"qq");
    holdFor(0.9);
    EXPECT_FALSE(shown());
    advance(0.2);
    ASSERT_EQ(shown(), Kind::passing);
    EXPECT_EQ(screen().help.content.title, "qq1");
    const auto groups = shownGroups();
    EXPECT_EQ(linesOf(groups, "Selection", "Open").size(), 1u);
    EXPECT_EQ(linesOf(groups, "Selection", "Open in Text Editor").size(), 1u);
    EXPECT_TRUE(linesOf(groups, "Quick Filter", "Focus on Selected Folder").empty()) << "no folder";
    EXPECT_TRUE(linesOf(groups, "Selection", "Send to Alfred").empty()) << "no key";
    EXPECT_TRUE(linesOf(groups, "General", "Select All").empty());
    modifiers(0);
    EXPECT_FALSE(shown());

    const auto selectAll = [this] { EXPECT_TRUE(press(0, kModifierCommand)); };
    holdFor(0.5);
    selectAll();  // a chord
    advance(3);
    EXPECT_FALSE(shown());
    modifiers(kModifierCommand | kModifierShift);
    modifiers(kModifierCommand);  // what is left of one
    advance(3);
    EXPECT_FALSE(shown());
    modifiers(0);
    holdFor(1.1);
    ASSERT_EQ(shown(), Kind::passing);
    EXPECT_EQ(screen().help.content.title, "2 items");
    press(kKeyDown, kModifierFunction | kModifierNumericPad);
    EXPECT_FALSE(shown()) << "another key";
    modifiers(0);
    holdFor(0.6);
    screen().table.click({0});  // with Ctrl: the time begins anew
    advance(0.6);
    EXPECT_FALSE(shown());
    session_->advance(0.6);
    press(kKeyDown, kModifierFunction | kModifierNumericPad);
    settle();
    EXPECT_FALSE(shown()) << "the disk answers too late";
    modifiers(0);
    holdFor(1.1);
    EXPECT_TRUE(shown());
    desktop().setFrontmost({.id = "other"});
    EXPECT_FALSE(shown()) << "the keyboard is elsewhere";
}
