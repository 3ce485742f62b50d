#pragma once
#include <string>
#include <string_view>

#include "index/fs_item.h"
#include "searchmodes/FolderText.h"
#include "searchmodes/RankRequest.h"

/// The text of an item that terms are matched against: its name or its path, precomposed, without
/// diacritics where these do not count.
/// Owner:   RankWorker. Threads: one.
class ItemText {
  public:
    explicit ItemText(const RankRequest& request) : request_(request) {}

    /// folder: the item's own. False where bytes are not valid UTF-8, or there is no text.
    bool set(const fs_item_t& item, FolderText& folder);
    /// The name alone, with its diacritics.
    bool setName(const fs_item_t& item);
    const std::u16string& text() const { return text_; }

  private:
    const RankRequest& request_;
    std::u16string text_;
};
