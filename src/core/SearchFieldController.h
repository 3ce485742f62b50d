#pragma once
#include <functional>
#include <optional>
#include <string>

#include "modes/framework/ModeHost.h"
#include "screen/SearchFieldView.h"
#include "searchmodes/RangeMessages.h"

class InfoBarView;
class ResultTableController;

/// The text of the search field: what the user types goes to the current mode and starts a search;
/// what the program writes does not.
/// Owner:   AppDelegate. Threads: main.
class SearchFieldController {
  public:
    SearchFieldController(SearchFieldView& field, InfoBarView& infoBar, ModeHost& host,
                          ResultTableController& table);

    /// The editor's text or cursor has changed, by whomever.
    void selectionChanged(TextRange selection);
    void searchStringDidChange();
    /// Shows a text without searching for it.
    void updateSearchString(const std::u16string& string);
    /// The same, each term in its own colour; what is to be said about them is kept.
    void updateSearchFieldWithSearchString(const std::u16string& string);
    /// The same for a key that changes the text by itself: rows get the lines that it asks for.
    void replaceSearchString(const std::u16string& string);
    /// The same text once more: what terms may be has changed.
    void refreshStyles();
    void updateSearchFieldWithEmptySearchString();
    void selectText();

    bool isSearchFieldEmpty() const;
    void focusOnSearchField();
    void updatePlaceholder();
    void enableSearchField() { field_.setEnabled(true); }
    void disableSeachField() { field_.setEnabled(false); }
    bool isSearchFieldEnabled() const { return field_.isEnabled(); }
    /// A term asks for metadata, which is not read.
    bool needsMetadata() const { return needsMetadata_; }
    void showMarqueeInfoField(const StyledText& text);
    void hideMarqueeInfoField();

    /// For as long as it lives, changes of text and cursor are the program's own.
    class CursorUpdatePause {
      public:
        explicit CursorUpdatePause(SearchFieldController& controller) : controller_(controller) {
            controller_.cursorUpdatePauses_++;
        }
        ~CursorUpdatePause() { controller_.cursorUpdatePauses_--; }
        CursorUpdatePause(const CursorUpdatePause&) = delete;
        CursorUpdatePause& operator=(const CursorUpdatePause&) = delete;

      private:
        SearchFieldController& controller_;
    };

  private:
    void searchFieldCursorDidChange(TextRange selection, bool searchStringDidChange);
    void showEmptyState(TRVMode& mode);
    /// What the last text brought with it.
    static void forgetQuery(TRVMode* mode);
    void showMessageFor(TextRange selection);
    void forgetMessages();
    void setNeedsMetadata(bool needs);

    SearchFieldView& field_;
    InfoBarView& infoBar_;
    ModeHost& host_;
    ResultTableController& table_;
    RangeMessages rangeMessages_;
    bool needsMetadata_ = false;
    int cursorUpdatePauses_ = 0;
    // As the last change left them.
    std::u16string previousSearchString_;
    const TRVMode* previousMode_ = nullptr;
};
