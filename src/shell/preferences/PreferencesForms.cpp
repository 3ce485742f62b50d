#include "shell/preferences/PreferencesForms.h"

#include <algorithm>
#include <charconv>
#include <nlohmann/json.hpp>
#include <span>

#include "core/GlobalHotKey.h"
#include "shell/metadataNeededAlert.h"
#include "shell/registry/shortcutText.h"
#include "util/grouped.h"
#include "util/settings/OVUserDefaults.h"

namespace {

using Kind = PreferencesRow::Kind;

constexpr auto kHotKey = "hotKey", kStatusItem = "showStatusMenu", kMetadata = "processMetadata",
               kShowMetadata = "showMetadata", kResetPlace = "resetWindowPosition";
constexpr int64_t kMostItems = 1'000'000;

struct Row {
    Kind kind;
    const char* id;
    const char* label;
    const char* explanation = "";
    int64_t min = 0, max = kMostItems;
    bool searches = false;  // nobody observes it: a change searches again from here
};
struct Section {
    PreferencesPane pane;
    const char* title;
    std::span<const Row> rows;
    const char* explanation = "";
};

constexpr Row kHotKeyRows[] = {{Kind::hotKey, kHotKey, "Shows and hides the search window"}};
constexpr Row kWindowRows[] = {
    {Kind::toggle, "hideSearchFieldOnDeFocus", "Hide when another program gets the keyboard"},
    {Kind::toggle, "resizableSearchWindow", "Let the width be changed by dragging",
     "Each size of a screen keeps a width of its own."},
    {Kind::button, kResetPlace, "Reset Position",
     "Forgets where the window stood, on every screen."},
};
constexpr Row kStatusRows[] = {{Kind::toggle, kStatusItem, "Show Trovast in the status bar"}};
constexpr Row kLimitRows[] = {
    {Kind::number, "maxResultsetSize", "Results shown at most",
     "Ctrl+S in Search shows all of them, once.", 10},
    {Kind::number, "recentItemsMaxCount", "Recent items kept", "", 1},
    {Kind::number, "historyMaxSize", "Past queries kept", "", 1},
};
constexpr Row kMetadataRows[] = {
    {Kind::toggle, kMetadata, "Read sizes, dates and owners",
     "Needed to search for them and to show them. The index is made anew."},
    {Kind::choice, kShowMetadata, "Show them in the results"},
    {Kind::toggle, "includeNeverWhenCyclingShowMetadataInResult",
     "The key that cycles these includes “Never”"},
};
constexpr Row kBundleRows[] = {{Kind::toggle, "treatBundlesAsFiles", "Treat bundles as files",
                                "A bundle is a folder that looks like one file."}};
constexpr Row kDiacriticsRows[] = {
    {Kind::toggle, "browserIgnoreDiacritics", "Browser", "", 0, 0, true},
    {Kind::toggle, "recentItemsIgnoreDiacritics", "Recent Items", "", 0, 0, true},
    {Kind::toggle, "markedItemsIgnoreDiacritics", "Marked Items", "", 0, 0, true},
};
constexpr Section kSections[] = {
    {PreferencesPane::general, "Hot key", kHotKeyRows},
    {PreferencesPane::general, "Window", kWindowRows},
    {PreferencesPane::general, "Status bar", kStatusRows},
    {PreferencesPane::search, "Limits", kLimitRows},
    {PreferencesPane::search, "Metadata", kMetadataRows},
    {PreferencesPane::search, "Bundles", kBundleRows},
    {PreferencesPane::search, "Ignore accents", kDiacriticsRows,
     "“cafe” finds “café” too. Search keeps this for each project."},
};

/// In the order of the stored numbers.
constexpr const char* kShownMetadata[] = {"Never", "Always", "When searched for"};

const Row* rowOf(const std::string& id, Kind kind) {
    for (const Section& section : kSections)
        for (const Row& row : section.rows)
            if (row.id == id && row.kind == kind) return &row;
    return nullptr;
}

/// As people write numbers: with blanks around, and with marks between thousands.
std::optional<int64_t> numberFrom(std::string text) {
    std::erase_if(text, [](char c) { return c == ' ' || c == ',' || c == '.' || c == '\''; });
    int64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
    return number;
}

}  // namespace

