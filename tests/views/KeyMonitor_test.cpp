#include "views/KeyMonitor.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QWindow>

#include "views/QtTest.h"

class KeyMonitorTest : public QtTest {};

TEST_F(KeyMonitorTest, SeesEachKeyOfEachWindowOnceAndMayTakeIt) {
    KeyMonitor monitor;
    std::vector<KeyEvent> seen;
    bool takes = false;
    QLineEdit edits[2];
    for (QLineEdit& edit : edits) edit.show();
    const auto send = [&](QLineEdit& edit, QEvent::Type type, int key,
                          Qt::KeyboardModifiers modifiers = {}, const QString& text = {}) {
        QKeyEvent event(type, key, modifiers, text);
        edit.activateWindow();
        edit.setFocus();
        QCoreApplication::sendEvent(edit.windowHandle(), &event);
    };
    monitor.setMonitor([&](const KeyEvent& event) {
        seen.push_back(event);
        return takes;
    });
    for (QLineEdit& edit : edits) {
        seen.clear();
        send(edit, QEvent::KeyPress, Qt::Key_Q, Qt::ControlModifier, "\x11");
        send(edit, QEvent::KeyRelease, Qt::Key_Q, Qt::ControlModifier);
        // The flags are those after the modifier went.
        send(edit, QEvent::KeyRelease, Qt::Key_Control, Qt::ControlModifier);
        ASSERT_EQ(seen.size(), 3u);
        EXPECT_EQ(seen[0].kind, KeyEvent::Kind::down);
        EXPECT_EQ(seen[0].keyCode, kKeyQ);
        EXPECT_EQ(seen[0].modifierFlags, kModifierCommand);
        EXPECT_EQ(seen[1].kind, KeyEvent::Kind::up);
        EXPECT_EQ(seen[1].keyCode, kKeyQ);
        EXPECT_EQ(seen[2].kind, KeyEvent::Kind::flagsChanged);
        EXPECT_EQ(seen[2].modifierFlags, 0u);
    }
    takes = true;
    send(edits[0], QEvent::KeyPress, Qt::Key_B, {}, "b");
    EXPECT_EQ(edits[0].text(), "");
    takes = false;
    send(edits[0], QEvent::KeyPress, Qt::Key_B, {}, "b");
    EXPECT_EQ(edits[0].text(), "b");
    seen.clear();
    monitor.setMonitor({});
    send(edits[0], QEvent::KeyPress, Qt::Key_B, {}, "b");
    EXPECT_TRUE(seen.empty());
    EXPECT_EQ(edits[0].text(), "bb");
}

TEST_F(KeyMonitorTest, APressInTheMillisecondOfItsReleaseIsARepeat) {
    KeyMonitor monitor;
    std::vector<bool> repeats;
    monitor.setMonitor([&](const KeyEvent& event) {
        if (event.kind == KeyEvent::Kind::down) repeats.push_back(event.isRepeat);
        return false;
    });
    QLineEdit edit;
    edit.show();
    edit.activateWindow();
    edit.setFocus();
    constexpr quint32 kM = 58, kN = 57;
    const struct {
        QEvent::Type type;
        quint32 place;
        quint64 time;
    } steps[] = {
        {QEvent::KeyPress, kM, 10},   {QEvent::KeyRelease, kM, 50}, {QEvent::KeyPress, kM, 50},
        {QEvent::KeyRelease, kM, 90}, {QEvent::KeyPress, kN, 90},   {QEvent::KeyPress, kM, 91},
        {QEvent::KeyRelease, kM, 99}, {QEvent::KeyRelease, kN, 99}, {QEvent::KeyPress, kM, 99},
    };
    for (const auto& step : steps) {
        QKeyEvent event(step.type, Qt::Key_M, {}, step.place, 'm', 0, "m");
        event.setTimestamp(step.time);
        QCoreApplication::sendEvent(edit.windowHandle(), &event);
    }
    EXPECT_EQ(repeats, (std::vector{false, true, false, false, false}));
    EXPECT_EQ(edit.text(), "mmmmm") << "typing repeats";
}
