#include "views/KeyMonitor.h"

#include <QGuiApplication>
#include <QKeyEvent>

#include "views/KeyTranslation.h"

KeyMonitor::KeyMonitor(KeySymbols keySymbols) : keySymbols_(std::move(keySymbols)) {
    qGuiApp->installEventFilter(this);
}

void KeyMonitor::setMonitor(std::function<bool(const KeyEvent&)> monitor) {
    monitor_ = std::move(monitor);
}

bool KeyMonitor::eventFilter(QObject* watched, QEvent* event) {
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    // A key comes to the native window first and then to one widget after the other.
    if (!isKey || !monitor_ || !watched->isWindowType()) return false;
    const auto monitor = monitor_;  // it may put another one in its place
    return monitor(keyEventFrom(*static_cast<QKeyEvent*>(event), keySymbols_));
}
