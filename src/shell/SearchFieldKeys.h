#pragma once
#include "screen/KeyEvent.h"

class ItemOpener;
class ModeHost;
class ResultTableView;
class SearchFieldController;
class SearchWindowController;
class TRVSearchMode;
class UserMessages;

/// What the keys do that are pressed in the search field. The field keeps the focus all the time:
/// arrows move the selection of the table, the rest is typing.
/// Owner:   AppDelegate. Threads: main.
class SearchFieldKeys {
  public:
    struct Parts {
        ModeHost& host;
        TRVSearchMode& searchMode;
        ResultTableView& table;
        SearchFieldController& field;
        SearchWindowController& window;
        ItemOpener& opener;
        UserMessages& messages;
    };
    explicit SearchFieldKeys(const Parts& parts) : parts_(parts) {}

    /// True: the key is used up and must not reach the text.
    bool handleSearchFieldKeyDownEvent(const KeyEvent& event);
    /// Opens the rows that are selected, and hides the window.
    bool openSelection();

  private:
    bool handleNavigationKeysWithEvent(const KeyEvent& event, uint64_t flags);
    void escape();
    void moveSelection(long rows, bool extend);

    const Parts parts_;
};
