#pragma once
#include <vector>

#include "util/Observable.h"

class OVUserDefaults;

/// Keeps the process-wide flags and the log's level equal to their settings: at once when it is
/// made, then at each change, on the main thread. Made before the other observers of these
/// settings, it is told first, and they see the new flag.
/// The event path (debugFsEventPath) is none of its flags: the events' own queue keeps it.
/// Owner:   AppDelegate; ends before the settings. Main thread.
class ProcessFlagsMirror {
  public:
    explicit ProcessFlagsMirror(OVUserDefaults& settings);

  private:
    std::vector<Subscription> subscriptions_;
};
