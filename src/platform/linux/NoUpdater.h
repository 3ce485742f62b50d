#pragma once
#include "platform/Updater.h"

/// Packages bring new versions here, so the program looks for none.
/// Owner:   main. Threads: main.
class NoUpdater : public Updater {
  public:
    void start() override {}
    bool sessionInProgress() const override { return false; }
};
