#pragma once
#include <QBasicTimer>
#include <QWidget>

#include "screen/InfoBarView.h"

struct Theme;

/// The line at the bottom of the window, and a small turning ring at its right end while something
/// goes on in the background.
/// Owner:   SearchWindow. Threads: main.
class InfoBar : public QWidget, public InfoBarView {
  public:
    static constexpr int kHeight = 20;

    InfoBar();
    void setTheme(const Theme* theme);

    // InfoBarView
    void setText(const std::string& text) override;
    void setToolTip(const std::string& text) override;
    void setErrorLook(bool isError) override;
    void setBusy(bool busy) override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void showEvent(QShowEvent*) override { turnWhileSeen(); }
    void hideEvent(QHideEvent*) override { turnWhileSeen(); }

  private:
    QRect ringPlace() const;
    void turnWhileSeen();

    const Theme* theme_ = nullptr;
    QString text_;
    bool isError_ = false;
    bool busy_ = false;
    int turn_ = 0;  // degrees
    QBasicTimer turning_;
};
