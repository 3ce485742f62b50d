#include "views/WindowSystem.h"

#include <QGuiApplication>
#include <QPalette>

DesktopLook WindowSystem::lookNow() const {
    if (look) return look();
    return {.isDark = QGuiApplication::palette().color(QPalette::Window).lightness() < 128};
}
