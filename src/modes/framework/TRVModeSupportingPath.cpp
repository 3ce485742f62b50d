#include "modes/framework/TRVModeSupportingPath.h"

#include "modes/framework/ModeHost.h"
#include "screen/ResultTableView.h"
#include "util/Unicode.h"
#include "util/log.h"
#include "util/queues/MainQueue.h"

// ---- The path filter

bool TRVModeSupportingPath::handleFocusOrIgnoreSelectedURL(Narrowing narrowing) {
    const std::vector<FileURL> urls =
        host().numberOfRows() > 0 ? clickedOrSelectedURLs() : std::vector<FileURL>();
    if (urls.empty()) {
        host().error("No item selected");
        return true;
    }
    switchModeQueue().async([this, narrowing, urls] {
        for (const FileURL& url : urls) {
            if (narrowing == Narrowing::focus)
                focusURL(url);
            else
                ignoreURL(url);
        }
    });
    return true;
}

RankRequest TRVModeSupportingPath::makeFileRequest(const std::u16string& string,
                                                   bool ignoreDiacritics) {
    RankRequest request = TRVModeRepresentingFiles::makeFileRequest(string, ignoreDiacritics);
    request.pathFilter = livePathFilter_.copy();
    return request;
}

void TRVModeSupportingPath::narrow(const FileURL& url, LivePathFilter::Rule rule) {
    if (MainQueue::isMainThread()) logError("Must not be called on main thread!");
    livePathFilter_.addPath(url, rule);
    searchFromTheTop();
}

bool TRVModeSupportingPath::resetPathFilter() {
    if (!livePathFilter_.hasRules()) return false;
    livePathFilter_.reset();
    searchFromTheTop();
    return true;
}

void TRVModeSupportingPath::searchFromTheTop() {
    MainQueue::sync([this] {
        if (selection()) selection()->clipOrigin = {};
    });
    host().reloadInBackgroundAnimated(true);
    MainQueue::async([this] { host().updateSearchCriterionIndicators(); });
}

// ---- The selected part of a path

bool TRVModeSupportingPath::changePathSelection(void (PathSelection::*change)()) {
    if (renameState() != kNoRename) return false;
    const std::vector<size_t> rows = host().resultTable().selectedRows();
    if (rows.size() != 1) return true;
    const auto url = urlOfFilteredItemAtIndex(rows.front());
    if (!url) return true;
    PathSelection part(url->deletingLastPathComponent());
    part.setPathSelection(keptPathSelection(rows));
    (part.*change)();
    const auto selected = part.pathSelection();
    logIf(processFlags.debugSelection, Debug, "Extending path selection: %s",
          logText((selected ? *selected : *url).path()).c_str());
    setPathSelection(rows.front(), selected);
    return true;
}

bool TRVModeSupportingPath::clearPathSelection() {
    if (renameState() != kNoRename) return false;
    const std::vector<size_t> rows = host().resultTable().selectedRows();
    if (keptPathSelection(rows)) setPathSelection(rows.front(), std::nullopt);
    return true;
}

std::optional<FileURL> TRVModeSupportingPath::keptPathSelection(const std::vector<size_t>& rows) {
    const auto& saved = selection();
    if (rows.size() != 1 || !saved ||
        saved->mostRecentlySelectedRow != static_cast<int64_t>(rows.front()))
        return std::nullopt;
    return saved->pathSelection;
}

void TRVModeSupportingPath::setPathSelection(size_t row, const std::optional<FileURL>& url) {
    if (!selection()) saveSelection();
    selection()->pathSelection = url;
    selection()->mostRecentlySelectedRow = static_cast<int64_t>(row);
    rowWithPathSelection_ = row;
    redraw(row);
    host().updateTextsOfCurrentMode();
}

void TRVModeSupportingPath::fixPathSelection(const FileURL& url, size_t row) {
    const auto item = urlOfFilteredItemAtIndex(row);
    if (!item || !item->hasPrefix(url)) {
        selection()->pathSelection.reset();  // another file has come into the row
        return;
    }
    selection()->mostRecentlySelectedRow = static_cast<int64_t>(row);
    rowWithPathSelection_ = row;
    redraw(row);
}

