#pragma once
#include "index/LivePathFilter.h"
#include "modes/framework/PathSelection.h"
#include "modes/framework/TRVModeRepresentingFiles.h"
#include "shell/registry/KeyboardShortcuts.h"

/// A mode with files from many folders: rows have a path line, and the list can be narrowed to
/// parts of the tree. A leading part of the path can be selected; commands then work on that folder
/// instead of the row's file.
/// Owner:   World. Threads: see TRVMode; the path selection: main.
class TRVModeSupportingPath : public TRVModeRepresentingFiles {
  public:
    using TRVModeRepresentingFiles::TRVModeRepresentingFiles;

    const LivePathFilter& livePathFilter() const { return livePathFilter_; }
    /// Lists only what is below the folder, or nothing of it. Not on the main thread.
    void focusURL(const FileURL& url) { narrow(url, LivePathFilter::Rule::included); }
    void ignoreURL(const FileURL& url) { narrow(url, LivePathFilter::Rule::excluded); }
    /// Lists all again; false: nothing was narrowed. Not on the main thread.
    bool resetPathFilter();

    enum class Narrowing : bool { ignore = false, focus = true };
    /// The same for the selected rows, in the background. True: the command is used up.
    bool handleFocusOrIgnoreSelectedURL(Narrowing narrowing);

    KeyboardShortcutEntries keyboardShortcutsIncludingSuperclass(bool) const override {
        return KeyboardShortcuts::sharedInstance().sections({"Paths", "Quick Filter"});
    }

    /// Without a search; what was narrowed is gone. Not on the main thread.
    void forgetPathFilter() { livePathFilter_.reset(); }

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
    RankRequest makeFileRequest(const std::u16string& string, bool ignoreDiacritics) override;
    void restoreSelectionWithIndexSet(std::vector<size_t> rows) override;
    /// The folder that is selected in this one row, if it is the one selected row.
    std::optional<FileURL> keptPathSelection(const std::vector<size_t>& rows);
    /// What a row shows of the selected part of its path and of the marks.
    void decorate(RowContent& content, size_t row, const FileURL& url);

  private:
    void narrow(const FileURL& url, LivePathFilter::Rule rule);
    void searchFromTheTop();

    LivePathFilter livePathFilter_;
    bool changePathSelection(void (PathSelection::*change)());
    void fixPathSelection(const FileURL& url, size_t row);
    void redraw(size_t row);

    std::optional<size_t> rowWithPathSelection_;  // as it was drawn last
};
