#include <climits>
#include <cstdlib>

#include "core/ItemOpener.h"
#include "core/ModeSwitcher.h"
#include "core/ResultTableController.h"
#include "core/SearchFieldController.h"
#include "core/SearchWindowController.h"
#include "core/UserMessages.h"
#include "core/state/GlobalState.h"
#include "index/DirectoryOnDisk.h"
#include "modes/TRVSearchMode.h"
#include "shell/SearchFieldKeys.h"
#include "shell/updateSearchStringHistory.h"
#include "util/Unicode.h"
#include "util/settings/OVUserDefaults.h"

// What single keys do: a word goes, all text goes, the window goes, the selection is opened.

namespace {

bool isSpace(char16_t unit) {
    return isBlank({&unit, 1});
}

/// Where the links lead in the end.
FileURL resolved(const FileURL& url) {
    return realPath(url).value_or(url);
}

}  // namespace

void SearchFieldKeys::deleteWord() {
    std::u16string text = parts_.fieldView.text();
    const size_t end = std::min(parts_.fieldView.selection().location, text.size());
    if (end == 0) return;
    size_t begin = end;
    while (begin > 0 && isSpace(text[begin - 1])) begin--;
    while (begin > 0 && !isSpace(text[begin - 1])) begin--;
    text.erase(begin, end - begin);
    parts_.field.replaceSearchString(text);
    parts_.fieldView.setSelection({begin, 0});
    parts_.host.reloadInBackgroundAnimated(false);
}

// ---- Escape

void SearchFieldKeys::escape() {
    TRVMode::switchModeQueue().async([this] {
        TRVMode* const mode = parts_.host.currentMode();
        if (!mode) return;
        if (mode->searchString().empty()) {
            leave(*mode);
            return;
        }
        MainQueue::sync([this, mode] {
            parts_.field.updateSearchFieldWithEmptySearchString();
            mode->forgetSelection();
            parts_.host.updateTextsOfCurrentMode();
            if (parts_.searchMode.isActive()) parts_.searchMode.deleteFilteredItems();
        });
        parts_.host.reloadInBackgroundAnimated(false);
    });
}

void SearchFieldKeys::leave(TRVMode& mode) {
    for (TRVMode* const each : {&mode, static_cast<TRVMode*>(&parts_.searchMode)})
        if (auto* const paths = dynamic_cast<TRVModeSupportingPath*>(each))
            paths->resetPathFilter();
    auto& maximized = GlobalState::sharedInstance().maximized();
    if (maximized.value()) maximized.set(false);
    if (!parts_.searchMode.isActive()) {
        parts_.modeSwitcher.activateMode(parts_.searchMode);
        parts_.host.reloadInBackgroundAnimated(false);
    }
    std::shared_ptr<const Project> previous;
    MainQueue::sync([&] {
        parts_.window.hideMainWindow();
        parts_.host.updateTextsOfCurrentMode();
        const auto current = parts_.searchMode.currentProject();
        const auto uuid = OVUserDefaults::sharedInstance().stringForKey("previousRealProject");
        if (current && current->isVirtualProject() && uuid)
            previous = parts_.searchMode.projectByUuid(*uuid);
    });
    if (!previous) return;
    parts_.host.makeCurrentProject(previous);
    parts_.host.reloadInBackgroundAnimated(false);
}

// ---- Opening

bool SearchFieldKeys::openSelection(OpenWith with) {
    if (parts_.rows.numberOfRows() == 0) {
        parts_.messages.error("No item selected");
        return false;
    }
    TRVMode::switchModeQueue().async([this, with] {
        auto* const mode = dynamic_cast<TRVModeRepresentingFiles*>(parts_.host.currentMode());
        if (!mode) return;
        for (const FileURL& url : mode->clickedOrSelectedURLs()) open(url, with);
    });
    return true;
}

void SearchFieldKeys::open(const FileURL& url, OpenWith with) {
    const auto info = ItemOpener::pathInfo(url);
    if (!info) {
        parts_.messages.error(info.error().description);
        return;
    }
    const FileURL target = info.value().isSymlink ? resolved(url) : url;
    MainQueue::sync([&] {
        if (parts_.window.isMainWindowVisible()) parts_.window.hideMainWindow();
        updateSearchStringHistory(parts_.host);
        if (with == OpenWith::frontMostApplication)
            parts_.opener.openFileInFrontMostApplication(target);
        else
            parts_.opener.openFileInDefaultApplication(target, info.value());
    });
}
