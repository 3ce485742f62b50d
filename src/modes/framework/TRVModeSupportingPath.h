#pragma once
#include "index/LivePathFilter.h"
#include "modes/framework/TRVModeRepresentingFiles.h"
#include "shell/registry/KeyboardShortcuts.h"

/// A mode with files from many folders: rows have a path line, and the list can be narrowed to
/// parts of the tree.
/// Owner:   World. Threads: see TRVMode.
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

  protected:
    /// Without a search; what was narrowed is gone. Not on the main thread.
    void forgetPathFilter() { livePathFilter_.reset(); }

  private:
    void narrow(const FileURL& url, LivePathFilter::Rule rule);
    void searchFromTheTop();

    LivePathFilter livePathFilter_;
};
