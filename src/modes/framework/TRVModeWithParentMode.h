#pragma once
#include "modes/framework/TRVMode.h"
#include "util/Observable.h"

/// A mode that was opened from another one, wears its colours, and goes back to it.
/// Owner:   World. Threads: see TRVMode; parentMode and restoreParentModeInBackground: any.
class TRVModeWithParentMode : public TRVMode {
  public:
    explicit TRVModeWithParentMode(ModeIdentifier identifier);

    TRVMode* parentMode() const { return parentMode_.value(); }
    void setParentMode(TRVMode* mode) { parentMode_.set(mode); }
    Observable<TRVMode*>& observableParentMode() { return parentMode_; }
    void restoreParentModeInBackground();

    void activate() override;
    void resign() override;
    void setupTextAttrsForColor(Colour colour) override;
    Colour oddTableRowBackgroundColor() const override;
    Colour evenTableRowBackgroundColor() const override;
    const ModeLook& look() const override;
    void themeChanged() override;

  private:
    void wearColoursOf(TRVMode* parent);

    Observable<TRVMode*> parentMode_{nullptr};
    Subscription subscription_;
};
