#pragma once
#include <span>

#include "Fields.h"

struct Session;

/// An op: reads its request, answers the result's fields (an object, or null for none), throws an
/// OpError where it cannot. The console adds "ok".
/// To add one: write the function beside its kin (functions_*.cpp are without state, *Ops.cpp
/// with), declare it below, and give it its line in the table of Ops.cpp. A scenario in
/// tests/scenarios shows what it does. Threads: main.
using Op = json(const Fields& request, Session& session);

namespace ops {
// functions_rank.cpp
Op rank, split, fuzzy, compare;
// functions_regex.cpp
Op decompose, messageAt, pathfilter, regex;
// functions_metadata.cpp
Op metadataParse, metadataMatch, metadataSort, metadataCompare;
// functions_rules.cpp
Op rulePrepare, ruleStatus;
// functions_text.cpp
Op nameNext, selectionRename, textFiletypes, textPermissions, textSize;
// functions_settings.cpp
Op settingsDefaults;
// functions_shortcuts.cpp
Op history, shortcutsList, shortcutsParse, shortcutsRecord;
// cacheEvents.cpp
Op cacheEvents;
// cacheOps.cpp
Op cacheAdd, cacheMove, cacheNew, cacheRefreshNow, cacheRefreshed, cacheRemove, cacheScan;
// appOps.cpp
Op appAnswer, appClick, appClock, appCursor, appEdit, appHotkey, appKey, appMove, appQuit,
    appScreen, appSetting, appSettle, appShortcut, appStart, appToggle, appType;
// appMenu.cpp
Op appMenu;
// appPreferences.cpp
Op appPreferences;
// appReports.cpp
Op appAlerts, appDesktop, appDump, appHelp, appLog, appRowsChanged, appState;
// cacheQueries.cpp
Op cacheCheck, cacheDump, cacheFacts, cacheRecent, cacheSearch;
}  // namespace ops

struct OpEntry {
    std::string_view name;
    Op* op;  // null: not built yet
};

/// All ops of the console, in the order that --ops prints.
std::span<const OpEntry> allOps();
