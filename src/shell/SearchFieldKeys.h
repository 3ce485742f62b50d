#pragma once
#include <functional>
#include <optional>

#include "shell/TableNavigation.h"
#include "shell/registry/KeyboardShortcuts.h"
#include "util/queues/OperationQueue.h"

class Alerts;
class HidingGuard;
class ItemActions;
class ItemOpener;
class ModeHost;
class ModeSwitcher;
class PreviewController;
class ProjectKeys;
class SearchFieldController;
class SearchFieldView;
class SearchWindowController;
class TRVMode;
class TRVSearchMode;
class Updater;
class UserMessages;

/// What the keys do that are pressed in the search field. The field keeps the focus all the time:
/// arrows move the selection of the table, combinations are commands, the rest is typing.
/// Owner:   AppDelegate. Threads: main. Whatever changes the mode or opens something is handed to
///          switchModeQueue; what asks the disk has a queue of its own.
class SearchFieldKeys {
  public:
    struct Parts {
        ModeHost& host;
        TRVSearchMode& searchMode;
        ResultTableView& table;
        ResultTableController& rows;
        SearchFieldView& fieldView;
        SearchFieldController& field;
        SearchWindowController& window;
        ModeSwitcher& modeSwitcher;
        ProjectKeys& projectKeys;
        ItemOpener& opener;
        ItemActions& actions;
        PreviewController& preview;
        UserMessages& messages;
        const HidingGuard& guard;
        const Updater& updater;
        KeyboardShortcuts& shortcuts;
        std::function<bool()> openContextMenu;  // of the selected row; false: not now
    };
    explicit SearchFieldKeys(const Parts& parts);

    /// Before the text sees it. True: the key is used up.
    bool searchFieldKeyDown(const KeyEvent& event);
    bool handleSearchFieldKeyDownEvent(const KeyEvent& event);
    /// Other modifier keys may be down: the icons of what Return does follow.
    void modifierFlagsChanged(uint64_t flags);
    struct Command {
        std::string identifier, name;  // of fixed keys: the same
        bool isUserDefined = false;
    };
    /// What Return does with these modifiers: found as the key itself finds it. Nothing: nothing.
    std::optional<Command> commandOfReturn(uint64_t flags, const TRVMode& mode) const;
    enum class OpenWith { defaultApplication, frontMostApplication };
    /// Opens the rows that are selected, and hides the window.
    bool openSelection(OpenWith with);

  private:
    bool searchFieldMayReceiveInput() const;
    /// While the preview is open the text and the plain keys are not the field's commands.
    bool previewKeyDown(const KeyEvent& event);
    bool handleNavigationKeysWithEvent(const KeyEvent& event, const TRVMode& mode);
    /// Keys with a meaning of their own; nothing: it is none of them.
    std::optional<bool> handleFixedKey(const KeyEvent& event, uint64_t flags, TRVMode& mode);
    std::optional<bool> handleReturn(uint64_t flags, bool isRepeat, TRVMode& mode);
    bool handleTab(const KeyEvent& event);
    bool handleShortcut(const KeyEvent& event, const TRVMode& mode);
    bool handleUserDefinedAction(const KeyEvent& event, const TRVMode& mode);
    bool isWholeTextSelected(const TRVMode& mode) const;
    void forgetPathSelection(TRVMode& mode);
    void rename(TRVMode& mode);
    /// Whether it may be renamed; nothing: the disk is slow to say.
    std::optional<bool> askDisk(const FileURL& url);
    void deleteSelection(TRVMode& mode);
    bool copyToClipboard(bool filenameOnly, TRVMode& mode);
    void deleteWord();
    void escape();
    void leave(TRVMode& mode);
    void open(const FileURL& url, OpenWith with);
    void refreshTexts();

    const Parts parts_;
    TableNavigation navigation_;
    const KeyboardShortcutEntries keyboardShortcuts_;  // those that are in no mode's list
    OperationQueue mayRenameQ_{"mayRenameQ", OperationQueue::kUnlimited, Qos::userInitiated};
};
