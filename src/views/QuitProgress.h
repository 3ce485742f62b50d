#pragma once
#include <QVariantAnimation>

#include "screen/QuitProgressView.h"
#include "views/SheetWindow.h"

class QLabel;

/// A small window with a ring that closes. It leaves the keyboard where it is, for it is there that
/// the key is let go.
/// Owner:   main, after QApplication is made. Threads: main.
class QuitProgress : public QuitProgressView {
  public:
    explicit QuitProgress(const WindowSystem& system = {});
    ~QuitProgress() override;
    void show() override;
    void setProgress(double progress) override;
    void fadeOut() override;
    void hide() override;
    bool isVisible() const override;
    QWidget* widget();

  private:
    class Ring;
    /// At once where the desktop wants less motion.
    void fade(double to);

    SheetWindow window_;
    Ring* const ring_;  // belongs to the window, as the text does
    QLabel* const text_;
    QVariantAnimation fading_;
    bool isFadingOut_ = false;
};
