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
    {"metadata.parse", metadataParse},
    {"metadata.match", metadataMatch},
    {"metadata.sort", metadataSort},
    {"metadata.compare", metadataCompare},
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
    {"cache.events", nullptr},
    {"cache.dump", cacheDump},
    {"cache.recent", cacheRecent},
    {"cache.facts", cacheFacts},
    {"cache.refreshed", cacheRefreshed},
    {"cache.refreshNow", cacheRefreshNow},
    {"cache.search", cacheSearch},
    {"cache.check", cacheCheck},
    // The application
    {"app.start", nullptr},
    {"app.settle", nullptr},
    {"app.key", nullptr},
    {"app.type", nullptr},
    {"app.cursor", nullptr},
    {"app.hotkey", nullptr},
    {"app.toggle", nullptr},
    {"app.url", nullptr},
    {"app.service", nullptr},
    {"app.state", nullptr},
    {"app.rowsChanged", nullptr},
    {"app.dump", nullptr},
    {"app.edit", nullptr},
    {"app.setting", nullptr},
    {"app.shortcut", nullptr},
    {"app.click", nullptr},
    {"app.drop", nullptr},
    {"app.answer", nullptr},
    {"app.alerts", nullptr},
    {"app.operations", nullptr},
    {"app.project", nullptr},
    {"app.move", nullptr},
    {"app.screen", nullptr},
    {"app.clock", nullptr},
    {"app.desktop", nullptr},
    {"app.log", nullptr},
    {"app.quit", nullptr},
};

}  // namespace

std::span<const OpEntry> allOps() {
    return {std::begin(kOps), std::end(kOps)};
}
