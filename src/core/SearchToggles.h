#pragma once
#include <cstdint>

class ModeHost;
class TRVSearchMode;

/// The switches that change what the current mode lists: in Search mode they belong to the project,
/// in the others to the settings. The list is made anew in the background.
/// Owner:   AppDelegate. Threads: main.
class SearchToggles {
  public:
    SearchToggles(ModeHost& host, TRVSearchMode& searchMode)
        : host_(host), searchMode_(searchMode) {}

    struct State {
        bool matchFilenameOnly = true;
        bool showsFiles = true;
        bool showsDirectories = true;
    };
    /// Of the current mode.
    State state() const;

    void prefSearchFilenameOnly();
    void prefHandleDiacritics();
    void prefShowFiles() { adjustFileTypeIndicators(kFiles); }
    void prefShowDirectories() { adjustFileTypeIndicators(kDirectories); }
    /// Flips one bit; the other kind is shown instead of none.
    void adjustFileTypeIndicators(uint64_t bit);
    /// Everywhere again.
    void resetPathFilter();
    /// The index gets what queries ask for.
    void enableMetadata();

    /// After a switch was changed by somebody else.
    void searchAgain();

  private:
    enum VisibleItemType : uint64_t { kFiles = 1, kDirectories = 2 };

    uint64_t visibleItemTypes() const;

    ModeHost& host_;
    TRVSearchMode& searchMode_;
};
