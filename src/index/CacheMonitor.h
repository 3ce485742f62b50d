#pragma once
#include "util/Observable.h"

/// Mirrors the settings debugCache and dumpCache in processFlags for as long as it lives.
/// Owner:   World; each Cache touches it, so that the flags stand before its first log line.
class CacheMonitor {
  public:
    CacheMonitor();
    static CacheMonitor& sharedInstance();

  private:
    Subscription debugCache_, dumpCache_;
};
