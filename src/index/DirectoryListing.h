#pragma once
#include <memory>
#include <vector>

#include "index/FolderReader.h"
#include "index/RuleSubject.h"
#include "index/ScanDirectoryOperation.h"

/// One run of a ScanDirectoryOperation: goes through the entries of the open directory, decides on
/// each, and hands what is wanted to the Cache and the jobs for subfolders to the queue, a large
/// directory in several parts.
/// Threads: the job's.
class DirectoryListing {
  public:
    DirectoryListing(const ScanDirectoryOperation& operation,
                     std::shared_ptr<ProjectFolderScan> scan,
                     const ScanDirectoryOperation::Directory& directory, FileHandle handle);
    /// Whether there was any entry; true too when the job was cancelled.
    bool run();

  private:
    struct Kind {
        bool isDirectory = false, isLink = false, isBundle = false;
        bool hasStatus = false;
        uint8_t type() const;
    };
    void takeEntry(const FolderReader::Entry& entry);
    Kind kindOf(const FolderReader::Entry& entry);
    void reportBrokenLink(const FolderReader::Entry& entry) const;
    bool isWanted(uint8_t type);
    bool isToBeScanned(const FolderReader::Entry& entry, const Kind& kind);
    void addChild(const FolderReader::Entry& entry, fs_item_t* item);
    void beginBatch();
    void publish();
    void count();
    FileURL urlOf(const FolderReader::Entry& entry) const;

    const ScanDirectoryOperation& operation_;
    const std::shared_ptr<ProjectFolderScan> scan_;
    const ScanRequest& request_;
    const ScanDirectoryOperation::Directory& directory_;
    const std::shared_ptr<FolderHandle> handle_;
    const bool withMetadata_;
    const ItemPool::Borrowed lane_;
    std::optional<RuleSubject> subject_;  // only where there are rules
    struct statx status_;                 // of the entry at hand
    ScanBatch batch_;
    std::vector<std::shared_ptr<Operation>> children_;
    uint64_t version_ = 0;  // of the tree's structure, from before the batch's first record
    bool isFirstBatch_ = true;
    int64_t scanned_ = 0, ignored_ = 0;  // since they were last added to the caller's
};
