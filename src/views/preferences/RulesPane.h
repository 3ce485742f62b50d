#pragma once
#include <QScrollArea>
#include <vector>

#include "views/preferences/PaneContext.h"

class QVBoxLayout;

/// The pane of the lists of rules: each rule is a line with its pattern, how that is meant, and
/// what it is for. Owner:   PreferencesWindow. Threads: main. The context outlives it.
class RulesPane : public QScrollArea {
  public:
    RulesPane(const PaneContext* context, QWidget* parent);
    /// A new rule gets the keyboard.
    void setRules(const std::vector<PreferencesRuleList>& lists);

  private:
    class Line;
    class List;

    const PaneContext* const context_;
    QVBoxLayout* column_;
    std::vector<List*> lists_;
};
