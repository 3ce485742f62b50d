#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "screen/Geometry.h"
#include "screen/StyledText.h"

struct RangeMessage {
    enum Type : uint64_t { kInformation = 0, kError = 1 };
    StyledText message;
    Type messageType = kInformation;
};

/// What is to be said about parts of the search text, one message a range.
/// Owner:   who decomposes the text; then the search field. Threads: one at a time.
/// Units:   UTF-16 units of the text.
class RangeMessages {
  public:
    void clearMessageRanges() { messages_.clear(); }
    /// A message for the same range replaces the one before. An empty one is logged and not kept.
    void addRangeWithError(TextRange range, StyledText message);
    void addRangeWithInfo(TextRange range, StyledText message);
    /// The first range that holds the selection's begin or its end, both ends of it included; null:
    /// none does. Valid until the messages change.
    const RangeMessage* messageForRange(TextRange selection) const;
    /// The same, but nothing while the whole text is selected.
    const RangeMessage* messageToShow(TextRange selection, size_t textLength) const;

    const std::vector<std::pair<TextRange, RangeMessage>>& all() const { return messages_; }

  private:
    void store(TextRange range, RangeMessage message);

    std::vector<std::pair<TextRange, RangeMessage>> messages_;  // in the order of the text
};
