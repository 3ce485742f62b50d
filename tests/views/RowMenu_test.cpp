#include "views/RowMenu.h"

#include <QKeyEvent>
#include <QMenu>

#include "views/QtTest.h"
#include "views/RowMenuStyle.h"

namespace {

class RowMenuTest : public QtTest {
  protected:
    void open(bool isByKey = true) {
        menu.popUp(items, {.hue = 0.6, .isDark = true}, {.corner = {20, 20}, .isByKey = isByKey},
                   [this](const auto& choice) { told.push_back(choice); });
    }
    void press(Qt::Key key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QCoreApplication::sendEvent(QApplication::activePopupWidget(), &event);
    }
    void turn() {
        for (int i = 0; i < 5; ++i) QCoreApplication::processEvents();
    }

    std::vector<MenuItem> items{
        {.identifier = "with", .title = "Open With", .isEnabled = false, .isSubmenu = true},
        {},
        {.identifier = "a", .title = "This & That", .keys = "Super+T"},
        {.identifier = "b", .title = "Other"}};
    DesktopLook desktop;
    RowMenu menu{WindowSystem{.look = [this] { return desktop; }}};
    std::vector<std::optional<MenuChoice>> told;
};

}  // namespace

TEST_F(RowMenuTest, IsOperatedByKeysAndTellsOnce) {
    open();
    EXPECT_EQ(menu.menu()->actions()[2]->text(), "This && That\tSuper+T");
    EXPECT_EQ(menu.menu()->activeAction(), menu.menu()->actions()[2]);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_TRUE(told.empty());  // not from within the menu
    turn();
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0]->identifier, "b");

    open();
    press(Qt::Key_Escape);
    turn();
    ASSERT_EQ(told.size(), 2u);
    EXPECT_FALSE(told[1]);
    EXPECT_FALSE(menu.isOpen());
}

TEST_F(RowMenuTest, TheSubmenuComesLater) {
    open();
    items[0].isEnabled = true;
    items[0].items = {{.identifier = "viewer", .title = "Viewer", .iconName = "none-such"},
                      {},
                      {.identifier = "editor", .title = "Editor"}};
    items[3].isEnabled = false;
    items[3].toolTip = "<b>why</b>";
    menu.update(items);
    const QAction* const other = menu.menu()->actions()[3];
    EXPECT_FALSE(other->isEnabled());
    EXPECT_FALSE(other->toolTip().contains("<b>"));
    press(Qt::Key_Up);  // past what is disabled and the separator
    press(Qt::Key_Right);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    turn();
    ASSERT_EQ(told.size(), 1u);
    ASSERT_TRUE(told[0]);
    EXPECT_EQ(told[0]->submenu, "with");
    EXPECT_EQ(told[0]->identifier, "editor");
}

TEST_F(RowMenuTest, LooksAsTheDesktopWantsItAndTheModeIs) {
    open();
    const int usual = menu.menu()->font().pixelSize();
    desktop = {.isDark = false, .highContrast = true, .textScale = 1.5};
    open();
    const auto* const style = dynamic_cast<const RowMenuStyle*>(menu.menu()->style());
    ASSERT_TRUE(style);
    EXPECT_TRUE(style->theme().highContrast);
    EXPECT_TRUE(style->theme().dark);
    EXPECT_NEAR(menu.menu()->font().pixelSize(), usual * 1.5, 1);
}

TEST_F(RowMenuTest, WhatTurnsOutDisabledIsNotTheChosenLine) {
    items[0].isEnabled = true;
    items[0].items = {{.title = "Looking…", .isEnabled = false}};
    open();
    EXPECT_EQ(menu.menu()->activeAction(), menu.menu()->actions()[0]);
    EXPECT_EQ(QApplication::activePopupWidget(), menu.menu()) << "its submenu stays shut";
    press(Qt::Key_Right);
    EXPECT_NE(QApplication::activePopupWidget(), menu.menu());
    items[0].isEnabled = false;
    items[0].items = {};
    menu.update(items);
    EXPECT_EQ(menu.menu()->activeAction(), menu.menu()->actions()[2]);
    EXPECT_EQ(QApplication::activePopupWidget(), menu.menu());

    items[0].isEnabled = true;
    open(false);
    menu.menu()->setActiveAction(menu.menu()->actions()[3]);  // by the pointer
    items[3].isEnabled = false;
    menu.update(items);
    EXPECT_EQ(menu.menu()->activeAction(), nullptr);
}
