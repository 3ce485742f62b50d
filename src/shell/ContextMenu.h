#pragma once
#include <optional>
#include <string>
#include <vector>

#include "shell/ContextMenuContent.h"
#include "util/queues/OperationQueue.h"

class HidingGuard;
class ItemActions;
class ModeHost;
class SearchFieldController;
class SearchWindowController;
class TRVModeRepresentingFiles;
class UserMessages;

/// The context menu of a row. It acts on the row under the pointer, or on all that is selected
/// where that row is one of them. It opens at once; what only the disk knows follows.
/// Owner:   AppDelegate. Threads: main; a queue of its own asks the disk.
/// Fails:   with a message shown. When the list has changed under the open menu, nothing is done to
///          what stands in the row by then.
class ContextMenu {
  public:
    struct Parts {
        ModeHost& host;
        KeyboardShortcuts& shortcuts;
        Applications& applications;
        MenuView& view;
        HidingGuard& guard;
        SearchFieldController& field;
        SearchWindowController& window;
        ItemActions& actions;
        UserMessages& messages;
    };
    explicit ContextMenu(const Parts& parts) : parts_(parts) {}
    ~ContextMenu();

    /// For the clicked row, or else for the selection.
    void openAt(Point place);
    /// By a key, at the selected row. True: it opened, or said why it does not.
    bool openAtSelection();
    bool isOpen() const { return parts_.view.isOpen(); }
    void close() { parts_.view.close(); }

  private:
    /// The current mode, where it shows files and none is being renamed.
    TRVModeRepresentingFiles* mode() const;
    void open(TRVModeRepresentingFiles& mode, const MenuView::Place& place);
    void askDisk();
    void ended(const std::optional<MenuChoice>& choice);
    void perform(const MenuChoice& choice);
    /// The items are those that the menu was opened for; a row that has moved is found again.
    bool isForTheSameItems();

    const Parts parts_;
    // While it is open.
    std::vector<FileURL> items_;
    KeyboardShortcutEntries commands_;
    uint64_t opening_ = 0;  // how often it has been opened
    OperationQueue queue_{"contextMenuQ", 1, Qos::userInitiated,
                          OperationQueue::Order::newestFirst};
};
