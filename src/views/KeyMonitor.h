#pragma once
#include <QObject>

#include "screen/KeyEvent.h"
#include "screen/keyCodes.h"

/// The keys of all our windows, on their way from the desktop to the window that has the keyboard.
/// Owner:   main, after QApplication is made. Threads: main.
class KeyMonitor : public QObject, public KeyEvents {
  public:
    explicit KeyMonitor(KeySymbols keySymbols = {});
    void setMonitor(std::function<bool(const KeyEvent&)> monitor) override;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    const KeySymbols keySymbols_;
    std::function<bool(const KeyEvent&)> monitor_;
};