std::vector<std::string> PreferencesForms::settings() {
    std::vector<std::string> keys;
    for (const Section& section : kSections)
        for (const Row& row : section.rows)
            if (row.kind != Kind::button) keys.emplace_back(row.id);
    return keys;
}

PreferencesForm PreferencesForms::form(PreferencesPane pane) const {
    PreferencesForm form;
    for (const Section& section : kSections) {
        if (section.pane != pane) continue;
        auto& rows =
            form.emplace_back(PreferencesSection{section.title, section.explanation, {}}).rows;
        for (const Row& row : section.rows) {
            auto& shown = rows.emplace_back(PreferencesRow{.kind = row.kind,
                                                           .id = row.id,
                                                           .label = row.label,
                                                           .explanation = row.explanation});
            if (row.kind == Kind::toggle) shown.isOn = parts_.settings.boolForKey(row.id);
            if (row.kind == Kind::hotKey) shown.value = hotKeyText();
            if (row.kind == Kind::number)
                shown.value = std::to_string(parts_.settings.integerForKey(row.id));
            if (row.kind == Kind::choice) {
                shown.choices.assign(std::begin(kShownMetadata), std::end(kShownMetadata));
                shown.chosen = static_cast<size_t>(
                    std::clamp<int64_t>(parts_.settings.integerForKey(row.id), 0, 2));
            }
            const auto message = messages_.find(shown.id);
            if (message == messages_.end()) continue;
            shown.message = message->second.text;
            shown.isMessageAnError = message->second.isError;
        }
    }
    return form;
}

// ---- Settings

void PreferencesForms::toggle(const std::string& id, bool isOn) {
    clearMessages();
    const Row* const row = rowOf(id, Kind::toggle);
    if (!row) return;
    if (id == kStatusItem && !isOn && parts_.hotKey.currentShortcut().isNone()) {
        refuse(id, "Without a hot key this is the way to the window. Record a hot key first.");
        return;
    }
    parts_.settings.setBool(isOn, id);
    if (row->searches) parts_.searchAgain();
}

void PreferencesForms::enterNumber(const std::string& id, const std::string& text) {
    clearMessages();
    const Row* const row = rowOf(id, Kind::number);
    if (!row) return;
    const auto number = numberFrom(text);
    if (number && *number >= row->min && *number <= row->max)
        parts_.settings.setInteger(*number, id);
    else
        refuse(id, std::string("“").append(text) + "” is no number from " + grouped(row->min) +
                       " to " + grouped(row->max) + ".");
}

void PreferencesForms::choose(const std::string& id, size_t choice) {
    clearMessages();
    if (id == kShowMetadata && choice < std::size(kShownMetadata))
        showMetadata(static_cast<int64_t>(choice));
}

void PreferencesForms::showMetadata(int64_t what) {
    if (what != 0 && !parts_.settings.boolForKey(kMetadata)) {
        if (parts_.ask(metadataNeededAlert()) == 0)
            parts_.settings.setBool(true, kMetadata);
        else
            what = 0;
    }
    parts_.settings.setInteger(what, kShowMetadata);
}

void PreferencesForms::press(const std::string& id) {
    clearMessages();
    if (id != kResetPlace) return;
    parts_.settings.removeObjectForKey("searchPanelTopLeft");
    parts_.settings.removeObjectForKey("searchPanelWidth");
    parts_.restoreWindowPosition();
    messages_[id] = {"The window comes up in its first place again.", false};
}

// ---- The hot key

std::string PreferencesForms::hotKeyText() const {
    const HotKey& hotKey = parts_.hotKey.currentShortcut();
    return !hotKey.isNone() ? shortcutText(hotKey.keyCode, hotKey.modifierFlags) : std::string();
}

void PreferencesForms::recordHotKey(const KeyEvent& event) {
    clearMessages();
    if (const auto recorded = parts_.hotKey.record(event); recorded)
        messages_[kHotKey] = {"It works from everywhere now.", false};
    else
        refuse(kHotKey, recorded.error().description);
}

void PreferencesForms::removeHotKey() {
    clearMessages();
    if (!parts_.settings.boolForKey(kStatusItem)) {
        refuse(kHotKey, "Without the status item this is the way to the window.");
        return;
    }
    parts_.settings.removeObjectForKey(kHotKey);
    parts_.hotKey.setupHotKeys();
}
