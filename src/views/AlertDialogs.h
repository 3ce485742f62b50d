#pragma once
#include "screen/Alerts.h"
#include "views/WindowSystem.h"

/// Questions in small windows in front of all others of ours, which take no keys meanwhile.
/// Owner:   main, after QApplication is made. Threads: main: runs an event loop of its own.
/// Fails:   when the program is ended while one stands: the answer of Escape.
class AlertDialogs : public Alerts {
  public:
    explicit AlertDialogs(WindowSystem system = {}) : system_(std::move(system)) {}
    AlertAnswer runModal(const Alert& alert) override;

  private:
    const WindowSystem system_;
};
