#include <algorithm>

#include "core/ModeSwitcher.h"
#include "core/ResultTableController.h"
#include "modes/TRVSearchMode.h"
#include "shell/SearchFieldKeys.h"
#include "shell/fixedKeys.h"

namespace {

bool isReturnWith(const FixedKeys::Combination& keys, uint64_t flags) {
    return keys.keyCode == kKeyReturn && keys.modifierFlags == flags;
}

const KeyboardShortcutDefinition* definitionFor(const KeyboardShortcutEntries& entries,
                                                const KeyEvent& event, uint64_t mode) {
    const auto found =
        std::find_if(entries.begin(), entries.end(), [&](const KeyboardShortcutEntry& entry) {
            return entry.definition && entry.definition->matchesMode(mode) &&
                   entry.definition->matchesEvent(event);
        });
    return found == entries.end() ? nullptr : found->definition.get();
}

}  // namespace

std::optional<SearchFieldKeys::Command> SearchFieldKeys::commandOfReturn(
    uint64_t flags, const TRVMode& mode) const {
    const KeyEvent event{.keyCode = kKeyReturn, .modifierFlags = flags & kHeldModifiers};
    const KeyboardShortcutEntries ofMode = mode.keyboardShortcutsIncludingSuperclass(true);
    if (const auto* const own = definitionFor(ofMode, event, mode.identifier()))
        return Command{own->identifier(), own->actionName()};
    for (const FixedKeys& keys : fixedKeys()) {
        if ((keys.modes & mode.identifier()) == 0) continue;
        if (isReturnWith(keys.first, event.modifierFlags) ||
            isReturnWith(keys.second, event.modifierFlags))
            return Command{std::string(keys.name), std::string(keys.name)};
    }
    if (const auto* const any = definitionFor(keyboardShortcuts_, event, mode.identifier()))
        return Command{any->identifier(), any->actionName()};
    const auto action = parts_.shortcuts.userDefinedActionShortcutMatchingEvent(event);
    if (!action || (mode.identifier() & kFileModes) == 0) return std::nullopt;
    return Command{action->identifier(), action->actionName(), true};
}

void SearchFieldKeys::modifierFlagsChanged(uint64_t flags) {
    const uint64_t before = parts_.modeSwitcher.modifierFlags();
    parts_.modeSwitcher.setModifierFlags(flags);
    const TRVMode* const mode = parts_.host.currentMode();
    if (((before ^ flags) & kHeldModifiers) == 0 || !mode || mode->identifier() == kProjectMode)
        return;
    parts_.rows.updateActionIcons();
}
