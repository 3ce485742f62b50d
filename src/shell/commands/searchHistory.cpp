#include "core/SearchFieldController.h"
#include "core/UserMessages.h"
#include "modes/framework/ModeHost.h"
#include "shell/commands/commands.h"
#include "shell/registry/SearchHistoryController.h"
#include "util/Unicode.h"

namespace {

void searchFor(const CommandParts& parts, const std::string& item) {
    parts.field.replaceSearchString(toUtf16Lenient(item));
    parts.host.reloadInBackgroundAnimated(false);
}

bool searchHistoryPrevious(const CommandParts& parts) {
    auto& history = SearchHistoryController::sharedInstance();
    const TRVMode* mode = parts.host.currentMode();
    auto item = history.currentItem();
    if (!item) item = history.previousItem();
    if (item && mode && toUtf16Lenient(*item) == mode->searchString()) {
        if (const auto older = history.previousItem()) item = older;
    }
    if (item)
        searchFor(parts, *item);
    else
        parts.messages.beep();
    return true;
}

bool searchHistoryNext(const CommandParts& parts) {
    searchFor(parts, SearchHistoryController::sharedInstance().nextItem());
    return true;
}

bool searchHistoryRemoveTerm(const CommandParts& parts) {
    if (const auto item = SearchHistoryController::sharedInstance().removeSearchTerm())
        searchFor(parts, *item);
    else
        parts.messages.beep();
    return true;
}

}  // namespace

CommandBlocks searchHistoryCommands(const CommandParts& parts) {
    return {
        {"SearchHistoryPrevious", [parts] { return searchHistoryPrevious(parts); }},
        {"SearchHistoryNext", [parts] { return searchHistoryNext(parts); }},
        {"SearchHistoryRemoveTerm", [parts] { return searchHistoryRemoveTerm(parts); }},
    };
}
