#include "views/SearchField.h"

#include <QCoreApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <vector>

#include "views/QtTest.h"
#include "views/Theme.h"

namespace {

struct Listener : SearchFieldViewDelegate {
    int changes = 0;
    bool usesUp = false;
    std::vector<uint64_t> keys;
    void searchFieldTextDidChange() override { changes++; }
    bool searchFieldKeyDown(const KeyEvent& event) override {
        keys.push_back(event.keyCode);
        return usesUp;
    }
};

class SearchFieldTest : public QtTest {
  protected:
    SearchFieldTest() {
        field.setTheme(&theme);
        field.setDelegate(&listener);
    }
    void press(int key, const QString& text = {}) {
        QKeyEvent event(QEvent::KeyPress, key, {}, text);
        QCoreApplication::sendEvent(field.widget(), &event);
    }

    const Theme theme = Theme::make(QPalette(Qt::white), QFont());
    QWidget parent;
    Listener listener;
    SearchField field{&parent, {}};
};

}  // namespace

TEST_F(SearchFieldTest, TellsOfTheUsersChangesAlone) {
    field.setText(u"a");
    EXPECT_EQ(listener.changes, 0);
    press(Qt::Key_B, "b");
    EXPECT_EQ(field.text(), u"ab");
    EXPECT_EQ(listener.changes, 1);
}

TEST_F(SearchFieldTest, GivesKeysToItsDelegateFirst) {
    press(Qt::Key_B, "b");
    listener.usesUp = true;
    for (const int key : {Qt::Key_C, Qt::Key_Backspace, Qt::Key_Tab}) press(key, "c");
    EXPECT_EQ(field.text(), u"b");
    EXPECT_EQ(listener.keys, (std::vector<uint64_t>{11, 8, kKeyDelete, kKeyTab}));
}

TEST_F(SearchFieldTest, WhatAnInputMethodComposesIsNoTextYet) {
    QInputMethodEvent composing(QString::fromUtf8("に"), {});
    QCoreApplication::sendEvent(field.widget(), &composing);
    EXPECT_EQ(field.text(), u"");
    QInputMethodEvent done;
    done.setCommitString(QString::fromUtf8("日"));
    QCoreApplication::sendEvent(field.widget(), &done);
    EXPECT_EQ(field.text(), u"日");
    EXPECT_EQ(listener.changes, 1);
    EXPECT_TRUE(listener.keys.empty());
}

TEST_F(SearchFieldTest, SelectionCountsUnits) {
    field.setText(u"\U0001F600ab");
    field.setSelection({2, 1});
    EXPECT_EQ(field.selection(), (TextRange{2, 1}));
    field.setSelection({3, 0});
    EXPECT_EQ(field.selection(), (TextRange{3, 0}));
    field.selectAll();
    EXPECT_EQ(field.selection(), (TextRange{0, 4}));
}
