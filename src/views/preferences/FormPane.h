#pragma once
#include <QScrollArea>
#include <map>
#include <string>

#include "views/preferences/PaneContext.h"

class QGridLayout;

/// A pane of settings: the titles of sections at the left, their rows beside them.
/// Owner:   PreferencesWindow. Threads: main. The context outlives it.
class FormPane : public QScrollArea {
  public:
    FormPane(const PaneContext* context, QWidget* parent);
    void setForm(const PreferencesForm& form);
    bool isRecording() const;

    class Row;

  private:
    void build(const PreferencesForm& form);

    const PaneContext* const context_;
    std::map<std::string, Row*> rows_;
};

/// One setting: what it is called, its control, what it means, and what is wrong with it.
class FormPane::Row : public QWidget {
  public:
    /// Of the row's kind.
    static Row* make(const PreferencesRow& row, const PaneContext* context, QWidget* parent);
    virtual void show(const PreferencesRow& row) = 0;
    virtual bool isRecording() const { return false; }

    static constexpr int kWidth = 410;  // at a text scale of 1

  protected:
    Row(const PaneContext* context, QWidget* parent);
    /// Below the control, as far in as it is wide.
    void addTexts(const PreferencesRow& row, int inset);
    void showMessage(const PreferencesRow& row);

    const PaneContext* const context_;

  private:
    QLabel *explanation_ = nullptr, *message_ = nullptr;
    int textWidth_ = 0;
};
