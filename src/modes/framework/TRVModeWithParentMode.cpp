#include "modes/framework/TRVModeWithParentMode.h"

#include "modes/framework/ModeHost.h"

TRVModeWithParentMode::TRVModeWithParentMode(ModeIdentifier identifier) : TRVMode(identifier) {
    subscription_ = parentMode_.observe(
        [this](TRVMode* const&, TRVMode* const& parent) { wearColoursOf(parent); });
}

void TRVModeWithParentMode::wearColoursOf(TRVMode* parent) {
    if (!parent) return;
    setColours(parent->backgroundColor(), parent->oddTableRowBackgroundColor(),
               parent->evenTableRowBackgroundColor());
    setupTextAttrsForColor(parent->backgroundColor());
}

void TRVModeWithParentMode::themeChanged() {
    wearColoursOf(parentMode());
}

void TRVModeWithParentMode::restoreParentModeInBackground() {
    switchModeQueue().async([this] {
        if (TRVMode* parent = parentMode()) host().activateMode(*parent);
        host().reloadInBackgroundAnimated(false);
    });
}

void TRVModeWithParentMode::activate() {
    TRVMode::activate();
    host().setActionModeForAnimation(true);
}

void TRVModeWithParentMode::resign() {
    TRVMode::resign();
    host().setActionModeForAnimation(false);
}

void TRVModeWithParentMode::setupTextAttrsForColor(Colour colour) {
    if (TRVMode* parent = parentMode())
        parent->setupTextAttrsForColor(colour);
    else
        TRVMode::setupTextAttrsForColor(colour);
}

Colour TRVModeWithParentMode::oddTableRowBackgroundColor() const {
    const TRVMode* parent = parentMode();
    return parent ? parent->oddTableRowBackgroundColor() : TRVMode::oddTableRowBackgroundColor();
}

Colour TRVModeWithParentMode::evenTableRowBackgroundColor() const {
    const TRVMode* parent = parentMode();
    return parent ? parent->evenTableRowBackgroundColor() : TRVMode::evenTableRowBackgroundColor();
}

const ModeLook& TRVModeWithParentMode::look() const {
    const TRVMode* parent = parentMode();
    return parent ? parent->look() : TRVMode::look();
}
