#include "views/SearchField.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <utility>
#include <vector>

#include "views/QtTest.h"
#include "views/Theme.h"

namespace {

struct Listener : SearchFieldViewDelegate {
    std::vector<TextRange> selections;
    bool usesUp = false;
    std::vector<uint64_t> keys;
    void searchFieldSelectionDidChange(TextRange selection) override {
        selections.push_back(selection);
    }
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

    const Theme theme = Theme::make(Theme::kOwnHue, false, QFont());
    QWidget parent;
    Listener listener;
    SearchField field{&parent, {}};
};

}  // namespace

TEST_F(SearchFieldTest, TellsOnceOfEachChangeOfTextOrCursorWhoeverMadeIt) {
    using Ranges = std::vector<TextRange>;
    const auto told = [&] { return std::exchange(listener.selections, {}); };
    field.setText(u"abc");
    EXPECT_EQ(told(), (Ranges{{3, 0}}));
    press(Qt::Key_D, "d");
    EXPECT_EQ(told(), (Ranges{{4, 0}}));
    press(Qt::Key_Left);
    EXPECT_EQ(told(), (Ranges{{3, 0}}));
    field.setSelection({1, 2});
    EXPECT_EQ(told().back(), (TextRange{1, 2}));
    field.selectAll();
    EXPECT_EQ(told().back(), (TextRange{0, 4}));
    press(Qt::Key_Backspace);
    EXPECT_EQ(told(), (Ranges{{0, 0}}));
    field.setText(u"");
    field.setSelection({0, 0});
    EXPECT_TRUE(told().empty());
}

TEST_F(SearchFieldTest, TakesNoTypingWhileItIsDisabled) {
    field.setText(u"a");
    field.setEnabled(false);
    EXPECT_FALSE(field.isEnabled());
    press(Qt::Key_B, "b");
    EXPECT_EQ(field.text(), u"a");
    EXPECT_EQ(listener.keys, std::vector<uint64_t>{11});  // the delegate still sees the keys
    field.setEnabled(true);
    press(Qt::Key_B, "b");
    EXPECT_EQ(field.text(), u"ab");
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
    EXPECT_EQ(listener.selections, (std::vector<TextRange>{{1, 0}}));
    EXPECT_TRUE(listener.keys.empty());
}

TEST_F(SearchFieldTest, StylesColourTermsAndLeaveTextCursorAndCompositionAlone) {
    field.widget()->resize(400, SearchField::kHeight);
    parent.resize(400, SearchField::kHeight);
    const auto pixelsOf = [&](const QColor& colour) {
        const QImage image = field.widget()->grab().toImage();
        int count = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) count += image.pixel(x, y) == colour.rgb();
        return count;
    };
    field.setText(u"ab +mm +((");
    field.setSelection({1, 4});
    listener.selections.clear();
    const std::vector<StyledRange> styles{{{4, 2}, TermStyle::regexp}, {{8, 2}, TermStyle::error}};
    field.setStyles(styles);
    EXPECT_EQ(field.text(), u"ab +mm +((");
    EXPECT_EQ(field.selection(), (TextRange{1, 4}));
    EXPECT_TRUE(listener.selections.empty());
    field.setSelection({10, 0});
    EXPECT_GT(pixelsOf(theme.errorTerm), 0);
    const int atTheEnd = pixelsOf(theme.regexpTerm);
    EXPECT_GT(atTheEnd, 0);
    // The cursor stands elsewhere: the colours stand where they stood.
    field.setSelection({2, 0});
    field.setStyles(styles);
    EXPECT_EQ(pixelsOf(theme.regexpTerm), atTheEnd);

    QInputMethodEvent composing("xy", {});
    QCoreApplication::sendEvent(field.widget(), &composing);
    field.setStyles(styles);
    EXPECT_NEAR(pixelsOf(theme.regexpTerm), atTheEnd, atTheEnd / 4);
    QInputMethodEvent done;
    done.setCommitString("z");
    QCoreApplication::sendEvent(field.widget(), &done);
    EXPECT_EQ(field.text(), u"abz +mm +((");
    field.setStyles({});
    EXPECT_EQ(pixelsOf(theme.regexpTerm), 0);
}

TEST_F(SearchFieldTest, ManyStylesAreNoBurden) {
    std::u16string text;
    std::vector<StyledRange> styles;
    while (text.size() < 2000) {
        styles.push_back({{text.size(), 3}, TermStyle::regexp});
        text += u"+ab ";
    }
    field.setText(text);
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 30; ++i) {
        press(Qt::Key_C, "c");
        field.setStyles(styles);
        field.widget()->grab();
    }
    EXPECT_LT(timer.elapsed(), 1000);
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
