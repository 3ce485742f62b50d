#pragma once
#include "screen/IndicatorsView.h"

class ModeHost;
class SearchFieldController;
class SearchToggles;
class TRVMode;

/// The buttons that show what limits the result, and what a click on them does.
/// Owner:   AppDelegate. Threads: main.
class Indicators : public IndicatorsViewDelegate {
  public:
    struct Parts {
        IndicatorsView& view;
        ModeHost& host;
        const SearchFieldController& field;
        SearchToggles& toggles;
    };
    explicit Indicators(const Parts& parts);
    ~Indicators() override;

    /// As the current mode and its settings are now.
    void updateSearchCriterionIndicators();
    /// The same that the keys of these commands do.
    void indicatorClicked(IndicatorButton button) override;

  private:
    IndicatorContent resetFilterButton(TRVMode* mode) const;

    const Parts parts_;
};
