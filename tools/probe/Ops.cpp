#include "Ops.h"

#include <iterator>

namespace {

using namespace ops;

constexpr OpEntry kOps[] = {
    // Functions
    {"rank", rank},
    {"split", split},
    {"fuzzy", fuzzy},
    {"regex", nullptr},
    {"metadata.parse", nullptr},
    {"metadata.match", nullptr},
    {"metadata.sort", nullptr},
    {"metadata.compare", nullptr},
    {"compare", compare},
    {"decompose", nullptr},
    {"message.at", nullptr},
    {"rule.prepare", rulePrepare},
    {"rule.status", ruleStatus},
    {"pathfilter", nullptr},
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
    {"shortcuts.list", nullptr},
    {"shortcuts.parse", nullptr},
    {"shortcuts.record", nullptr},
    {"selection.rename", selectionRename},
    {"history", nullptr},
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
    {"app.shortcut", nullptr},
    {"app.click", appClick},
    {"app.drop", nullptr},
    {"app.answer", appAnswer},
    {"app.alerts", appAlerts},
    {"app.operations", nullptr},
    {"app.project", nullptr},
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
