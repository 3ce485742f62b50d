#include "views/MarkedText.h"

#include <QFontMetricsF>
#include <random>

#include "views/LetterWidths.h"
#include "views/QtTest.h"

namespace {

constexpr auto letters = [](const QString& text) { return double(text.size()); };

QString marked(const MarkedText& text) {
    QString result;
    for (const TextRange& mark : text.marks)
        result += text.text.mid(qsizetype(mark.location), qsizetype(mark.length));
    return result;
}

}  // namespace

TEST(MarkedText, WhatFitsStaysAsItIs) {
    const MarkedText whole{"report.pdf", {{0, 3}}};
    const MarkedText same = elidedAroundMarks(whole, 10, letters);
    EXPECT_EQ(same.text, whole.text);
    EXPECT_EQ(same.marks, whole.marks);
}

TEST(MarkedText, ElisionKeepsMarksAndBothEndsInSight) {
    const QString name = QString(60, 'a') + "XYZ" + QString(60, 'b') + ".pdf";
    const MarkedText elided = elidedAroundMarks({name, {{60, 3}}}, 40, letters);
    EXPECT_LE(elided.text.size(), 40);
    EXPECT_GE(elided.text.size(), 36);  // and no more is lost than must be
    EXPECT_EQ(marked(elided), "XYZ");
    EXPECT_TRUE(elided.text.startsWith("aaa"));
    EXPECT_TRUE(elided.text.endsWith(".pdf"));
    EXPECT_EQ(elided.text.count(QChar(0x2026)), 2);
}

TEST(MarkedText, ElisionKeepsMarksWhereverTheyStand) {
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        MarkedText whole;
        for (int i = 0; i < 120; ++i) whole.text += QChar('a' + i % 26);
        for (size_t at = random() % 30; at < 120 && whole.marks.size() < 4; at += 9 + random() % 40)
            whole.marks.push_back({at, 1 + random() % 3});
        if (whole.marks.back().location + whole.marks.back().length > 120) whole.marks.pop_back();
        const MarkedText elided = elidedAroundMarks(whole, 50, letters);
        EXPECT_LE(elided.text.size(), 50);
        EXPECT_EQ(marked(elided), marked(whole));
    }
}

TEST(MarkedText, ElisionNeverTearsALetter) {
    QString name;
    for (int i = 0; i < 60; ++i) name += QString("e") + QChar(0x301);  // a letter and its accent
    for (double width = 3; width < 60; ++width) {
        const QString shown = elidedAroundMarks({name, {}}, width, letters).text;
        EXPECT_EQ(shown.count('e'), shown.count(QChar(0x301)));
        EXPECT_FALSE(shown.contains(QString(QChar(0x2026)) + QChar(0x301)));
    }
}

TEST(MarkedText, NamesShowAsPlainText) {
    EXPECT_FALSE(plainText("a\xe2\x80\xaeg\n.exe").contains(QChar(0x202e)));
    EXPECT_FALSE(plainText("a\nb").contains('\n'));
    EXPECT_EQ(plainText("a\nb").size(), 3);
    EXPECT_EQ(plainText("<b>x</b>"), "<b>x</b>");
    EXPECT_FALSE(plainToolTip("<img src=x>").contains("<img"));
    EXPECT_TRUE(plainToolTip("one\ntwo").contains("one<br>two"));
    EXPECT_TRUE(plainToolTip("").isEmpty());
}

TEST(MarkedText, PathsInOtherScriptsKeepTheirOrderAndMarks) {
    const MarkedText latin{"~/Music", {{2, 1}}};
    EXPECT_EQ(isolatingPathComponents(latin).text, latin.text);
    const MarkedText mixed{QString::fromUtf8("~/\u05d0\u05d1/c"), {{3, 3}}};
    const MarkedText isolated = isolatingPathComponents(mixed);
    EXPECT_EQ(marked(isolated), marked(mixed));
    EXPECT_EQ(isolated.text.count(QChar(0x2068)), 3);
    EXPECT_EQ(isolated.text.count(QChar(0x2069)), 3);
}

using LetterWidthsTest = QtTest;

TEST_F(LetterWidthsTest, LettersTogetherAreAsWideAsTheTextButForKerning) {
    QFont font;
    font.setPixelSize(17);
    const LetterWidths widths(font);
    const QFontMetricsF exact(font);
    for (const char* text : {"Annual report 2026.pdf", "/home/anna/Größe/été", "名前 🔒 мир", ""}) {
        const QString shown = QString::fromUtf8(text);
        const double width = exact.horizontalAdvance(shown);
        EXPECT_NEAR(widths(shown), width, 0.04 * width) << text;
    }
}
