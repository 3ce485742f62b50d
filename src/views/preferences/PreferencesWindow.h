#pragma once
#include <memory>

#include "screen/PreferencesView.h"
#include "views/WindowSystem.h"

class QWidget;

/// The window of the preferences: the list of panes at its side, the chosen one beside it.
/// Owner:   main, after QApplication is made. Threads: main.
class PreferencesWindow : public PreferencesView {
  public:
    explicit PreferencesWindow(const WindowSystem& system = {});
    ~PreferencesWindow() override;
    void setDelegate(PreferencesViewDelegate* delegate) override;
    void setForm(PreferencesPane pane, const PreferencesForm& form) override;
    void setShortcuts(const std::vector<PreferencesShortcut>& shortcuts) override;
    void setRules(const std::vector<PreferencesRuleList>& lists) override;
    void showPane(PreferencesPane pane) override;
    void show() override;
    void hide() override;
    bool isVisible() const override;
    bool isRecording() const override;
    QWidget* widget();

  private:
    class Sheet;
    const WindowSystem system_;
    std::unique_ptr<Sheet> sheet_;
};
