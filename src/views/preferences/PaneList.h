#pragma once
#include <QAbstractButton>
#include <QButtonGroup>
#include <QWidget>
#include <functional>

#include "screen/PreferencesView.h"

struct Theme;

/// The names of the panes at the side of the preferences; one of them is chosen. Arrow keys go from
/// one to the next.
/// Owner:   PreferencesWindow. Threads: main. The theme outlives it.
class PaneList : public QWidget {
  public:
    PaneList(const Theme* theme, QWidget* parent);
    void setChosenBlock(std::function<void(PreferencesPane)> chosen) {
        chosen_ = std::move(chosen);
    }
    void setPane(PreferencesPane pane);
    /// The chosen entry gets the keyboard.
    void takeKeyboard() { group_->checkedButton()->setFocus(); }
    static QString nameOf(PreferencesPane pane);

  private:
    class Entry;

    QButtonGroup* const group_;
    std::function<void(PreferencesPane)> chosen_;
};
