#pragma once
#include "core/UserMessages.h"
#include "modes/framework/ModeHost.h"
#include "screen/ResultTableView.h"
#include "screen/SearchFieldView.h"
#include "screen/WindowView.h"

class ResultTableController;
class ScanRefresh;

/// What the modes ask of the application, answered by the window, the table and GlobalState.
/// Owner:   AppDelegate.
class CoreModeHost : public ModeHost {
  public:
    struct Views {
        WindowView& window;
        SearchFieldView& field;
        ResultTableView& table;
        InfoBarView& infoBar;
    };
    CoreModeHost(const Views& views, UserMessages& messages);
    /// The table's controller needs the host's views first. scanRefresh runs while a scan does.
    void join(ResultTableController& controller, ScanRefresh& scanRefresh) {
        tableController_ = &controller;
        scanRefresh_ = &scanRefresh;
    }

    TRVMode* currentMode() const override;
    void searchInBackgroundForceBlockExecution(ForceBlock force, SearchBlock block) override;
    void reloadInBackgroundAnimated(bool animated) override;
    bool isMainWindowVisible() const override { return views_.window.isVisible(); }
    ResultTableView& resultTable() override { return views_.table; }
    void updateTextsOfCurrentMode() override;
    void startScanAnimation() override;
    void stopScanAnimation() override;

  private:
    const Views views_;
    UserMessages& messages_;
    ResultTableController* tableController_ = nullptr;
    ScanRefresh* scanRefresh_ = nullptr;
};
