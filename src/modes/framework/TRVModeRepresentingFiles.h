#pragma once
#include <optional>

#include "modes/framework/TRVMode.h"

/// A mode whose rows are files. Its selection is kept by paths.
/// Owner:   World. Threads: see TRVMode; what looks rows up by path: any.
class TRVModeRepresentingFiles : public TRVMode {
  public:
    explicit TRVModeRepresentingFiles(ModeIdentifier identifier) : TRVMode(identifier) {
        setAllowsEmptySelection(true);
    }

    /// The path of a row, nothing past the end. Outside sections.
    virtual std::optional<FileURL> urlOfFilteredItemAtIndex(size_t row) = 0;
    std::vector<FileURL> urlsOfFilteredItemsAtIndexSet(const std::vector<size_t>& rows);
    /// What a command works on. Any thread; another one than the main thread waits for it.
    std::vector<FileURL> clickedOrSelectedURLs();
    /// The row of a path, nothing if it has none.
    virtual std::optional<size_t> rowIndexOfFilteredItemByURL(const FileURL& url) = 0;
    /// The next restore selects this path, which need not be there yet.
    virtual void markPathForFutureSelection(const FileURL& url);

    void updateRowRepresentingURL(const FileURL& url) override;
    void saveSelection() override;
    void restoreSelection() override;
};
