#include "views/AlertDialogs.h"

#include <QApplication>
#include <QEventLoop>
#include <QPointer>
#include <optional>

#include "views/AlertWindow.h"

AlertAnswer AlertDialogs::runModal(const Alert& alert) {
    const QPointer<QWidget> before = QApplication::activeWindow();
    QEventLoop loop;
    std::optional<size_t> answer;
    AlertWindow window(system_, alert, [&](size_t button) {
        if (!answer) answer = button;
        loop.quit();
    });
    window.showCentred(SheetWindow::Keyboard::asked);
    loop.exec();
    window.hide();
    if (before && before->isVisible()) {
        before->activateWindow();
        if (system_.activate) system_.activate(before->winId());
    }
    return {.button = answer.value_or(window.buttonOfEscape()),
            .suppressed = window.isSuppressed()};
}
