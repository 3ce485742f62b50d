#pragma once
#include <functional>
#include <string>

#include "modes/framework/ModeHost.h"
#include "screen/SearchFieldView.h"

class ResultTableController;

/// The text of the search field: what the user types goes to the current mode and starts a search;
/// what the program writes does not.
/// Owner:   AppDelegate. Threads: main.
class SearchFieldController {
  public:
    SearchFieldController(SearchFieldView& field, ModeHost& host, ResultTableController& table);

    /// The user changed the text.
    void searchStringDidChange();
    /// Shows a text without searching for it.
    void updateSearchString(const std::u16string& string);
    void updateSearchFieldWithEmptySearchString();
    /// The first Escape: an empty field and an empty list.
    void clear();
    bool isSearchFieldEmpty() const;
    void focusOnSearchField();
    void updatePlaceholder();

  private:
    SearchFieldView& field_;
    ModeHost& host_;
    ResultTableController& table_;
    bool pauseCursorUpdateNotifications_ = false;  // while the program itself writes to the field
};
