#include "platform/linux/LinuxApplication.h"

#include <QCloseEvent>
#include <QMenu>

#include "platform/linux/LinuxFrontmost.h"
#include "platform/linux/display/DisplayTest.h"
#include "screen/KeyEvent.h"

namespace {

struct Listener : OwnApplicationDelegate {
    int resigned = 0, hidden = 0;
    void applicationWillResignActive() override { resigned++; }
    void applicationDidHide() override { hidden++; }
    void applicationDidChangeScreenParameters() override {}
};

struct StubbornWindow : QWidget {
    void closeEvent(QCloseEvent* event) override { event->ignore(); }
};

class LinuxApplicationTest : public DisplayTest {
  protected:
    void SetUp() override {
        DisplayTest::SetUp();
        if (IsSkipped()) return;
        frontmost = std::make_unique<LinuxFrontmost>();
        application = std::make_unique<LinuxApplication>(
            [this](uintptr_t window) { frontmost->activateOwnWindow(window); });
        application->setDelegate(&listener);
    }
    bool getsKeyboard(QWidget& window) {
        window.show();
        application->activateWindow(window.winId());
        return soon([&] { return window.isActiveWindow(); });
    }

    Listener listener;
    std::unique_ptr<LinuxFrontmost> frontmost;
    std::unique_ptr<LinuxApplication> application;
};

}  // namespace

TEST_F(LinuxApplicationTest, TheKeyboardIsLostOnlyToOtherPrograms) {
    QWidget first, second;
    EXPECT_FALSE(application->isActive());
    ASSERT_TRUE(getsKeyboard(first));
    ASSERT_TRUE(getsKeyboard(second));
    ASSERT_TRUE(getsKeyboard(first));
    QMenu menu;
    menu.addAction("entry");
    menu.popup(first.pos());
    pass(400);
    EXPECT_EQ(listener.resigned, 0);
    menu.close();
    pass(300);
    EXPECT_EQ(listener.resigned, 0);
    EXPECT_TRUE(application->isActive());

    OtherProgram other;
    other.showWindow("");
    EXPECT_TRUE(soon([&] { return listener.resigned == 1; }));
    EXPECT_FALSE(application->isActive());
    pass(300);
    EXPECT_EQ(listener.resigned, 1);
    application->activateIgnoringOtherApps();
    EXPECT_TRUE(application->isActive());  // before the desktop has agreed
    EXPECT_TRUE(soon([&] { return first.isActiveWindow() || second.isActiveWindow(); }));
}

TEST_F(LinuxApplicationTest, HidesAllAndBringsItBack) {
    QWidget first, second, never;
    ASSERT_TRUE(getsKeyboard(first));
    ASSERT_TRUE(getsKeyboard(second));
    application->hide();
    EXPECT_EQ(listener.hidden, 0);  // on a later turn
    EXPECT_FALSE(first.isVisible() || second.isVisible());
    EXPECT_TRUE(soon([&] { return listener.hidden == 1; }));
    application->unhide();
    EXPECT_TRUE(first.isVisible() && second.isVisible());
    EXPECT_FALSE(never.isVisible());
}

TEST_F(LinuxApplicationTest, EndsThoughAWindowRefusesToClose) {
    StubbornWindow window;
    window.show();
    application->terminate();
    EXPECT_EQ(QCoreApplication::exec(), 0);
}

TEST_F(LinuxApplicationTest, KnowsTheModifiersThatAreDown) {
    EXPECT_EQ(application->modifierFlags(), 0u);
    user({"keydown", "alt", "keydown", "super"});
    EXPECT_EQ(application->modifierFlags(), kModifierControl | kModifierOption);
    user({"keyup", "super", "keyup", "alt", "keydown", "ctrl", "keydown", "shift"});
    EXPECT_EQ(application->modifierFlags(), kModifierCommand | kModifierShift);
    user({"keyup", "shift", "keyup", "ctrl"});
}
