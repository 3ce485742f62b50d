#pragma once
#include <memory>

#include "AppSession.h"
#include "CacheSession.h"
#include "Fields.h"

/// What the console keeps from one line to the next. At most one World exists: the
/// cache's or the application's.
/// Owner:   Console. Threads: main.
struct Session {
    std::unique_ptr<CacheSession> cache;
    std::unique_ptr<AppSession> app;

    CacheSession& cacheSession() const {
        if (!cache) throw OpError("there is no cache: cache.new makes one");
        return *cache;
    }
    AppSession& appSession() const {
        if (!app) throw OpError("there is no application: app.start makes one");
        return *app;
    }
    void runMainQueue() const {
        if (World::exists()) World::current().mainQueue().runPending();
    }
};
