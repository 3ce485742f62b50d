#include "core/GlobalHotKey.h"

#include <nlohmann/json.hpp>

#include "core/UserMessages.h"
#include "util/log.h"
#include "util/settings/OVUserDefaults.h"

namespace {

constexpr auto kSetting = "hotKey", kKeyCode = "keyCode", kModifierFlags = "modifierFlags";

}  // namespace

HotKey GlobalHotKey::storedShortcut() {
    const SettingsValue stored = OVUserDefaults::sharedInstance().valueForKey(kSetting);
    if (!stored || stored->is_null()) return {};
    const auto number = [&](const char* key) {
        return stored->is_object() && stored->contains(key) && (*stored)[key].is_number_unsigned();
    };
    if (!number(kKeyCode) || !number(kModifierFlags)) {
        logError("Failed to unarchive keyboard shortcut: %s", stored->dump().c_str());
        return {};
    }
    return {.keyCode = (*stored)[kKeyCode].get<uint64_t>(),
            .modifierFlags = (*stored)[kModifierFlags].get<uint64_t>()};
}

void GlobalHotKey::setupHotKeys() {
    currentShortcut_ = storedShortcut();
    if (currentShortcut_.isNone()) {
        hotKeys_.unregisterShortcut();
        return;
    }
    const auto registered = hotKeys_.registerShortcut(currentShortcut_, action_);
    if (!registered) messages_.error(registered.error().description);
}

Result<void> GlobalHotKey::change(const HotKey& hotKey) {
    auto registered = hotKeys_.registerShortcut(hotKey, action_);
    if (!registered) {
        setupHotKeys();  // the one before, if there was one
        return registered;
    }
    currentShortcut_ = hotKey;
    OVUserDefaults::sharedInstance().setObject(
        {{kKeyCode, hotKey.keyCode}, {kModifierFlags, hotKey.modifierFlags}}, kSetting);
    return {};
}

Result<void> GlobalHotKey::isFree(const HotKey& hotKey) {
    auto registered = hotKeys_.registerShortcut(hotKey, action_);
    hotKeys_.unregisterShortcut();
    return registered;
}
