#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "util/Observable.h"

class OVUserDefaults;

/// Search texts that led somewhere, the newest first, and a place in the list for going through it.
/// Owner:   World (sharedInstance). Threads: main. Stored under the setting history.
/// Units:   UTF-8, as the settings have it.
class SearchHistoryController {
  public:
    SearchHistoryController();
    explicit SearchHistoryController(OVUserDefaults& settings);
    static SearchHistoryController& sharedInstance();

    const std::vector<std::string>& history() const { return history_; }
    /// To the front; what is equal goes.
    void addItem(const std::string& string);
    void resetCursor() { cursor_ = -1; }
    /// Nothing before the first key that goes through the list.
    std::optional<std::string> currentItem() const;
    /// The next older one; nothing at the end.
    std::optional<std::string> previousItem();
    /// The next newer one; empty at the front.
    std::string nextItem();
    /// Takes the one at the cursor away, and gives the one that is there then; nothing without a
    /// cursor.
    std::optional<std::string> removeSearchTerm();
    void removeSearchTerm(const std::string& string);

  private:
    void setMaxSize(int64_t maxSize);
    std::string updateCursor();
    void store() const;

    OVUserDefaults& settings_;
    std::vector<std::string> history_;
    int64_t cursor_ = -1;  // -1: not in use
    int64_t maxSize_;
    Subscription limit_;
};
