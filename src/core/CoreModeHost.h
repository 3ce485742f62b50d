#pragma once
#include "modes/Freshness.h"
#include "modes/framework/ModeHost.h"
#include "platform/Appearance.h"
#include "screen/Alerts.h"
#include "screen/IndicatorsView.h"
#include "screen/InfoBarView.h"
#include "screen/ResultTableView.h"
#include "screen/SearchFieldView.h"
#include "screen/WindowView.h"

class HidingGuard;
class Indicators;
class ItemRenamer;
class ModeSwitcher;
class ProjectSwitcher;
class ResultTableController;
class ScanRefresh;
class SearchFieldController;
class TRVMarkedItemsMode;
class UserMessages;

/// What the modes ask of the application, answered by its parts.
/// Owner:   AppDelegate.
class CoreModeHost : public ModeHost {
  public:
    struct Views {
        WindowView& window;
        SearchFieldView& field;
        ResultTableView& table;
        InfoBarView& infoBar;
        IndicatorsView& indicators;
        Alerts& alerts;
    };
    /// The parts that need the host themselves.
    struct Parts {
        UserMessages& messages;
        ResultTableController& table;
        SearchFieldController& field;
        Indicators& indicators;
        ScanRefresh& scanRefresh;
        HidingGuard& guard;
        ModeSwitcher& modeSwitcher;
        ProjectSwitcher& projectSwitcher;
        ItemRenamer& itemRenamer;
        TRVMarkedItemsMode& markedItems;
    };
    CoreModeHost(const Views& views, const Appearance& appearance)
        : views_(views), appearance_(appearance) {}
    void join(const Parts& parts) { parts_.emplace(parts); }

    TRVMode* currentMode() const override;
    bool isMainWindowVisible() const override { return views_.window.isVisible(); }
    bool isDark() const override { return appearance_.isDark(); }
    void searchInBackgroundForceBlockExecution(ForceBlock force, SearchBlock block) override;
    bool isSearching() const override;
    void reloadInBackgroundAnimated(bool animated) override;
    void activateMode(TRVMode& mode) override;
    ResultTableView& resultTable() override { return views_.table; }
    size_t numberOfRows() const override;
    size_t maxNumberOfRows() const override;
    void applyDiffableDataSourceSnapshotAnimated(bool animated,
                                                 const ChangedRows& forRows) override;
    void adjustWindowHeight() override;
    void updateMarkersOfVisibleItems() override;
    void updateTextsOfCurrentMode() override;
    void updateSearchCriterionIndicators() override;
    void error(const std::string& text) override;
    void updateSearchFieldWithEmptySearchString() override;
    /// What it says of the index, as often as there is something new.
    void setFreshnessSource(std::function<Freshness()> source) { freshness_ = std::move(source); }
    void updateFreshness();
    void updateSearchString(const std::u16string& string) override;
    void focusOnSearchField() override;
    void enableSearchField() override;
    void disableSearchField() override;
    void info(const std::string& text) override;
    void beep() override;
    void startSearchAnimation();
    void stopSearchAnimation() override;
    void startScanAnimation() override;
    void stopScanAnimation() override;
    void setActionModeForAnimation(bool) override {}
    size_t askPreventingHiding(const Alert& alert) override;
    bool isMarked(const FileURL& url) const override;
    RowContent::Source sourceOf(const FileURL& url) const override;
    Result<void> renameItem(const FileURL& from, const FileURL& to) override;
    bool reallyTrashItems(const std::vector<FileURL>& urls) override;
    void moveToTrash(const std::vector<FileURL>& urls) override;
    void makeCurrentProject(std::shared_ptr<const Project> project) override;

  private:
    const Views views_;
    const Appearance& appearance_;
    std::optional<Parts> parts_;
    std::function<Freshness()> freshness_;
};
