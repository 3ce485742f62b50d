#pragma once
#include <optional>
#include <span>
#include <vector>

#include "datatypes/Project.h"
#include "index/RuleSubject.h"
#include "index/globalRules.h"

/// One folder of a project with its rules, as a scan has them and as the processing of events does.
struct FolderView {
    const ProjectFolder* folder;
    FolderRules scan;
    FolderRules events;
};

/// What the folders of a project want of one directory. A scan of the project reads a directory
/// once for each of its folders around it and takes in what any of them wants; an event is judged
/// by the deepest one alone, and in its own way. So what may be in the index is more than what an
/// event brings there.
/// Threads: one at a time, since it is asked about one entry after the other.
class DirectoryViews {
  public:
    /// Of the directory that no folder has to do with.
    explicit DirectoryViews(std::span<const FolderView> all) : all_(all) {}
    /// Of an entry of this directory, as a directory. setEntry has been called with it.
    DirectoryViews below(const FileURL& entry) const;
    /// Of one of the folders, from wherever around it.
    DirectoryViews enter(const FileURL& folder) const;

    /// Whether a scan reads it at all.
    bool isRead() const { return !readers_.empty(); }
    void setEntry(const FileURL& directory, std::string_view name);
    /// Whether a scan puts the entry into the index. Types are without the link flag.
    bool isWanted(uint8_t type) const;
    /// Whether an event on the entry does.
    bool isWantedByEvents(uint8_t type) const;

  private:
    struct Reader {
        Reader(const FolderView& of, std::optional<int64_t> levels)
            : view(&of), levelsLeft(levels) {}
        const FolderView* view;
        std::optional<int64_t> levelsLeft;
        std::optional<RuleSubject> subject;
    };
    std::span<const FolderView> all_;
    std::vector<Reader> readers_;
    const FolderView* deepest_ = nullptr;
};

std::vector<FolderView> folderViews(const Project& project, const GlobalRules& global);
