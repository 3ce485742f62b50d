#include "views/KeyMonitor.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <utility>

#include "views/KeyTranslation.h"

KeyMonitor::KeyMonitor(KeySymbols keySymbols) : keySymbols_(std::move(keySymbols)) {
    qGuiApp->installEventFilter(this);
}

void KeyMonitor::setMonitor(std::function<bool(const KeyEvent&)> monitor) {
    monitor_ = std::move(monitor);
}

bool KeyMonitor::isMissedRepeat(const QKeyEvent& event) {
    if (event.isAutoRepeat()) return false;
    const Release now{.scanCode = event.nativeScanCode(), .time = event.timestamp()};
    const bool isPress = event.type() == QEvent::KeyPress;
    const Release last = std::exchange(released_, isPress ? Release{} : now);
    return isPress && now.time != 0 && now.time == last.time && now.scanCode == last.scanCode;
}

bool KeyMonitor::eventFilter(QObject* watched, QEvent* event) {
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    // A key comes to the native window first and then to one widget after the other.
    if (!isKey || !watched->isWindowType()) return false;
    auto& key = *static_cast<QKeyEvent*>(event);
    if (isMissedRepeat(key)) {
        QKeyEvent repeat(key.type(), key.key(), key.modifiers(), key.nativeScanCode(),
                         key.nativeVirtualKey(), key.nativeModifiers(), key.text(), true);
        repeat.setTimestamp(key.timestamp());
        QCoreApplication::sendEvent(watched, &repeat);  // it comes here again
        key.setAccepted(repeat.isAccepted());
        return true;
    }
    if (!monitor_) return false;
    const auto monitor = monitor_;  // it may put another one in its place
    return monitor(keyEventFrom(key, keySymbols_));
}
