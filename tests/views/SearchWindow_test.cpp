#include "views/SearchWindow.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QScreen>
#include <QThread>

#include "views/QtTest.h"

namespace {

struct Listener : WindowViewDelegate {
    int closes = 0, stickyClicks = 0, moves = 0, resizes = 0;
    void windowDidBecomeKey() override {}
    void windowDidMove() override { moves++; }
    void windowDidResize() override { resizes++; }
    void windowWillClose() override { closes++; }
    void stickyButtonClicked() override { stickyClicks++; }
};

}  // namespace

using SearchWindowTest = QtTest;

TEST_F(SearchWindowTest, PlacesCountFromTheBottomOfTheScreen) {
    for (const bool composited : {false, true}) {
        WindowSystem system;
        system.isComposited = [=] { return composited; };
        SearchWindow window(system);
        const Rect screen = window.screenFrame();
        EXPECT_EQ(screen.height, QGuiApplication::primaryScreen()->geometry().height());
        const Rect place{30, 200, 638, 64};
        window.setFrame(place, false);
        EXPECT_EQ(window.frame(), place);
        // The sheet's upper edge, with or without a shadow around it.
        const QWidget* field = window.widget()->findChild<QWidget*>();
        EXPECT_EQ(field->mapToGlobal(QPoint(0, 0)).y(), int(screen.height - 200 - 64));
        window.setFrame({30, 151, 638, 113}, true);  // higher, the upper edge where it was
        EXPECT_EQ(window.frame(), (Rect{30, 151, 638, 113}));
    }
}

TEST_F(SearchWindowTest, AsksForTheKeyboardWhenItIsShown) {
    std::vector<uintptr_t> asked;
    WindowSystem system;
    system.activate = [&](uintptr_t id) { asked.push_back(id); };
    SearchWindow window(system);
    window.show();
    EXPECT_EQ(asked, std::vector<uintptr_t>{window.widget()->winId()});
    window.hide();
    EXPECT_FALSE(window.isVisible());
}

TEST_F(SearchWindowTest, TellsOnceOfEachPlaceAndOfTheEndOfEachWay) {
    SearchWindow window;
    Listener listener;
    int ends = 0;
    const auto ended = [&] { ends++; };
    window.setFrame({30, 200, 638, 64}, false, ended);
    EXPECT_EQ(ends, 1);
    window.setDelegate(&listener);
    window.show();
    window.setFrame({40, 200, 638, 64}, false);
    EXPECT_EQ(listener.moves, 1);
    EXPECT_EQ(listener.resizes, 0);

    window.setFrame({40, 151, 638, 113}, true, ended);  // higher, the upper edge where it was
    EXPECT_EQ(listener.resizes, 1);
    EXPECT_EQ(ends, 1);
    window.setFrame({40, 102, 638, 162}, true, ended);  // the first is given up for this one
    EXPECT_EQ(ends, 2);
    window.setFrame({40, 102, 638, 162}, true, ended);  // on its way there already
    EXPECT_EQ(ends, 2);
    for (int i = 0; i < 200 && ends < 4; ++i) {
        QCoreApplication::processEvents();
        QThread::msleep(10);
    }
    EXPECT_EQ(ends, 4);
    EXPECT_EQ(listener.resizes, 2);
    EXPECT_EQ(listener.moves, 1);
    EXPECT_EQ(window.frame(), (Rect{40, 102, 638, 162}));

    window.setFrame({40, 200, 638, 64}, true, ended);
    window.hide();  // nobody will see the end of it
    EXPECT_EQ(ends, 5);
    EXPECT_EQ(window.frame(), (Rect{40, 200, 638, 64}));
}

TEST_F(SearchWindowTest, ItsSidesAreDraggedWhereTheUserMay) {
    SearchWindow window;
    Listener listener;
    window.setFrame({300, 200, 638, 64}, false);
    window.setDelegate(&listener);
    window.show();
    const auto grips = childrenOf<EdgeGrip>(*window.widget());
    ASSERT_EQ(grips.size(), 2u);
    for (const EdgeGrip* grip : grips) EXPECT_FALSE(grip->isVisible());
    window.setResizable(true);
    const auto drag = [&](EdgeGrip* grip, int distance) {
        const auto send = [&](QEvent::Type type, int x) {
            QMouseEvent event(type, {1, 1}, QPointF(x, 50), Qt::LeftButton, Qt::LeftButton, {});
            QCoreApplication::sendEvent(grip, &event);
        };
        send(QEvent::MouseButtonPress, 100);
        send(QEvent::MouseMove, 100 + distance / 2);
        send(QEvent::MouseMove, 100 + distance);
    };
    drag(grips[0], -50);
    EXPECT_EQ(window.frame(), (Rect{250, 200, 688, 64}));
    EXPECT_EQ(listener.resizes, 2);
    drag(grips[1], 30);
    EXPECT_EQ(window.frame(), (Rect{250, 200, 718, 64}));
    drag(grips[1], -5000);
    EXPECT_GE(window.frame().width, 300);
    EXPECT_EQ(window.frame().x, 250);
}

