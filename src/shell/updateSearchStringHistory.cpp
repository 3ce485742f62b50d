#include "shell/updateSearchStringHistory.h"

#include "modes/framework/ModeHost.h"
#include "shell/registry/SearchHistoryController.h"
#include "util/Unicode.h"

void updateSearchStringHistory(const ModeHost& host) {
    const TRVMode* mode = host.currentMode();
    const std::u16string text = mode ? mode->searchString() : std::u16string();
    if (!text.empty()) SearchHistoryController::sharedInstance().addItem(toUtf8(text));
}
