#include "shell/ActionIcons.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "core/ItemOpener.h"
#include "core/ModeSwitcher.h"
#include "modes/framework/ModeHost.h"
#include "modes/framework/TRVModeRepresentingFiles.h"
#include "modes/rowText.h"
#include "shell/SearchFieldKeys.h"
#include "util/Unicode.h"
#include "util/queues/MainQueue.h"

namespace {

using Symbol = RowAction::Symbol;

constexpr std::string_view kOpen = "Open", kFolderIcon = "folder", kUnknownIcon = "unknown";
constexpr size_t kMostKnown = 256;

struct SymbolOfCommand {
    std::string_view identifier;
    Symbol symbol;
};
constexpr SymbolOfCommand kSymbols[] = {
    {"Open in Frontmost Application", Symbol::openInFrontmost},
    {"Copy Path to Clipboard", Symbol::copyPath},
    {"Copy Filename to Clipboard", Symbol::copyName},
    {"Copy File Content to Clipboard", Symbol::copyContent},
    {"Type Path", Symbol::typePath},
    {"Type Filename", Symbol::typeName},
    {"Rename", Symbol::rename},
    {"RevealInFinder", Symbol::reveal},
    {"ShowInfoInFinder", Symbol::showInfo},
    {"OpenInTextEditor", Symbol::edit},
    {"OpenInTerminal", Symbol::terminal},
    {"SearchSelection", Symbol::search},
    {"BrowseSelection", Symbol::browse},
    {"OpenWith", Symbol::open},
};

Symbol symbolOf(const SearchFieldKeys::Command& command) {
    if (command.isUserDefined) return Symbol::userAction;
    const auto* const found = std::find_if(
        std::begin(kSymbols), std::end(kSymbols),
        [&](const SymbolOfCommand& each) { return each.identifier == command.identifier; });
    return found == std::end(kSymbols) ? Symbol::command : found->symbol;
}

RowAction openFolder() {
    return {.symbol = Symbol::openFolder, .label = std::string(kOpen)};
}

/// The list may already be another than the one on show.
bool isOf(const RowContent& shown, const FileURL& url) {
    return shown.name.starts_with(makeRowText(url.lastPathComponent(), {}, {}, true).name);
}

/// Waits for the disk.
std::optional<RowAction> findOut(const FileURL& url, bool isLink,
                                 const Applications& applications) {
    if (isLink) {
        const auto info = ItemOpener::pathInfo(url);
        if (!info) return std::nullopt;
        if (info.value().folderOpened) return openFolder();
    }
    const auto opener = applications.defaultOpenerOf(url);
    if (!opener) return std::nullopt;
    return RowAction{.symbol = Symbol::open,
                     .label = "Open with " + displayText(opener->name),
                     .iconName = opener->iconName};
}

}  // namespace

std::optional<RowAction> ActionIcons::actionOf(size_t row, const RowContent& shown) {
    const TRVMode* const mode = parts_.host.currentMode();
    if (!mode || mode->identifier() == kProjectMode || mode->renameState() != 0)
        return std::nullopt;
    const auto command = parts_.keys.commandOfReturn(parts_.modeSwitcher.modifierFlags(), *mode);
    if (!command) return std::nullopt;
    if (command->identifier == kOpen) return opening(row, shown);
    return RowAction{.symbol = symbolOf(*command), .label = displayText(command->name)};
}

ActionIcons::Answer ActionIcons::opening(size_t row, const RowContent& shown) {
    if (shown.iconName == kFolderIcon && !shown.isLink) return openFolder();
    const RowAction pending{.symbol = Symbol::pending, .label = std::string(kOpen)};
    const bool hasType = !shown.isLink && shown.iconName != kUnknownIcon;
    const std::string key = hasType ? shown.iconName : shown.path + "/" + shown.name;
    const auto found = known_.find(key);
    if (found != known_.end() && found->second.askedIn == opening_) return found->second.answer;
    auto* const files = dynamic_cast<TRVModeRepresentingFiles*>(parts_.host.currentMode());
    const auto url = files ? files->urlOfFilteredItemAtIndex(row) : std::nullopt;
    if (!url || !isOf(shown, *url)) return pending;
    if (known_.size() > kMostKnown && !known_.contains(key)) known_.clear();
    Known& known = known_.try_emplace(key, Known{.answer = pending}).first->second;
    if (known.askedIn != opening_) {
        known.askedIn = opening_;
        ask(key, *url, shown.isLink);
    }
    return known.answer;
}

void ActionIcons::ask(const std::string& key, const FileURL& url, bool isLink) {
    queue_.addBlock([this, key, url, isLink] {
        auto answer = findOut(url, isLink, parts_.applications);
        MainQueue::async([this, key, answer = std::move(answer)] {
            const auto known = known_.find(key);
            if (known == known_.end() || known->second.answer == answer) return;
            known->second.answer = answer;
            parts_.renew();
        });
    });
}
