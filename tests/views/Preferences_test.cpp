#include <QAccessible>
#include <QAction>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>

#include "views/QtTest.h"
#include "views/preferences/EntryField.h"
#include "views/preferences/PopUpButton.h"
#include "views/preferences/PreferencesWindow.h"
#include "views/preferences/ShortcutTable.h"

namespace {

/// Writes down what it is told, one text a call.
struct Listener : PreferencesViewDelegate {
    std::vector<std::string> told;
    PreferencesWindow* window = nullptr;
    void note(const std::string& what, const std::string& more = {}) {
        told.push_back(more.empty() ? what : what + " " + more);
    }
    void paneChosen(PreferencesPane pane) override {
        note("pane", std::to_string(int(pane)));
        window->showPane(pane);
    }
    void preferencesClosed() override { note("closed"); }
    void recordingChanged(bool isRecording) override { note(isRecording ? "records" : "recorded"); }
    void toggled(const std::string& id, bool isOn) override { note(id, isOn ? "on" : "off"); }
    void numberEntered(const std::string& id, const std::string& t) override { note(id, t); }
    void choiceMade(const std::string& id, size_t c) override { note(id, std::to_string(c)); }
    void buttonPressed(const std::string& id) override { note(id); }
    void hotKeyRecorded(const KeyEvent&) override { note("hot key"); }
    void hotKeyRemoved() override { note("no hot key"); }
    void filterChanged(const std::string& text) override { note("filter", text); }
    void shortcutRecorded(const std::string& id, const KeyEvent& event) override {
        note(id, std::to_string(event.keyCode));
    }
    void shortcutRemoved(const std::string& id) override { note("remove", id); }
    void shortcutReset(const std::string& id) override { note("reset", id); }
    void shortcutShownInMenu(const std::string& id, bool is) override {
        note(is ? "menu" : "no menu", id);
    }
    void allShortcutsReset() override { note("reset all"); }
    void ruleAdded(size_t list) override { note("add", std::to_string(list)); }
    void ruleRemoved(size_t, size_t rule) override { note("remove", std::to_string(rule)); }
    void patternEntered(size_t, size_t, const std::string& text) override { note("rule", text); }
    void patternTypeChosen(size_t, size_t, size_t t) override { note("type", std::to_string(t)); }
    void fileTypeClicked(size_t, size_t, uint8_t b) override { note("bit", std::to_string(b)); }
    void rulesReset(size_t list) override { note("reset rules", std::to_string(list)); }
};

class PreferencesWindowTest : public QtTest {
  protected:
    PreferencesWindowTest() {
        user.window = &window;
        window.setDelegate(&user);
        using Kind = PreferencesRow::Kind;
        window.setForm(PreferencesPane::general,
                       {{"Keys", "", {{.kind = Kind::hotKey, .id = "hotKey", .value = "Ctrl+J"}}},
                        {"Other", "", {{.id = "switch", .label = "A <b>switch</b>"}}}});
        showNumber("100");
        window.setShortcuts({{.name = "Title"},
                             {.identifier = "one", .name = "One", .keys = "Ctrl+A"},
                             {.name = "Title"},
                             {.identifier = "two", .name = "Two"}});
        lists[1].rules = {{.pattern = "*~", .patternType = 1, .fileTypes = 3}};
        window.setRules(lists);
        window.showPane(PreferencesPane::general);
        window.show();
        QApplication::setActiveWindow(window.widget());
    }
    void showNumber(const char* value, const char* message = "") {
        window.setForm(PreferencesPane::search, {{"Limits",
                                                  "",
                                                  {{.kind = PreferencesRow::Kind::number,
                                                    .id = "limit",
                                                    .label = "Limit",
                                                    .value = value,
                                                    .message = message},
                                                   {.kind = PreferencesRow::Kind::choice,
                                                    .id = "choice",
                                                    .label = "Choice",
                                                    .choices = {"a", "b"}}}}});
    }
    void press(int key, Qt::KeyboardModifiers modifiers = {}, const QString& text = {}) {
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, modifiers, text);
            QCoreApplication::sendEvent(window.widget()->focusWidget(), &event);
        }
    }
    template <class T>
    T& only() {
        for (T* found : childrenOf<T>(*window.widget()))
            if (found->isVisible()) return *found;
        throw std::runtime_error("none is seen");
    }
    std::vector<std::string> told() { return std::exchange(user.told, {}); }
    using Told = std::vector<std::string>;

    Listener user;
    std::vector<PreferencesRuleList> lists{{"Folders", "", false, {}}, {"Items", "", true, {}}};
    PreferencesWindow window;
};

}  // namespace

