#pragma once
#include <QTableView>
#include <functional>

#include "views/preferences/PaneContext.h"

/// The commands with their keys, under the titles of their sections. Return takes down new keys for
/// the chosen one, Delete takes its keys away; Space ticks the box that shows it in the menu of a
/// row.
/// Owner:   KeyboardPane. Threads: main. The context outlives it.
class ShortcutTable : public QTableView {
  public:
    ShortcutTable(const PaneContext* context, QWidget* parent);
    ~ShortcutTable() override;
    /// The chosen command stays so, where it is still there.
    void setShortcuts(const std::vector<PreferencesShortcut>& shortcuts);
    void setChosenChanged(std::function<void()> changed) { changed_ = std::move(changed); }
    /// Null: none.
    const PreferencesShortcut* chosen() const;
    void record();
    void removeKeys();
    void toggleInMenu();
    bool isRecording() const { return isRecording_; }

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

  private:
    class Model;
    class Painter;

    void setRecording(bool recording);
    void takeKey(const QKeyEvent& event);
    void chooseFirst();

    const PaneContext* const context_;
    Model* const model_;
    std::function<void()> changed_;
    bool isRecording_ = false;
};
