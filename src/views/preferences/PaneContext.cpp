#include "views/preferences/PaneContext.h"

#include "views/Controls.h"

namespace {

constexpr auto kTone = "tone";

QColor colourOf(Tone tone, const Theme& theme) {
    return tone == Tone::text ? theme.fieldText : tone == Tone::quiet ? theme.info : theme.error;
}

QString css(const QColor& colour) {
    return QStringLiteral("rgba(%1,%2,%3,%4)")
        .arg(colour.red())
        .arg(colour.green())
        .arg(colour.blue())
        .arg(colour.alphaF());
}

}  // namespace

QLabel* paneLabel(QWidget* parent, const PaneContext& context, Tone tone) {
    QLabel* const label = makeLabel(parent, {}, context.theme->info13, {});
    setTone(*label, tone, *context.theme);
    return label;
}

void setPaneText(QLabel& label, const QString& text, int width) {
    label.setText(text);
    label.setWordWrap(true);
    label.setFixedSize(width, std::max(label.heightForWidth(width), label.fontMetrics().height()));
    label.setVisible(!text.isEmpty());
}

void setTone(QLabel& label, Tone tone, const Theme& theme) {
    label.setProperty(kTone, int(tone));
    setLabelColour(label, colourOf(tone, theme));
}

void renewTones(QWidget& root, const Theme& theme) {
    for (QLabel* label : root.findChildren<QLabel*>())
        if (const QVariant tone = label->property(kTone); tone.isValid())
            setLabelColour(*label, colourOf(Tone(tone.toInt()), theme));
}

void setUpPane(QScrollArea& pane) {
    pane.setFrameShape(QFrame::NoFrame);
    pane.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    pane.setFocusPolicy(Qt::NoFocus);
    pane.setWidgetResizable(true);
}

QWidget* makePaneContent() {
    auto* const content = new QWidget;
    content->setObjectName(QStringLiteral("paneContent"));
    return content;
}

QString paneStyle(const Theme& theme) {
    return QStringLiteral(
               "QLineEdit { border: 1px solid %1; border-radius: 6px; padding: %9px %10px;"
               "  background: %2; color: %3; selection-background-color: %4;"
               "  selection-color: %5; }"
               "QLineEdit:focus { border: 2px solid %6; padding: %11px %12px; }"
               "QMenu { background: %7; color: %3; border: 1px solid %1; padding: %13px; }"
               "QMenu::item { padding: %14px %15px %14px %16px; border-radius: 4px; }"
               "QMenu::item:selected { background: %4; color: %5; }"
               "QMenu::indicator { width: %17px; height: %17px; left: %18px; }"
               "QScrollArea, QScrollArea > QWidget > QWidget#paneContent, QTableView"
               "  { background: transparent; border: none; }"
               "QTableView { selection-background-color: transparent; outline: none; }"
               "QScrollBar:vertical { background: transparent; width: 10px; margin: 0; }"
               "QScrollBar::handle:vertical { background: %8; border-radius: 3px;"
               "  min-height: 30px; margin: 0 2px; }"
               "QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0; }"
               "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical"
               "  { background: transparent; }")
        .arg(css(theme.border), css(theme.otherSelection), css(theme.fieldText),
             css(theme.selection), css(theme.selectedText), css(theme.accent),
             css(theme.background), css(theme.scroller))
        .arg(theme.scaled(5))
        .arg(theme.scaled(9))
        .arg(theme.scaled(5) - 1)
        .arg(theme.scaled(9) - 1)
        .arg(theme.scaled(4))
        .arg(theme.scaled(6))
        .arg(theme.scaled(22))
        .arg(theme.scaled(26))
        .arg(theme.scaled(13))
        .arg(theme.scaled(7));
}
