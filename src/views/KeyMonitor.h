#pragma once
#include <QObject>
#include <QtGlobal>

#include "screen/KeyEvent.h"
#include "screen/keyCodes.h"

class QKeyEvent;

/// The keys of all our windows, on their way from the desktop to the window that has the keyboard.
/// A key that is held down comes up and goes down again in the same millisecond, with nothing in
/// between. The toolkit sees that only where both have come already; where they have not, the press
/// is told here to repeat.
/// Owner:   main, after QApplication is made. Threads: main.
class KeyMonitor : public QObject, public KeyEvents {
  public:
    explicit KeyMonitor(KeySymbols keySymbols = {});
    void setMonitor(std::function<bool(const KeyEvent&)> monitor) override;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool isMissedRepeat(const QKeyEvent& event);

    struct Release {
        quint32 scanCode = 0;
        quint64 time = 0;  // of the desktop; 0: unknown
    };
    Release released_;  // by the event before this one
    const KeySymbols keySymbols_;
    std::function<bool(const KeyEvent&)> monitor_;
};
