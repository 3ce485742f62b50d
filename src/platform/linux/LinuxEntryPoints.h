#pragma once
#include <memory>

#include "platform/EntryPoints.h"

/// The session bus: the name com.orrinvale.Trovast and org.freedesktop.Application on the object
/// /com/orrinvale/Trovast, so that a desktop file with DBusActivatable, `gapplication` and any
/// desktop's key settings reach the one running program.
/// Owner:   main, after QApplication is made. Threads: main.
/// Fails:   with one line in the log where there is no bus; the program then runs without.
class LinuxEntryPoints : public EntryPoints {
  public:
    LinuxEntryPoints();
    ~LinuxEntryPoints() override;
    bool claim(Requests requests, const Wish& wish) override;

  private:
    class Object;
    std::unique_ptr<Object> object_;
};
