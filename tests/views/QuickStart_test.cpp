#include "views/QuickStartWindow.h"

#include <QKeyEvent>
#include <QLabel>

#include "views/Controls.h"
#include "views/HotKeyRecorder.h"
#include "views/QtTest.h"
#include "views/TryRow.h"

namespace {

struct Listener : QuickStartViewDelegate {
    std::vector<KeyEvent> recorded;
    std::vector<size_t> tried;
    std::vector<bool> recording;
    int closed = 0;
    void hotKeyRecording(bool isRecording) override { recording.push_back(isRecording); }
    void hotKeyRecorded(const KeyEvent& event) override { recorded.push_back(event); }
    void tryChosen(size_t index) override { tried.push_back(index); }
    void quickStartClosed() override { closed++; }
};

class QuickStartTest : public QtTest {
  protected:
    QuickStartTest() {
        page.setDelegate(&listener);
        page.setContent(content);
        page.show();
    }
    void press(int key, Qt::KeyboardModifiers modifiers = {}) {
        QWidget* const widget = page.widget()->focusWidget();
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, modifiers);
            QCoreApplication::sendEvent(widget, &event);
        }
    }
    HotKeyRecorder& recorder() { return *childrenOf<HotKeyRecorder>(*page.widget()).at(0); }
    QStringList texts() {
        QStringList all;
        for (const QLabel* label : childrenOf<QLabel>(*page.widget()))
            if (label->isVisible()) all << label->text();
        return all;
    }

    QuickStartContent content{
        .tries = {{"rep", "three <b>letters</b>"}, {"a b", "two terms"}},
        .hotKey = "Ctrl+Alt+Space",
        .hotKeyMessage = "It works.",
    };
    Listener listener;
    QuickStartWindow page;
};

}  // namespace

TEST_F(QuickStartTest, AllOfItIsReachedByTheKeyboard) {
    EXPECT_NE(dynamic_cast<SheetButton*>(page.widget()->focusWidget()), nullptr);
    press(Qt::Key_Return);
    EXPECT_EQ(listener.closed, 1);
    // Around from the button: recorder, the two rows.
    press(Qt::Key_Tab);
    EXPECT_EQ(page.widget()->focusWidget(), &recorder());
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    press(Qt::Key_Tab);
    press(Qt::Key_Space);
    EXPECT_EQ(listener.tried, (std::vector<size_t>{0, 1}));
    press(Qt::Key_Escape);
    EXPECT_EQ(listener.closed, 2);
    page.hide();
    EXPECT_FALSE(page.isVisible());
}

TEST_F(QuickStartTest, RecordsAKeyAndOnlyWhenAskedTo) {
    recorder().setFocus();
    press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(listener.recorded.empty());
    press(Qt::Key_Return);
    EXPECT_TRUE(recorder().isRecording());
    press(Qt::Key_Control, Qt::ControlModifier);  // a modifier alone is none
    EXPECT_TRUE(listener.recorded.empty());
    press(Qt::Key_Tab, Qt::ControlModifier | Qt::AltModifier);
    ASSERT_EQ(listener.recorded.size(), 1u);
    EXPECT_EQ(listener.recorded[0].keyCode, kKeyTab);
    EXPECT_EQ(listener.recorded[0].modifierFlags, kModifierCommand | kModifierControl);
    EXPECT_FALSE(recorder().isRecording());

    press(Qt::Key_Space);
    press(Qt::Key_Escape);
    EXPECT_FALSE(recorder().isRecording());
    EXPECT_EQ(listener.recorded.size(), 1u);
    EXPECT_EQ(listener.closed, 0);
    press(Qt::Key_Space);
    QFocusEvent away(QEvent::FocusOut);
    QCoreApplication::sendEvent(&recorder(), &away);
    EXPECT_FALSE(recorder().isRecording());
    EXPECT_EQ(listener.recording, (std::vector{true, false, true, false, true, false}));
}

TEST_F(QuickStartTest, ShowsItsContentAsPlainText) {
    EXPECT_TRUE(texts().contains("It works."));
    content.hotKeyMessage = "Another program <b>holds</b> it.";
    content.isHotKeyMessageAnError = true;
    content.tries.push_back({"c", "third"});
    page.setContent(content);
    EXPECT_TRUE(texts().contains("Another program <b>holds</b> it."));
    const auto rows = childrenOf<TryRow>(*page.widget());
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0]->accessibleDescription(), "three <b>letters</b>");
    for (const QLabel* label : childrenOf<QLabel>(*page.widget()))
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
    content.tries.clear();
    page.setContent(content);
    EXPECT_TRUE(childrenOf<TryRow>(*page.widget()).empty());
}
