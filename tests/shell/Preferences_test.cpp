#include "shell/preferences/Preferences.h"

#include <algorithm>

#include "shell/registry/SearchHistoryController.h"
#include "shell/registry/ownKeys.h"
#include "support/ApplicationTest.h"
#include "util/settings/OVUserDefaults.h"

namespace {

using nlohmann::json;
constexpr uint64_t kKeyF = 3, kKeyJ = 38, kKeyY = 16;

class PreferencesTest : public ApplicationTest {
  protected:
    void open(json settings = json::object()) {
        home_.file("qqone.txt");
        home_.file("sub/qqtwo.tmp");
        settings.update({{"projects", {project("A", home_.url())}}, {"currentProject", "A"}});
        start(std::move(settings));
        settle();
        press(ownKeys::kKeyComma, kModifierCommand);
        settle();
        ASSERT_TRUE(view().visible);
    }
    SimulatedPreferences& view() { return screen().preferences; }
    PreferencesViewDelegate& user() { return *view().delegate; }
    OVUserDefaults& settings() { return OVUserDefaults::sharedInstance(); }
    PreferencesRow row(std::string_view id) {
        for (const PreferencesForm* form : {&view().general, &view().search})
            for (const auto& section : *form)
                for (const auto& row : section.rows)
                    if (row.id == id) return row;
        ADD_FAILURE() << "no row " << id;
        return {};
    }
    PreferencesShortcut shortcut(std::string_view identifier) {
        for (const auto& line : view().shortcuts)
            if (line.identifier == identifier) return line;
        return {};
    }
    std::string alert() {
        auto& shown = screen().alerts.shown;
        if (shown.empty()) return {};
        const Alert alert = std::exchange(shown, {}).back().alert;
        return alert.title + ": " + alert.text;
    }
    void showWindow() {
        user().preferencesClosed();
        settle();
    }
};

}  // namespace

TEST_F(PreferencesTest, ItsWindowAndTheSearchWindowGiveWayToEachOther) {
    open();
    EXPECT_FALSE(screen().window.visible);
    user().paneChosen(PreferencesPane::keyboard);
    view().recording = true;  // their key is only a key to be recorded then
    press(ownKeys::kKeyComma, kModifierCommand);
    EXPECT_TRUE(view().visible);
    view().recording = false;
    press(ownKeys::kKeyComma, kModifierCommand);
    EXPECT_FALSE(view().visible);
    EXPECT_TRUE(screen().window.visible);
    press(ownKeys::kKeyComma, kModifierCommand);
    EXPECT_EQ(view().pane, PreferencesPane::keyboard);
    session_->app().window().toggleMainWindow();
    EXPECT_FALSE(view().visible);
    EXPECT_TRUE(screen().window.visible);
    EXPECT_FALSE(session_->app().hidingGuard().isHidingPrevented());

    // From the status item they come alone, and leave nothing behind.
    session_->app().window().toggleMainWindow();
    for (const auto& entry : desktop().statusItem()->menu)
        if (entry.title == "Preferences…") entry.action();
    EXPECT_TRUE(view().visible);
    EXPECT_TRUE(session_->app().hidingGuard().isHidingPrevented());
    desktop().setFrontmost({.id = "com.example.Mail"});  // they stay while one looks elsewhere
    EXPECT_TRUE(view().visible);
    user().preferencesClosed();
    EXPECT_FALSE(view().visible || screen().window.visible);
}

TEST_F(PreferencesTest, EveryRowStoresItsSettingAndShowsWhatOthersStore) {
    open({{"processMetadata", true}, {"hotKey", {{"keyCode", 49U}, {"modifierFlags", 1310720U}}}});
    size_t rows = 0;
    for (const std::string& id : PreferencesForms::settings()) {
        const PreferencesRow before = row(id);
        const json stored = settings().objectForKey(id);
        rows++;
        switch (before.kind) {
            case PreferencesRow::Kind::toggle:
                user().toggled(id, !before.isOn);
                EXPECT_EQ(settings().boolForKey(id), !before.isOn) << id;
                EXPECT_EQ(row(id).isOn, !before.isOn) << id;
                break;
            case PreferencesRow::Kind::number:
                user().numberEntered(id, " 1,234 ");
                EXPECT_EQ(settings().integerForKey(id), 1234) << id;
                for (const char* wrong : {"", "0", "-3", "many", "1000001", "12a"}) {
                    user().numberEntered(id, wrong);
                    EXPECT_EQ(settings().integerForKey(id), 1234) << id << wrong;
                    EXPECT_TRUE(row(id).isMessageAnError) << id << wrong;
                }
                break;
            case PreferencesRow::Kind::choice:
                user().choiceMade(id, 2);
                EXPECT_EQ(settings().integerForKey(id), 2) << id;
                user().choiceMade(id, 9);
                EXPECT_EQ(row(id).chosen, 2u) << id;
                break;
            default:
                rows--;
                continue;
        }
        if (stored.is_null())
            settings().removeObjectForKey(id);
        else
            settings().setObject(stored, id);
        settle();
        EXPECT_EQ(row(id).isOn, before.isOn) << id;
        EXPECT_EQ(row(id).value, before.value) << id;
        EXPECT_EQ(row(id).chosen, before.chosen) << id;
    }
    EXPECT_EQ(rows, 13u);
}