void TRVModeSupportingPath::redraw(size_t row) {
    host().applyDiffableDataSourceSnapshotAnimated(false, std::vector<size_t>{row});
}

void TRVModeSupportingPath::decorate(RowContent& content, size_t row, const FileURL& url) {
    content.isMarked = host().isMarked(url);
    content.source = host().sourceOf(url);
    const auto& saved = selection();
    if (!saved || !saved->pathSelection || rowWithPathSelection_ != row ||
        saved->mostRecentlySelectedRow != static_cast<int64_t>(row))
        return;
    const FileURL& folder = *saved->pathSelection;
    content.pathSelection = TextRange{0, ruleText(folder.path()).size()};
    content.isMarked = host().isMarked(folder);
    content.source = host().sourceOf(folder);
    content.iconName = "folder";
    content.isLink = false;
}

// ---- Kept and brought back

void TRVModeSupportingPath::saveSelection() {
    const auto part = keptPathSelection(host().resultTable().selectedRows());
    forgetSelection();
    TRVModeRepresentingFiles::saveSelection();
    selection()->pathSelection = part;
}

void TRVModeSupportingPath::restoreSelectionWithIndexSet(std::vector<size_t> rows) {
    const bool hasPart = selection() && selection()->pathSelection;
    const bool isRowLost = rows.empty();
    if (hasPart && rows.size() == 1)
        fixPathSelection(FileURL(*selection()->pathSelection), rows.front());
    TRVModeRepresentingFiles::restoreSelectionWithIndexSet(std::move(rows));
    if (!hasPart || !isRowLost) return;
    // Another row stands for the one that has gone: nothing may work on a folder that it lacks.
    if (const auto row = host().resultTable().selectedRow())
        fixPathSelection(FileURL(*selection()->pathSelection), *row);
    else
        selection()->pathSelection.reset();
}

void TRVModeSupportingPath::selectionDidChangeFrom(const std::vector<size_t>& from,
                                                   const std::vector<size_t>& to) {
    if (!rowWithPathSelection_ || (to.size() == 1 && from == to)) return;
    const size_t row = *rowWithPathSelection_;
    rowWithPathSelection_.reset();
    redraw(row);
}

// ---- Renaming

void TRVModeSupportingPath::prepareRenameSelectionAtRow(size_t row) {
    const auto selected = selectedURLOfFilteredItemAtIndex(row);
    if (!selected) {
        refuseRename("Nothing to rename");
        return;
    }
    const auto url = urlOfFilteredItemAtIndex(row);
    if (selected == url) {
        TRVModeRepresentingFiles::prepareRenameSelectionAtRow(row);
        return;
    }
    if (url && url->hasPrefix(*selected)) {
        if (!prepareRenamePathComponent(*selected, row)) {
            setRenameState(kNoRename);
            host().enableSearchField();
        }
        return;
    }
    logError("Cannot rename row %ld: Path at row: %s; Path to rename: %s", static_cast<long>(row),
             url ? logText(url->path()).c_str() : "(null)", logText(selected->path()).c_str());
    refuseRename("Cannot rename; Internal error");
}

bool TRVModeSupportingPath::prepareRenamePathComponent(const FileURL& folder, size_t row) {
    if (folder.pathComponents().empty()) return false;  // the root has no name
    const std::u16string text = toUtf16Lenient(pathToText(folder.lastPathComponent()));
    const size_t end = ruleText(folder.path()).size();
    const size_t length = ruleText(folder.lastPathComponent()).size();
    beginEditing(folder, kRenamingPathPart,
                 {.row = row,
                  .text = text,
                  .selection = {0, text.size()},
                  .pathPart = TextRange{end - length, length}});
    return true;
}

bool TRVModeSupportingPath::controlDoCommandBySelector(RowEditCommand command,
                                                       const std::u16string& text) {
    if (renameState() == kRenamingPathPart && command == RowEditCommand::insertNewline &&
        text.empty()) {
        host().beep();
        return false;
    }
    return TRVModeRepresentingFiles::controlDoCommandBySelector(command, text);
}
