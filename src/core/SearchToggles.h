#pragma once
#include <cstdint>

class ModeHost;
class ModeSwitcher;
class TRVSearchMode;

/// Switches of what the current mode shows. Each one searches again.
/// Owner:   AppDelegate. Threads: main.
class SearchToggles {
  public:
    SearchToggles(ModeHost& host, TRVSearchMode& searchMode)
        : host_(host), searchMode_(searchMode) {}

    /// The name alone, or the path with it.
    void prefSearchFilenameOnly();
    /// For now: a project keeps it until the program ends.
    void prefHandleDiacritics();
    void prefShowFiles() { adjustFileTypeIndicators(kFiles); }
    void prefShowDirectories() { adjustFileTypeIndicators(kFolders); }

  private:
    enum Kind : uint8_t { kFiles = 1, kFolders = 2 };
    /// One kind always stays visible.
    void adjustFileTypeIndicators(Kind bit);
    void reload();

    ModeHost& host_;
    TRVSearchMode& searchMode_;
};
