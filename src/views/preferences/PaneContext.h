#pragma once
#include <QLabel>
#include <QScrollArea>
#include <QString>

#include "screen/PreferencesView.h"
#include "screen/keyCodes.h"
#include "views/Theme.h"

/// What the panes of the preferences have in common. The window owns it and all of them.
struct PaneContext {
    const Theme* theme;
    KeySymbols keySymbols;
    PreferencesViewDelegate* delegate = nullptr;
};

/// The colours that a label of a pane may have; they follow the theme.
enum class Tone { text, quiet, error };
QLabel* paneLabel(QWidget* parent, const PaneContext& context, Tone tone);
/// As high as it takes within the width; a label without text is not there.
void setPaneText(QLabel& label, const QString& text, int width);
void setTone(QLabel& label, Tone tone, const Theme& theme);
/// All labels below, after another theme has come.
void renewTones(QWidget& root, const Theme& theme);

/// A pane that scrolls: nothing of it is seen but its content.
void setUpPane(QScrollArea& pane);
/// What fills it.
QWidget* makePaneContent();
/// For the widgets of Qt's own that the panes use.
QString paneStyle(const Theme& theme);
