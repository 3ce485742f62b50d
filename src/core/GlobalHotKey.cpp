#include "core/GlobalHotKey.h"

#include <nlohmann/json.hpp>

#include "core/UserMessages.h"
#include "shell/registry/KeyboardShortcuts.h"
#include "shell/registry/ownKeys.h"
#include "shell/registry/shortcutText.h"
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

std::optional<std::string> GlobalHotKey::refusalOf(const KeyEvent& event) const {
    if (!ownKeys::hasModifier(event.modifierFlags)) return "A hot key needs Ctrl, Alt or Super.";
    const std::string keys =
        "Shortcut " + shortcutText(event.keyCode, event.modifierFlags & kHeldModifiers);
    if (ownKeys::isOwn(event)) return keys + " is reserved for internal use.";
    if (const auto command = shortcuts_.shortcutMatchingEvent(event))
        return keys + " is already used for action “" + command->actionName() + "”.";
    return std::nullopt;
}

Result<void> GlobalHotKey::record(const KeyEvent& event) {
    if (auto refusal = refusalOf(event))
        return Error{.domain = "hotKey", .code = 0, .description = std::move(*refusal)};
    const HotKey hotKey{.keyCode = event.keyCode,
                        .modifierFlags = event.modifierFlags & kHeldModifiers};
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
