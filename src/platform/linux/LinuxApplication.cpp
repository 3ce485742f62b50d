#include "platform/linux/LinuxApplication.h"

#include <QApplication>
#include <QScreen>

#include "screen/KeyEvent.h"
#include "screen/keyCodes.h"

namespace {

constexpr int kLossSettles = 100;           // milliseconds: the keyboard may go to another of ours
constexpr qint64 kKeyboardIsComing = 1000;  // milliseconds
constexpr int kScreensSettle = 50;          // milliseconds: one change comes as many signals

/// Not what Qt puts into a tray.
bool isWindowOfOurs(const QWidget& window) {
    return window.isVisible() && !(window.windowFlags() & Qt::BypassWindowManagerHint);
}

/// What the user would take for the program's front window.
QWidget* frontWindow() {
    if (QWidget* modal = QApplication::activeModalWidget()) return modal;
    QWidget* front = nullptr;
    for (QWidget* window : QApplication::topLevelWidgets())
        if (isWindowOfOurs(*window) && window->windowType() != Qt::Popup &&
            window->windowType() != Qt::ToolTip)
            front = window;
    return front;
}

}  // namespace

LinuxApplication::LinuxApplication(std::function<void(uintptr_t)> activateWindow)
    : activateWindow_(std::move(activateWindow)) {
    lost_.setSingleShot(true);
    screens_.setSingleShot(true);
    connect(&lost_, &QTimer::timeout, this, [this] { tellOfLostKeyboard(); });
    connect(&screens_, &QTimer::timeout, this, [this] {
        if (delegate_) delegate_->applicationDidChangeScreenParameters();
    });
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this,
            [this](Qt::ApplicationState state) { stateChanged(state); });
    const auto changed = [this] { screens_.start(kScreensSettle); };
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this, changed](const QScreen* screen) {
        watchScreen(screen);
        changed();
    });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, changed);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, changed);
    for (const QScreen* screen : QGuiApplication::screens()) watchScreen(screen);
}

void LinuxApplication::watchScreen(const QScreen* screen) {
    connect(screen, &QScreen::geometryChanged, this, [this] { screens_.start(kScreensSettle); });
}

bool LinuxApplication::hasAskedForKeyboard() const {
    // For a window that has gone meanwhile it comes no more.
    return asked_.isValid() && asked_.elapsed() < kKeyboardIsComing && frontWindow();
}

bool LinuxApplication::isActive() const {
    return QGuiApplication::applicationState() == Qt::ApplicationActive || hasAskedForKeyboard();
}

void LinuxApplication::stateChanged(Qt::ApplicationState state) {
    if (state == Qt::ApplicationActive) {
        wasActive_ = true;
        asked_.invalidate();
        lost_.stop();
    } else if (wasActive_) {
        lost_.start(kLossSettles);
    }
}

void LinuxApplication::tellOfLostKeyboard() {
    if (!wasActive_ || QGuiApplication::applicationState() == Qt::ApplicationActive) return;
    // While a menu of ours is open, or the keyboard is still to come, the question stays open.
    if (QApplication::activePopupWidget() || hasAskedForKeyboard()) {
        lost_.start(kLossSettles);
        return;
    }
    wasActive_ = false;
    if (delegate_) delegate_->applicationWillResignActive();
}

void LinuxApplication::activateWindow(uintptr_t window) {
    asked_.start();
    if (activateWindow_) activateWindow_(window);
}

void LinuxApplication::activateIgnoringOtherApps() {
    QWidget* const window = frontWindow();
    if (!window) return;
    window->raise();
    window->activateWindow();
    activateWindow(window->winId());
}

void LinuxApplication::hide() {
    asked_.invalidate();
    hidden_.clear();
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (!isWindowOfOurs(*window)) continue;
        hidden_.emplace_back(window);
        window->hide();
    }
    QTimer::singleShot(0, this, [this] {
        if (delegate_) delegate_->applicationDidHide();
    });
}

void LinuxApplication::unhide() {
    for (const QPointer<QWidget>& window : hidden_)
        if (window) window->show();
    hidden_.clear();
}

void LinuxApplication::terminate() {
    // Not quit(): it asks each window to close, and ours leave that to their delegates.
    QMetaObject::invokeMethod(
        qApp, [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
}

uint64_t LinuxApplication::modifierFlags() const {
    const Qt::KeyboardModifiers down = QGuiApplication::queryKeyboardModifiers();
    uint64_t flags = 0;
    if (down & Qt::ShiftModifier) flags |= kModifierShift;
    if (down & Qt::ControlModifier) flags |= kModifierCommand;
    if (down & Qt::AltModifier) flags |= modifierOfAlt();
    if (down & Qt::MetaModifier) flags |= modifierOfSuper();
    return flags;
}

void LinuxApplication::beep() {
    QApplication::beep();
}