TEST_F(SearchWindowTest, TakesTheLookOfTheMode) {
    SearchWindow window;
    window.setFrame({300, 200, 638, 64}, false);
    const auto ground = [&] {
        return window.widget()->grab().toImage().pixelColor(300, 50);  // beside the text
    };
    window.setLook({.isDark = true, .background = {.hue = 0.751}});
    EXPECT_LT(ground().lightness(), 60);
    EXPECT_NEAR(ground().hsvHueF(), 0.751, 0.05);
    window.setLook({.isDark = false, .background = {.hue = 0.123}});
    EXPECT_GT(ground().lightness(), 220);
}

TEST_F(SearchWindowTest, ClosingIsForTheDelegateToDo) {
    SearchWindow window;
    Listener listener;
    window.setDelegate(&listener);
    window.show();
    EXPECT_FALSE(window.widget()->close());
    EXPECT_EQ(listener.closes, 1);
    EXPECT_TRUE(window.isVisible());
}

TEST_F(SearchWindowTest, TheNativeWindowHasRoomForAFullListAndLetsClicksThroughIt) {
    QRect clicks;
    WindowSystem system;
    system.isComposited = [] { return true; };
    system.takeClicksIn = [&](uintptr_t, QRect part) { clicks = part; };
    SearchWindow window(system);
    const double top = window.screenFrame().height - 20;
    window.setFrame({30, top - 64, 638, 64}, false);
    window.show();
    const QSize native = window.widget()->size();
    EXPECT_EQ(clicks.size(), QSize(638, 64));
    window.setFrame({30, top - 211, 638, 211}, false);
    EXPECT_EQ(clicks.size(), QSize(638, 211));
    EXPECT_EQ(window.widget()->size(), native);
    EXPECT_TRUE(window.widget()->rect().contains(clicks));
    // More than a full list: it has to grow.
    window.setFrame({30, top - 700, 638, 700}, false);
    EXPECT_GT(window.widget()->height(), 700);
    EXPECT_EQ(window.frame(), (Rect{30, top - 700, 638, 700}));
}

TEST_F(SearchWindowTest, TextScaleIsOfTheSheetAndTheProgramKeepsItsNumbers) {
    WindowSystem system;
    DesktopLook look;
    system.look = [&] { return look; };
    SearchWindow window(system);
    const Rect screen = window.screenFrame();
    const Rect place{40, 200, 600, 64};
    window.setFrame(place, false);
    window.show();
    const int width = window.widget()->width();
    look.textScale = 1.25;
    QEvent changed(QEvent::ThemeChange);
    QCoreApplication::sendEvent(window.widget(), &changed);
    EXPECT_EQ(window.widget()->width(), width * 5 / 4);
    EXPECT_EQ(window.screenFrame().width, screen.width / 1.25);
    window.setFrame(place, false);
    EXPECT_EQ(window.frame(), place);
    const auto field = childrenOf<QLineEdit>(*window.widget()).front();
    EXPECT_EQ(field->height(), qRound(SearchField::kHeight * 1.25));

    int ends = 0;
    look.lessMotion = true;
    QCoreApplication::sendEvent(window.widget(), &changed);
    window.setFrame({40, 100, 600, 164}, true, [&] { ends++; });
    EXPECT_EQ(ends, 1);  // at once
}

TEST_F(SearchWindowTest, ButtonsTellAndStandAtTheEndWhereTheLocaleHasIt) {
    SearchWindow window;
    Listener listener;
    window.setDelegate(&listener);
    window.setFrame({40, 200, 600, 64}, false);
    window.show();
    const auto parts = childrenOf<WindowButtons>(*window.widget());
    ASSERT_EQ(parts.size(), 1u);
    EXPECT_GT(parts[0]->x(), 500);
    const auto buttons = childrenOf<QAbstractButton>(*parts[0]);
    ASSERT_EQ(buttons.size(), 2u);
    buttons[0]->click();
    EXPECT_EQ(listener.stickyClicks, 1);
    EXPECT_FALSE(buttons[0]->isChecked());  // the program has not said so
    window.setSticky(true);
    EXPECT_TRUE(buttons[0]->isChecked());
    buttons[1]->click();
    EXPECT_EQ(listener.closes, 1);

    window.widget()->setLayoutDirection(Qt::RightToLeft);
    window.setFrame({40, 200, 620, 64}, false);
    EXPECT_LT(parts[0]->x(), 50);
    EXPECT_GT(buttons[0]->x(), buttons[1]->x());
}
