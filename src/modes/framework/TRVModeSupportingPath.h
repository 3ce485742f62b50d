#pragma once
#include "modes/framework/PathSelection.h"
#include "modes/framework/TRVModeRepresentingFiles.h"

/// A mode with files from many folders: rows have a path line. A leading part of it can be
/// selected; commands then work on that folder instead of the row's file.
/// Owner:   World. Threads: see TRVMode; the path selection: main.
class TRVModeSupportingPath : public TRVModeRepresentingFiles {
  public:
    using TRVModeRepresentingFiles::TRVModeRepresentingFiles;

    // Commands: false where the key belongs to the text, since a row is being edited.
    bool shrinkPathSelection() { return changePathSelection(&PathSelection::shrinkPathSelection); }
    bool extendPathSelection() { return changePathSelection(&PathSelection::extendPathSelection); }
    bool clearPathSelection();

    /// Another folder of the path, or none; the row shows it.
    void setPathSelection(size_t row, const std::optional<FileURL>& url);

    // Renaming: the file's name, or the folder that is selected in its path.
    void prepareRenameSelectionAtRow(size_t row) override;
    bool prepareRenamePathComponent(const FileURL& folder, size_t row);
    /// What the user typed for a folder of the path has had its effect, or has none.
    void pathComponentEndRename() { controlTextDidEndEditing(); }
    bool controlDoCommandBySelector(RowEditCommand command, const std::u16string& text) override;

    void saveSelection() override;
    void selectionDidChangeFrom(const std::vector<size_t>& from,
                                const std::vector<size_t>& to) override;

  protected:
    void restoreSelectionWithIndexSet(std::vector<size_t> rows) override;
    /// The folder that is selected in this one row, if it is the one selected row.
    std::optional<FileURL> keptPathSelection(const std::vector<size_t>& rows);
    /// What a row shows of the selected part of its path and of the marks.
    void decorate(RowContent& content, size_t row, const FileURL& url);

  private:
    bool changePathSelection(void (PathSelection::*change)());
    void fixPathSelection(const FileURL& url, size_t row);
    void redraw(size_t row);

    std::optional<size_t> rowWithPathSelection_;  // as it was drawn last
};
