#pragma once
#include <QWidget>

#include "views/preferences/PaneContext.h"

class QLineEdit;
class SheetButton;
class ShortcutTable;

/// The pane with the keys of all commands: a filter, the table, and what can be done with the
/// chosen one.
/// Owner:   PreferencesWindow. Threads: main. The context outlives it.
class KeyboardPane : public QWidget {
  public:
    KeyboardPane(const PaneContext* context, QWidget* parent);
    void setShortcuts(const std::vector<PreferencesShortcut>& shortcuts);
    bool isRecording() const;
    /// The filter is empty again.
    void begin();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void chosenChanged();

    const PaneContext* const context_;
    QLineEdit* filter_;
    ShortcutTable* table_;
    SheetButton *record_, *remove_, *reset_, *resetAll_;
};
