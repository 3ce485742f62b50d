#pragma once
#include <functional>
#include <optional>
#include <string>
#include <unordered_map>

#include "platform/Applications.h"
#include "screen/RowAction.h"
#include "screen/RowContent.h"
#include "util/queues/OperationQueue.h"

class ModeHost;
class ModeSwitcher;
class SearchFieldKeys;

/// The small icon in each selected row that tells what Return does to it with the modifiers held:
/// that of the application that opens it, or the symbol of a command. Which application it is, a
/// queue of its own finds out, once a type of file and opening of the window.
/// Owner:   AppDelegate. Threads: main.
class ActionIcons {
  public:
    struct Parts {
        ModeHost& host;
        const Applications& applications;
        const ModeSwitcher& modeSwitcher;
        const SearchFieldKeys& keys;
        std::function<void()> renew;  // more is known about what is on show
    };
    explicit ActionIcons(const Parts& parts) : parts_(parts) {}

    /// Nothing: Return does nothing to the row, or its name is just being edited.
    std::optional<RowAction> actionOf(size_t row, const RowContent& shown);
    /// The user may have chosen other applications meanwhile.
    void windowWasOpened() { opening_++; }

  private:
    /// Nothing in it: nothing opens the item.
    using Answer = std::optional<RowAction>;
    struct Known {
        Answer answer;
        uint64_t askedIn = 0;  // which opening; 0: never
    };
    Answer opening(size_t row, const RowContent& shown);
    void ask(const std::string& key, const FileURL& url, bool isLink);

    const Parts parts_;
    uint64_t opening_ = 1;
    std::unordered_map<std::string, Known> known_;  // by icon name, which is the type, or by path
    OperationQueue queue_{"actionIconQ", 1, Qos::userInitiated, OperationQueue::Order::newestFirst};
};