TEST_F(PreferencesTest, ChangesCountAtOnce) {
    open();
    user().toggled("resizableSearchWindow", false);
    settle();
    EXPECT_FALSE(screen().window.isResizable);
    SearchHistoryController& history = SearchHistoryController::sharedInstance();
    for (const char* query : {"a", "b", "c"}) history.addItem(query);
    user().numberEntered("historyMaxSize", "2");
    settle();
    EXPECT_EQ(history.history(), (std::vector<std::string>{"c", "b"}));

    for (int i = 0; i < 12; ++i) home_.file("many/zz" + std::to_string(i));
    const auto index = searchMode().sharedCurrentCache();
    user().ruleAdded(1);
    settle();
    EXPECT_EQ(searchMode().sharedCurrentCache(), index) << "made anew for an empty rule";
    user().patternEntered(1, 3, "qqone*");
    user().patternTypeChosen(1, 3, 1);
    settle();
    showWindow();
    type(u"qqone");
    EXPECT_TRUE(names().empty());
    empty();
    type(u"zz");
    EXPECT_EQ(names().size(), 12u);
    user().numberEntered("maxResultsetSize", "10");
    settle();
    EXPECT_EQ(names().size(), 10u);
}

TEST_F(PreferencesTest, ShowingMetadataNeedsReadingIt) {
    open();
    screen().alerts.answers = {"Don't Show Metadata", "Enable Metadata Scanning"};
    user().choiceMade("showMetadata", 1);
    EXPECT_NE(alert().find("Incompatible configuration options"), std::string::npos);
    EXPECT_EQ(row("showMetadata").chosen, 0u);
    user().choiceMade("showMetadata", 1);
    EXPECT_EQ(row("showMetadata").chosen, 1u);
    EXPECT_TRUE(row("processMetadata").isOn);
    alert();
    user().choiceMade("showMetadata", 2);
    EXPECT_EQ(alert(), "");
}

TEST_F(PreferencesTest, TheHotKeyIsTriedAndOneWayInIsLeft) {
    open();
    const auto record = [&](uint64_t code, uint64_t flags) {
        user().hotKeyRecorded({.keyCode = code, .modifierFlags = flags});
        settle();
        return row("hotKey");
    };
    user().toggled("showStatusMenu", false);
    EXPECT_TRUE(row("showStatusMenu").isOn && row("showStatusMenu").isMessageAnError);
    EXPECT_TRUE(record(kKeyJ, kModifierShift).isMessageAnError);
    EXPECT_TRUE(record(ownKeys::kKeyComma, kModifierCommand).isMessageAnError);
    EXPECT_NE(record(kKeyF, kModifierCommand).message.find("“Reveal in File Manager”"),
              std::string::npos);
    EXPECT_FALSE(desktop().hotKey());
    const PreferencesRow works = record(kKeyJ, kModifierCommand | kModifierControl);
    EXPECT_EQ(works.value, "Ctrl+Alt+J");
    EXPECT_FALSE(works.isMessageAnError);
    EXPECT_EQ(desktop().hotKey()->keyCode, kKeyJ);
    desktop().takenHotKey = HotKey{kKeyY, kModifierControl};
    EXPECT_TRUE(record(kKeyY, kModifierControl).isMessageAnError);
    EXPECT_EQ(row("hotKey").value, "Ctrl+Alt+J");

    user().toggled("showStatusMenu", false);
    settle();
    EXPECT_FALSE(desktop().statusItem());
    user().hotKeyRemoved();
    EXPECT_EQ(row("hotKey").value, "Ctrl+Alt+J");
    user().toggled("showStatusMenu", true);
    user().hotKeyRemoved();
    settle();
    EXPECT_EQ(row("hotKey").value, "");
    EXPECT_FALSE(desktop().hotKey());
}

