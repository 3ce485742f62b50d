#pragma once
#include <optional>
#include <shared_mutex>
#include <unordered_map>

#include "modes/framework/TRVMode.h"
#include "screen/ResultTableView.h"
#include "searchmodes/RankRequest.h"
#include "util/Result.h"

/// A path that has become another one.
struct ItemRename {
    FileURL from, to;
    bool external = true;  // by another program
};

/// A mode whose rows are files. Its selection is kept by paths, and the file of a row can be given
/// another name in its row.
/// Owner:   World. Threads: see TRVMode; what looks rows up: any; renaming: main.
class TRVModeRepresentingFiles : public TRVMode {
  public:
    /// States of renameState.
    enum RenameState : uint64_t {
        kNoRename = 0,
        kRenameRequested = 1,  // by a key
        kRenamingName = 2,
        kRenamingPathPart = 3,
    };

    explicit TRVModeRepresentingFiles(ModeIdentifier identifier) : TRVMode(identifier) {
        setAllowsEmptySelection(true);
    }

    // The paths of rows. Outside sections.
    /// Nothing past the end.
    virtual std::optional<FileURL> urlOfFilteredItemAtIndex(size_t row);
    /// Of those that there are.
    virtual std::vector<FileURL> urlsOfFilteredItemsAtIndexSet(const std::vector<size_t>& rows);
    /// The same, but for a folder that is selected in a row's path: it stands for the row.
    std::optional<FileURL> selectedURLOfFilteredItemAtIndex(size_t row);
    std::vector<FileURL> selectedURLsOfFilteredItemsAtIndexSet(const std::vector<size_t>& rows);
    /// What a command works on: the row with the context menu if it is not selected, else what is.
    /// Any thread; another one than the main thread waits for it, and only the selection counts.
    std::vector<FileURL> clickedOrSelectedURLs();
    /// The row of a path, nothing if it has none.
    virtual std::optional<size_t> rowIndexOfFilteredItemByURL(const FileURL& url);
    /// The next restore selects this path, which need not be there yet.
    virtual void markPathForFutureSelection(const FileURL& url);

    // Renaming (TRVModeRepresentingFilesRename.cpp).
    /// The key handler has set kRenameRequested and disabled the field; both are taken back where
    /// there is nothing to rename.
    virtual void prepareRenameSelectionAtRow(size_t row);
    bool prepareRenameLastPathComponentAtRow(size_t row);
    /// Of the editor in a row; true: it does not end yet.
    virtual bool controlDoCommandBySelector(RowEditCommand command, const std::u16string& text);
    /// The editor has gone, for whatever reason.
    void controlTextDidEndEditing();
    /// True if the disk has the new name; the indexes, marks and modes follow behind. Nothing on
    /// the disk is ever replaced.
    Result<bool> renamePathComponentFrom(const FileURL& from, const FileURL& to);
    /// A file or folder has another path now. Main thread.
    virtual void itemRenamedFrom(const ItemRename& rename);

    /// Moves files to the trash, after a question. Main thread.
    virtual void deleteItems(const std::vector<FileURL>& urls);

    /// An editor in a row goes first: nobody sees its end in another mode.
    void resign() override;
    void updateRowRepresentingURL(const FileURL& url) override;
    void saveSelection() override;
    void restoreSelection() override;

  protected:
    enum class RowLookup { no, byPath };
    using TRVMode::createFilteredItemsFromArray;
    void createFilteredItemsFromArray(std::vector<FilteredItem> items, RowLookup lookup);
    /// The path of a row's item, nothing for an item of another kind.
    virtual std::optional<FileURL> matchingItemToURL(const MatchingItem&) { return std::nullopt; }
    /// For modes that search with FileMatcher; the rest of the request is the mode's own.
    virtual RankRequest makeFileRequest(const std::u16string& string, bool ignoreDiacritics);

    /// Shows an editor for the name of url, in a row, and disables the rest.
    void beginEditing(const FileURL& url, uint64_t state, const RowEdit& edit);
    /// On the next turn, so that the editor is not taken away under its own command.
    void endEditingLater();
    /// Ends what the key handler has begun.
    void refuseRename(const std::string& error);

  private:
    FileURL editedURL_;  // while a row is edited: the list may change behind the editor
    std::shared_mutex rowIndexLock_;
    std::unordered_map<uint64_t, size_t> rowIndexOfFilteredItemByPathHash_;
};

/// What a command works on in a mode; nothing in one without files, nor in none.
std::vector<FileURL> selectedURLs(TRVMode* mode);
