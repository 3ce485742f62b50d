#include "index/CacheMonitor.h"

#include <nlohmann/json.hpp>

#include "util/ProcessFlags.h"
#include "util/World.h"
#include "util/settings/OVUserDefaults.h"

CacheMonitor& CacheMonitor::sharedInstance() {
    return World::current().shared<CacheMonitor>();
}

CacheMonitor::CacheMonitor() {
    OVUserDefaults& settings = OVUserDefaults::sharedInstance();
    const auto mirror = [&settings](Relaxed<bool>& flag, const char* key) {
        const auto take = [&settings, &flag, key] { flag = settings.boolForKey(key); };
        // Observed first: a change between the two is not missed.
        Subscription subscription =
            settings.addObserver(key, [take](const auto&, const auto&) { take(); });
        take();
        return subscription;
    };
    debugCache_ = mirror(processFlags.debugCache, "debugCache");
    dumpCache_ = mirror(processFlags.dumpCache, "dumpCache");
}
