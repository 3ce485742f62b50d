#pragma once
#include <QPointer>
#include <functional>
#include <memory>

#include "screen/HelpView.h"
#include "views/WindowSystem.h"

class QWidget;

/// The list of keys in a sheet over the search window, and the passing one beside it.
/// Owner:   main, after QApplication is made. Threads: main.
class HelpSheet : public HelpView {
  public:
    /// searchWindow: where it is on the desktop, without its shadow.
    HelpSheet(WindowSystem system, std::function<QRect()> searchWindow);
    ~HelpSheet() override;
    void setDelegate(HelpViewDelegate* delegate) override;
    void show(Kind kind, const HelpContent& content) override;
    void setContent(const HelpContent& content) override;
    void scroll(Scroll how) override;
    void hide() override;
    std::optional<Kind> shown() const override;
    QWidget* widget(Kind kind);

  private:
    class Page;
    class Passing;

    const WindowSystem system_;
    const std::unique_ptr<Page> page_;
    const std::unique_ptr<Passing> passing_;
    QPointer<QWidget> before_;  // had the keyboard before the sheet
};
