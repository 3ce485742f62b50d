#pragma once
#include <functional>
#include <memory>

#include "screen/QuickStartView.h"

class Cache;
class GlobalHotKey;

/// The page of the first run: three things to try on the user's own files, and the hot key.
/// Owner:   AppDelegate. Threads: main.
class QuickStart : private QuickStartViewDelegate {
  public:
    struct Parts {
        QuickStartView& view;
        GlobalHotKey& hotKey;
        std::function<std::shared_ptr<Cache>()> currentCache;
        /// Shows the window with this query in it.
        std::function<void(const std::u16string& query)> search;
        std::function<void()> showMainWindow;
    };
    explicit QuickStart(Parts parts);
    ~QuickStart() override;

    void openQuickStart();
    /// The index has grown: there may be examples now.
    void indexChanged();

  private:
    void hotKeyRecording(bool isRecording) override;
    void hotKeyRecorded(const KeyEvent& event) override;
    void tryChosen(size_t index) override;
    void quickStartClosed() override;
    void showHotKey();
    void offerHotKey();
    void tell(std::string message, bool isError = false);

    const Parts parts_;
    QuickStartContent content_;
};
