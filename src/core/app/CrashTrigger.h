#pragma once
#include "util/FileURL.h"
#include "util/queues/DetachedThread.h"

/// Lets the way of crash reports be tried: ends the process by a fault when a certain file appears.
/// Only a regular file of the user's own counts, and only if it could be removed: nobody else can
/// end the program, and nothing is destroyed.
/// Owner:   AppDelegate. Threads: its own.
class CrashTrigger {
  public:
    explicit CrashTrigger(FileURL file);
    /// Whether the file asked for a crash; it is gone then.
    static bool takeRequest(const FileURL& file);

  private:
    DetachedThread thread_;
};
