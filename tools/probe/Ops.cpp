#include "Ops.h"

#include <iterator>

namespace {

using namespace ops;

constexpr OpEntry kOps[] = {
    // Functions
    {"rank", rank},
    {"split", split},
    {"fuzzy", fuzzy},
    {"regex", regex},
    {"metadata.parse", metadataParse},
    {"metadata.match", metadataMatch},
    {"metadata.sort", metadataSort},
    {"metadata.compare", metadataCompare},
    {"compare", compare},
    {"decompose", decompose},
    {"message.at", messageAt},
    {"rule.prepare", rulePrepare},
    {"rule.status", ruleStatus},
    {"pathfilter", pathfilter},
    {"args.expand", nullptr},
    {"shell.escape", nullptr},
    {"shell.commandline", nullptr},
    {"env.parse", nullptr},
    {"tsv.parse", nullptr},
    {"name.next", nameNext},
    {"text.size", textSize},
    {"text.permissions", textPermissions},
    {"text.filetypes", textFiletypes},
    {"similar.query", nullptr},
    {"action.check", nullptr},
    {"settings.defaults", settingsDefaults},
    {"shortcuts.list", shortcutsList},
    {"shortcuts.parse", shortcutsParse},
    {"shortcuts.record", shortcutsRecord},
    {"selection.rename", selectionRename},
    {"history", history},
    {"urls.parse", nullptr},
    // A cache
    {"cache.new", cacheNew},
    {"cache.scan", cacheScan},
    {"cache.add", cacheAdd},
    {"cache.move", cacheMove},
    {"cache.remove", cacheRemove},
    {"cache.events", cacheEvents},
    {"cache.dump", cacheDump},
    {"cache.recent", cacheRecent},
    {"cache.facts", cacheFacts},
    {"cache.refreshed", cacheRefreshed},
    {"cache.refreshNow", cacheRefreshNow},
    {"cache.search", cacheSearch},
    {"cache.check", cacheCheck},
    // The application
    {"app.start", appStart},
    {"app.settle", appSettle},
    {"app.key", appKey},
    {"app.type", appType},
    {"app.cursor", appCursor},
    {"app.hotkey", appHotkey},
    {"app.toggle", appToggle},
    {"app.url", nullptr},
    {"app.service", nullptr},
    {"app.state", appState},
    {"app.rowsChanged", appRowsChanged},
    {"app.dump", appDump},
    {"app.edit", appEdit},
    {"app.setting", appSetting},
    {"app.shortcut", appShortcut},
    {"app.click", appClick},
    {"app.drop", nullptr},
    {"app.answer", appAnswer},
    {"app.alerts", appAlerts},
    {"app.help", appHelp},
    {"app.operations", nullptr},
    {"app.project", nullptr},
    {"app.preferences", appPreferences},
    {"app.menu", appMenu},
    {"app.move", appMove},
    {"app.screen", appScreen},
    {"app.clock", appClock},
    {"app.desktop", appDesktop},
    {"app.log", appLog},
    {"app.quit", appQuit},
};

}  // namespace

std::span<const OpEntry> allOps() {
    return {std::begin(kOps), std::end(kOps)};
}
