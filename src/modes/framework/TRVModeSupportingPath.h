#pragma once
#include "modes/framework/TRVModeRepresentingFiles.h"
#include "shell/registry/KeyboardShortcuts.h"

/// A mode with files from many folders: rows have a path line.
/// Owner:   World. Threads: see TRVMode.
class TRVModeSupportingPath : public TRVModeRepresentingFiles {
  public:
    using TRVModeRepresentingFiles::TRVModeRepresentingFiles;

    KeyboardShortcutEntries keyboardShortcutsIncludingSuperclass(bool) const override {
        return KeyboardShortcuts::sharedInstance().sections({"Paths", "Quick Filter"});
    }
};
