#pragma once
#include <memory>

#include "CacheSession.h"
#include "Fields.h"

/// What the console keeps from one line to the next. At most one World exists: the cache's.
/// Owner:   Console. Threads: main.
struct Session {
    std::unique_ptr<CacheSession> cache;

    CacheSession& cacheSession() const {
        if (!cache) throw OpError("there is no cache: cache.new makes one");
        return *cache;
    }
    void runMainQueue() const {
        if (World::exists()) World::current().mainQueue().runPending();
    }
};
