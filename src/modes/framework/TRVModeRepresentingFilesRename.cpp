#include <sys/stat.h>

#include <cerrno>

#include "modes/framework/ModeHost.h"
#include "modes/framework/TRVModeRepresentingFiles.h"
#include "util/FileIO.h"
#include "util/Unicode.h"
#include "util/queues/MainQueue.h"

// A new name for the file of a row, typed into the row. The editor shows every byte of a name in
// the form of text that has one, and takes it back.

namespace {

std::u16string editedText(std::string_view name) {
    return toUtf16Lenient(pathToText(name));
}

/// What most people change: the name without its extension.
TextRange selectedPart(const FileURL& url, const std::u16string& text, bool isFolder) {
    const size_t extension = editedText(url.pathExtension()).size();
    if (isFolder || extension == 0) return {0, text.size()};
    return {0, text.size() - extension - 1};
}

std::optional<Error> refusalOfName(std::string_view name) {
    const char* reason = nullptr;
    if (name.empty() || name == "." || name == "..")
        reason = "The name is not allowed";
    else if (name.find('/') != std::string_view::npos || name.find('\0') != std::string_view::npos)
        reason = "The name has a character that is not allowed";
    if (!reason) return std::nullopt;
    return Error{
        .domain = "posix", .code = EINVAL, .description = "Cannot rename", .failureReason = reason};
}

}  // namespace

void TRVModeRepresentingFiles::prepareRenameSelectionAtRow(size_t row) {
    setRenameState(kRenamingName);
    if (prepareRenameLastPathComponentAtRow(row)) return;
    setRenameState(kNoRename);
    host().enableSearchField();
}

bool TRVModeRepresentingFiles::prepareRenameLastPathComponentAtRow(size_t row) {
    const std::vector<FileURL> urls = clickedOrSelectedURLs();
    struct stat info;
    // Kept: what a link leads to must be there, too.
    if (urls.empty() || stat(urls.front().c_str(), &info) != 0) {
        host().error("Selected item does not exis");
        return false;
    }
    const std::u16string text = editedText(urls.front().lastPathComponent());
    beginEditing(urls.front(), kRenamingName,
                 {.row = row,
                  .text = text,
                  .selection = selectedPart(urls.front(), text, S_ISDIR(info.st_mode))});
    return true;
}

void TRVModeRepresentingFiles::beginEditing(const FileURL& url, uint64_t state,
                                            const RowEdit& edit) {
    setRenameState(state);
    host().disableSearchField();
    editedURL_ = url;
    host().resultTable().beginEditingRow(edit);
}

void TRVModeRepresentingFiles::refuseRename(const std::string& error) {
    setRenameState(kNoRename);
    host().enableSearchField();
    host().error(error);
}

void TRVModeRepresentingFiles::endEditingLater() {
    MainQueue::async([this] {
        host().resultTable().endEditingRow();
        // Also where no editor was left to tell of its end.
        if (renameState() != kNoRename) controlTextDidEndEditing();
    });
}

void TRVModeRepresentingFiles::controlTextDidEndEditing() {
    setRenameState(kNoRename);
    host().enableSearchField();
    host().focusOnSearchField();
}

bool TRVModeRepresentingFiles::controlDoCommandBySelector(RowEditCommand command,
                                                          const std::u16string& text) {
    if (command == RowEditCommand::cancelOperation) {
        endEditingLater();
        return true;
    }
    if (text.empty()) {
        host().beep();
        endEditingLater();
        return true;
    }
    const FileURL from = editedURL_;
    const std::string name = textToPath(toUtf8(text));
    if (const auto refusal = refusalOfName(name)) {
        host().error(refusal->failureReason);
        endEditingLater();
        return false;
    }
    const FileURL to = from.deletingLastPathComponent().appending(name);
    const Result<bool> renamed = renamePathComponentFrom(from, to);
    if (renamed) return true;
    const Error& error = renamed.error();
    host().error(error.failureReason.empty() ? error.description : error.failureReason);
    return false;
}

Result<bool> TRVModeRepresentingFiles::renamePathComponentFrom(const FileURL& from,
                                                               const FileURL& to) {
    endEditingLater();
    if (from.lastPathComponent() == to.lastPathComponent()) return false;
    const Result<void> moved = host().renameItem(from, to);
    if (!moved) return moved.error();
    if (auto& saved = selection()) saved->renamePath(from, to);
    return true;
}

void TRVModeRepresentingFiles::itemRenamedFrom(const ItemRename& rename) {
    if (auto& saved = selection()) saved->renamePath(rename.from, rename.to);
    // Other programs rename by the thousand: what they do comes with the next update of the list.
    if (rename.external) return;
    MainQueue::async([this] {
        if (isActive()) host().reloadInBackgroundAnimated(false);
    });
}
