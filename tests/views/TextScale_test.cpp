#include <QLabel>

#include "views/AlertWindow.h"
#include "views/PreviewPanel.h"
#include "views/QtTest.h"
#include "views/QuickStartWindow.h"
#include "views/QuitProgress.h"
#include "views/RowMenu.h"
#include "views/preferences/PreferencesWindow.h"

namespace {

constexpr double kScale = 1.5;

class TextScaleTest : public QtTest {
  protected:
    double scale = 1;
    WindowSystem system() {
        return {.look = [this] { return DesktopLook{.textScale = scale}; }};
    }
    /// Of a window as it is shown.
    static QSize quickStart(const WindowSystem& system) {
        QuickStartWindow window(system);
        window.setContent({.tries = {{"re", "Finds it"}}, .hotKey = "Ctrl+Space"});
        window.show();
        return window.widget()->size();
    }
    static QSize preferences(const WindowSystem& system) {
        PreferencesWindow window(system);
        window.showPane(PreferencesPane::keyboard);
        window.show();
        return window.widget()->size();
    }
    static QSize alert(const WindowSystem& system) {
        AlertWindow window(system, {.title = "Title", .text = "Text", .buttons = {"Yes", "No"}},
                           [](size_t) {});
        window.showCentred(SheetWindow::Keyboard::asked);
        return window.size();
    }
    static QSize quitProgress(const WindowSystem& system) {
        QuitProgress window(system);
        window.show();
        window.hide();
        return window.widget()->size();
    }
    static QSize menu(const WindowSystem& system) {
        RowMenu menu(system);
        menu.popUp({{.identifier = "a", .title = "Reveal", .keys = "Ctrl+F"}}, {}, {},
                   [](auto&) {});
        return menu.menu()->size();
    }
};

}  // namespace

TEST_F(TextScaleTest, EachWindowIsLargerByIt) {
    const struct {
        const char* name;
        QSize (*size)(const WindowSystem&);
    } windows[] = {{"quick start", quickStart},
                   {"preferences", preferences},
                   {"alert", alert},
                   {"quit progress", quitProgress},
                   {"menu", menu}};
    for (const auto& window : windows) {
        scale = 1;
        const QSizeF once = window.size(system());
        scale = kScale;
        const QSizeF scaled = window.size(system());
        EXPECT_NEAR(scaled.width() / once.width(), kScale, 0.08) << window.name;
        EXPECT_NEAR(scaled.height() / once.height(), kScale, 0.08) << window.name;
    }
}

TEST_F(TextScaleTest, AWindowThatIsMadeHasTheNewOneWhenItIsOpenedAgain) {
    PreferencesWindow window(system());
    QuickStartWindow page(system());
    page.setContent({.tries = {{"re", "Finds it"}}, .hotKey = "Ctrl+Space"});
    window.showPane(PreferencesPane::general);
    window.show();
    page.show();
    const int before = window.widget()->width(), pageBefore = page.widget()->width();
    const QWidget* const label = page.widget()->findChild<QLabel*>();
    const QFont font = label->font();
    scale = kScale;
    for (QWidget* each : {window.widget(), page.widget()}) {
        QEvent changed(QEvent::ThemeChange);
        QCoreApplication::sendEvent(each, &changed);
    }
    // What is open keeps its sizes, all of them.
    EXPECT_EQ(window.widget()->width(), before);
    EXPECT_EQ(page.widget()->width(), pageBefore);
    EXPECT_EQ(label->font(), font);
    window.hide();
    page.hide();
    window.showPane(PreferencesPane::general);
    window.show();
    page.show();
    EXPECT_NEAR(double(window.widget()->width()) / before, kScale, 0.05);
    EXPECT_NEAR(double(page.widget()->width()) / pageBefore, kScale, 0.05);
}

TEST_F(TextScaleTest, ThePreviewIsAsLargeAsTheScreenAllows) {
    const QRect window(300, 100, 900, 600);
    EXPECT_EQ(PreviewPanel::placeBeside(window, QRect(0, 0, 2560, 1400), kScale).size(),
              QSize(660, 780));
    const QRect small = PreviewPanel::placeBeside(window, QRect(0, 0, 1280, 700), kScale);
    EXPECT_TRUE(QRect(0, 0, 1280, 700).contains(small));
}