TEST_F(PreferencesTest, NewKeysAreRefusedWithAReason) {
    open({{"hotKey", {{"keyCode", 49U}, {"modifierFlags", 1310720U}}}});
    const struct {
        uint64_t code, flags;
        const char* told;  // null: accepted
    } cases[] = {
        {kKeyReturn, kModifierCommand,
         "Invalid shortcut: Shortcut Ctrl+Return is reserved for internal use."},
        {ownKeys::kKeyComma, kModifierCommand,
         "Invalid shortcut: Shortcut Ctrl+, is reserved for internal use."},
        {kKeyDown, 0, "Invalid shortcut: Shortcut Down needs Ctrl, Alt or Super."},
        {kKeyJ, kModifierShift, "Invalid shortcut: Shortcut Shift+J needs Ctrl, Alt or Super."},
        {kKeyF, kModifierCommand,
         "Conflicting shortcuts: Shortcut Ctrl+F is already used for action “Reveal in File "
         "Manager”."},
        {kKeySpace, kModifierCommand | kModifierControl,
         "Conflicting shortcuts: Shortcut Ctrl+Alt+Space is already used for showing and hiding "
         "the search window."},
        {kKeyY, kModifierControl, nullptr},
    };
    for (const auto& each : cases) {
        user().shortcutRecorded("SelectEveryItem",
                                {.keyCode = each.code, .modifierFlags = each.flags});
        EXPECT_EQ(alert(), each.told ? each.told : "");
        EXPECT_EQ(shortcut("SelectEveryItem").keys, each.told ? "Ctrl+A" : "Alt+Y");
    }
    EXPECT_TRUE(shortcut("SelectEveryItem").isChanged);
    EXPECT_EQ(settings().dictionaryForKey("keyboardShortcuts")["SelectEveryItem"], "-16/262144");

    // Its first keys are another command's by now.
    user().shortcutRecorded("QuickLook", {.keyCode = 0, .modifierFlags = kModifierCommand});
    user().shortcutReset("SelectEveryItem");
    EXPECT_NE(alert().find("“Quick Look”"), std::string::npos);
    EXPECT_EQ(shortcut("SelectEveryItem").keys, "Alt+Y");
    user().shortcutRemoved("QuickLook");
    EXPECT_EQ(shortcut("QuickLook").keys, "");
    user().shortcutReset("SelectEveryItem");
    EXPECT_FALSE(shortcut("SelectEveryItem").isChanged);

    screen().alerts.answers = {"Cancel", "Reset"};
    user().allShortcutsReset();
    EXPECT_TRUE(shortcut("QuickLook").isChanged);
    user().allShortcutsReset();
    EXPECT_EQ(shortcut("QuickLook").keys, "Ctrl+Y");
}

TEST_F(PreferencesTest, TheFilterKeepsTitlesOfWhatItLeavesAndEndsWithTheWindow) {
    open();
    const size_t all = view().shortcuts.size();
    user().filterChanged("quick LOOK");
    ASSERT_EQ(view().shortcuts.size(), 2u);
    EXPECT_EQ(view().shortcuts[0].name, "General");
    EXPECT_EQ(view().shortcuts[1].identifier, "QuickLook");
    user().filterChanged("nothing like it");
    EXPECT_TRUE(view().shortcuts.empty());
    showWindow();
    press(ownKeys::kKeyComma, kModifierCommand);
    EXPECT_EQ(view().shortcuts.size(), all);
}

TEST_F(PreferencesTest, RulesAreEditedOneByOne) {
    open({{"globalFolderRules",
           json::array({{{"pattern", "*~"}, {"patternType", 1}, {"fsItemType", 7}, {"own", 1}}})}});
    const auto rule = [&](size_t list, size_t at) { return view().rules.at(list).rules.at(at); };
    user().ruleAdded(1);
    EXPECT_EQ(rule(1, 1).fileTypesText, "Fi/Fo");
    user().fileTypeClicked(1, 0, 4);
    EXPECT_EQ(rule(1, 0).fileTypesText, "Fi/Fo");
    user().fileTypeClicked(1, 1, 1);
    user().patternEntered(1, 1, "a[");
    EXPECT_EQ(rule(1, 1).warning, "");
    user().patternTypeChosen(1, 1, 2);
    EXPECT_NE(rule(1, 1).warning, "");
    user().patternTypeChosen(1, 1, 7);
    EXPECT_EQ(rule(1, 1).patternType, 2u);
    EXPECT_EQ(settings().arrayForKey("globalFolderRules"),
              json::array({{{"pattern", "*~"}, {"patternType", 1}, {"fsItemType", 3}, {"own", 1}},
                           {{"pattern", "a["}, {"patternType", 2}, {"fsItemType", 2}}}));
    user().ruleRemoved(1, 0);
    user().ruleRemoved(1, 9);
    EXPECT_EQ(rule(1, 0).pattern, "a[");
    screen().alerts.answers = {"Cancel", "Reset"};
    user().rulesReset(1);
    EXPECT_EQ(view().rules[1].rules.size(), 1u);
    user().rulesReset(1);
    EXPECT_EQ(view().rules[1].rules.size(), 3u);

    user().ruleAdded(0);
    EXPECT_EQ(rule(0, 3).fileTypes, 2);
    user().patternEntered(0, 3, "lib/*");
    user().patternTypeChosen(0, 3, 1);
    EXPECT_NE(rule(0, 3).warning.find("“/”"), std::string::npos);
}
