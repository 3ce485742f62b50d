#pragma once
#include <memory>

#include "screen/QuickStartView.h"
#include "views/WindowSystem.h"

class QWidget;

/// The page of the first run: a hot key, and three queries to try.
/// Owner:   main, after QApplication is made. Threads: main.
class QuickStartWindow : public QuickStartView {
  public:
    explicit QuickStartWindow(const WindowSystem& system = {});
    ~QuickStartWindow() override;
    void setDelegate(QuickStartViewDelegate* delegate) override;
    void setContent(const QuickStartContent& content) override;
    void show() override;
    void hide() override;
    bool isVisible() const override;
    QWidget* widget();

  private:
    class Page;
    const WindowSystem system_;
    std::unique_ptr<Page> page_;
    QuickStartContent content_;
};
