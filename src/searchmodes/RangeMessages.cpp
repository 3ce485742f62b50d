#include "searchmodes/RangeMessages.h"

#include <algorithm>

#include "util/log.h"

void RangeMessages::addRangeWithError(TextRange range, StyledText message) {
    if (message.empty()) return logError("Missing error message");
    store(range, {std::move(message), RangeMessage::kError});
}

void RangeMessages::addRangeWithInfo(TextRange range, StyledText message) {
    if (message.empty()) return logError("Missing info message");
    store(range, {std::move(message), RangeMessage::kInformation});
}

void RangeMessages::store(TextRange range, RangeMessage message) {
    const auto order = [](TextRange r) { return std::pair(r.location, r.length); };
    const auto place =
        std::lower_bound(messages_.begin(), messages_.end(), range,
                         [&](const auto& a, TextRange b) { return order(a.first) < order(b); });
    if (place != messages_.end() && place->first == range)
        place->second = std::move(message);
    else
        messages_.emplace(place, range, std::move(message));
}

const RangeMessage* RangeMessages::messageForRange(TextRange selection) const {
    const auto holds = [](TextRange range, size_t place) {
        return range.location <= place && place <= range.location + range.length;
    };
    for (const auto& [range, message] : messages_)
        if (holds(range, selection.location) || holds(range, selection.location + selection.length))
            return &message;
    return nullptr;
}

const RangeMessage* RangeMessages::messageToShow(TextRange selection, size_t textLength) const {
    return selection == TextRange{0, textLength} ? nullptr : messageForRange(selection);
}
