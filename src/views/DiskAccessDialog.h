#pragma once
#include "screen/DiskAccessView.h"
#include "views/SheetWindow.h"

/// Asks for the consent to read all files, where a desktop has one.
/// Owner:   main, after QApplication is made. Threads: main.
class DiskAccessDialog : public DiskAccessView {
  public:
    explicit DiskAccessDialog(const WindowSystem& system = {});
    void show(Buttons buttons) override;
    void hide() override;
    QWidget* widget() { return &window_; }

  private:
    class Window : public SheetWindow {
      public:
        Window(const WindowSystem& system, int padding) : SheetWindow(system, padding) {}
        Buttons buttons;

      protected:
        void closeAsked() override {
            if (buttons.later) buttons.later();
        }
    };
    Window window_;
};
