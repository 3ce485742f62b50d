#pragma once
#include "platform/Pasteboard.h"

/// The clipboard of the desktop. What was copied goes with the program unless the desktop keeps it.
/// Owner:   main, after QApplication is made. Threads: main.
class LinuxPasteboard : public Pasteboard {
  public:
    void setString(const std::string& text) override;
};
