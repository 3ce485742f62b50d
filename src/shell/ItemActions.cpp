#include "shell/ItemActions.h"

#include "core/SearchWindowController.h"
#include "core/UserMessages.h"
#include "platform/Applications.h"
#include "platform/Pasteboard.h"
#include "util/Unicode.h"
#include "util/log.h"
#include "util/settings/OVUserDefaults.h"

bool ItemActions::report(const Result<void>& result) {
    if (result) return true;
    const Error& error = result.error();
    parts_.messages.error(
        displayText(error.failureReason.empty() ? error.description : error.failureReason));
    return false;
}

bool ItemActions::actionShowInfo(const URLs& urls) {
    return report(parts_.applications.showInfo(urls));
}

bool ItemActions::actionRevealInFinder(const URLs& urls) {
    return report(parts_.applications.reveal(urls));
}

bool ItemActions::actionOpenInTextEditor(const URLs& urls) {
    const std::string configured =
        OVUserDefaults::sharedInstance().stringForKey("defaultTextEditor").value_or("");
    const auto editor = parts_.applications.textEditor(configured);
    if (!editor) {
        logWarning("There is no text editor: %s", logText(configured).c_str());
        parts_.messages.error("Found no text editor");
        return false;
    }
    return actionOpenWith(urls, *editor);
}

bool ItemActions::actionOpenWith(const URLs& urls, const std::string& application) {
    if (!report(parts_.applications.openWithApplication(urls, application))) return false;
    MainQueue::async([this] { parts_.window.hideMainWindow(); });
    return true;
}

std::string ItemActions::joinPathsByNewline(const URLs& urls, What what) {
    std::string text;
    for (const FileURL& url : urls) {
        if (!text.empty()) text += '\n';
        text += what == What::names ? std::string(url.lastPathComponent()) : url.path();
    }
    return text;
}

bool ItemActions::copyPaths(const URLs& urls, What what) {
    if (urls.empty()) {
        parts_.messages.error("No item selected");
        return false;
    }
    // While the window still has the keyboard: not every desktop lets others copy.
    parts_.pasteboard.setString(joinPathsByNewline(urls, what));
    MainQueue::async([this] { parts_.window.hideMainWindow(); });
    return true;
}