TEST_F(PreferencesWindowTest, EveryPaneAndControlIsReachedByTheKeyboardAndHasAName) {
    for (size_t pane = 0; pane < kPreferencesPanes; ++pane) {
        QWidget* const first = window.widget()->focusWidget();
        int stops = 0;
        do {
            QWidget* const stop = window.widget()->focusWidget();
            const auto* const told = QAccessible::queryAccessibleInterface(stop);
            EXPECT_FALSE(told->text(QAccessible::Name).isEmpty())
                << stop->metaObject()->className();
            EXPECT_TRUE(stop->isVisible());
            press(Qt::Key_Tab);
        } while (window.widget()->focusWidget() != first && ++stops < 40);
        EXPECT_GE(stops, 2) << pane;
        EXPECT_LT(stops, 40) << pane;
        if (pane + 1 < kPreferencesPanes) press(Qt::Key_Down);
    }
    EXPECT_EQ(told(), (Told{"pane 1", "pane 2", "pane 3"}));
    press(Qt::Key_Escape);
    press(Qt::Key_W, Qt::ControlModifier);
    EXPECT_EQ(told(), (Told{"closed", "closed"}));
}

TEST_F(PreferencesWindowTest, ANumberCountsWhenItIsEnteredAndEscapeTakesItBack) {
    window.showPane(PreferencesPane::search);
    auto& field = only<EntryField>();
    field.setFocus();
    field.selectAll();
    press(Qt::Key_7, {}, "7");
    showNumber("50");  // by somebody else, meanwhile
    EXPECT_EQ(field.text(), "7");
    press(Qt::Key_Escape);
    EXPECT_EQ(field.text(), "50");
    press(Qt::Key_9, {}, "9");
    press(Qt::Key_Return);
    EXPECT_EQ(told(), (Told{"limit 9"}));
    showNumber("50", "9 is <b>wrong</b>");
    EXPECT_EQ(field.text(), "50");
    field.selectAll();
    press(Qt::Key_8, {}, "8");
    window.hide();
    EXPECT_EQ(told(), (Told{"limit 8"}));
}

TEST_F(PreferencesWindowTest, KeysAreTakenDownForTheChosenCommand) {
    window.showPane(PreferencesPane::keyboard);
    auto& table = only<ShortcutTable>();
    table.setFocus();
    EXPECT_EQ(table.chosen()->identifier, "one");
    press(Qt::Key_Down);  // past the title
    EXPECT_EQ(table.chosen()->identifier, "two");
    press(Qt::Key_Return);
    EXPECT_TRUE(window.isRecording());
    press(Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_FALSE(window.isRecording());
    press(Qt::Key_F2);
    press(Qt::Key_Escape);
    EXPECT_FALSE(window.isRecording());
    press(Qt::Key_Delete);
    press(Qt::Key_Space);  // the box of the menu
    EXPECT_EQ(told(), (Told{"records", "recorded", "two 48", "records", "recorded", "remove two",
                            "menu two"}));
    window.setShortcuts({{.identifier = "two", .name = "Two"}});
    EXPECT_EQ(table.chosen()->identifier, "two");
    window.setShortcuts({});
    EXPECT_EQ(table.chosen(), nullptr);
    press(Qt::Key_Return);
    EXPECT_FALSE(window.isRecording());
}

TEST_F(PreferencesWindowTest, RulesAreChangedInTheirPlace) {
    window.showPane(PreferencesPane::globalRules);
    auto& field = only<EntryField>();
    field.setFocus();
    field.selectAll();
    press(Qt::Key_X, {}, "x");
    press(Qt::Key_Return);
    const auto buttons = childrenOf<PopUpButton>(*window.widget());
    for (PopUpButton* button : {buttons.end()[-2], buttons.back()}) {
        button->setFocus();
        press(Qt::Key_Down);
        QMenu* const menu = button->findChild<QMenu*>();
        ASSERT_NE(menu, nullptr);
        menu->actions().back()->trigger();
        menu->close();
    }
    EXPECT_EQ(told(), (Told{"rule x", "type 2", "bit 4"}));
    lists[1].rules.clear();
    window.setRules(lists);
    EXPECT_FALSE(field.isVisible());
    EXPECT_TRUE(window.widget()->focusWidget()->isVisible());
}
