#pragma once
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>

#include "datatypes/Project.h"
#include "index/Cache.h"
#include "index/ClosingComparison.h"
#include "index/FsEventClient.h"
#include "index/FsEventHandler.h"
#include "index/IndexObserver.h"
#include "platform/FileTypes.h"
#include "util/World.h"
#include "util/settings/ProcessFlagsMirror.h"

/// One Cache on the real file system with a World and settings of its own, in memory; it stands in
/// for Search mode and Marked Items mode: there are no rows and no marks. No folder is a file.
/// Owner:   Session. Threads: main; as IndexObserver also those that change the Cache.
class CacheSession final : public IndexObserver, public FsEventClient, private FileTypes {
  public:
    /// settings are laid over the defaults; the project is the current one, null: there is none.
    /// Both in stored form.
    CacheSession(const nlohmann::json& settings, const nlohmann::json& project);
    ~CacheSession() override;

    Cache& cache() { return *cache_; }
    /// Null if there is none.
    const Project* project() const { return project_.get(); }
    /// Scans the project's folders to the end; false if something ended it early.
    bool scan();
    void processFsEvents(FileEventBatch events) { handler_->processFsEvents(std::move(events)); }
    /// With the closing comparison; how many rounds found a difference.
    int processAndCompare(FileEventBatch events);

    Cache* currentCache() override { return cache_.get(); }
    void removeFilteredItem(const fs_item_t*) override {}
    void consolidateFilteredList() override {}
    bool hasMarkedPaths() override { return false; }
    void updatePathCachesAfterRemovePath(const FileURL&) override {}
    void updatePathCachesAfterRename(const FileURL&, const FileURL&) override {}

  private:
    std::shared_ptr<const Project> currentProject() const override { return project_; }
    std::shared_ptr<Cache> cacheForEvents() override { return cache_; }
    void clearSelection(const FileURL&) override {}
    void itemRenamedFrom(const FileURL&, const FileURL&, const ItemRenamed&) override {}
    void reloadResultSet() override {}
    void updateRowRepresentingURL(const FileURL&) override {}
    bool isFilePackageAtPath(const FileURL&) const override { return false; }
    std::string iconNameForItem(const FileURL&, uint8_t) const override { return {}; }

    World world_;
    std::optional<ProcessFlagsMirror> flags_;
    std::shared_ptr<const Project> project_;
    std::shared_ptr<Cache> cache_;
    std::unique_ptr<FsEventHandler> handler_;
};
