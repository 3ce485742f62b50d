#include "CacheSession.h"

#include "index/FSScanner.h"
#include "index/scanProject.h"
#include "shell/registry/PreferencesController.h"
#include "util/UserFolders.h"
#include "util/settings/OVUserDefaults.h"

CacheSession::CacheSession(const nlohmann::json& settings, const nlohmann::json& project) {
    auto& defaults = OVUserDefaults::sharedInstance();
    PreferencesController::setupUserDefaults(defaults, {.home = userFolders::home()});
    for (const auto& [key, value] : settings.items()) defaults.setObject(value, key);
    flags_.emplace(defaults);
    if (!project.is_null()) project_ = std::make_shared<const Project>(project);
    const FileTypes& types = *this;
    cache_ = std::make_shared<Cache>(*this, types);
    handler_ = std::make_unique<FsEventHandler>(*this, FSScanner::sharedInstance(), types);
}

CacheSession::~CacheSession() {
    // Jobs of a scan hold the cache, and tell this of its items.
    FSScanner::sharedInstance().abortScan();
    cache_->performBlockExclusive([](const WriteSection&) {});
}

bool CacheSession::scan() {
    return scanProject(FSScanner::sharedInstance(), *project_, {.cache = cache_}) ==
           ScanEnd::complete;
}

int CacheSession::processAndCompare(FileEventBatch events) {
    return ClosingComparison(*handler_, *this).process(std::move(events));
}
