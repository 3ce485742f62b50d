#pragma once
#include "modes/framework/TRVModeRepresentingFiles.h"

class FileTypes;
class ModeSwitcher;
class TRVMarkedItemsMode;
class TRVSearchMode;

/// Gives a file another name on the disk and then in the index, among the marks and in what each
/// mode remembers.
/// Owner:   AppDelegate. Threads: main; the index follows on renameQ, the modes after it.
/// Fails:   where the disk refuses, and then nothing has changed.
class ItemRenamer {
  public:
    struct Parts {
        TRVSearchMode& searchMode;
        TRVMarkedItemsMode& marks;
        const ModeSwitcher& modes;
        const FileTypes& fileTypes;
    };
    explicit ItemRenamer(const Parts& parts) : parts_(parts) {}

    Result<void> renameItem(const FileURL& from, const FileURL& to);

  private:
    void tellIndex(const FileURL& from, const FileURL& to, uint64_t fromInode);

    const Parts parts_;
    SerialQueue renameQ_{"renameQ", Qos::userInitiated};
};
