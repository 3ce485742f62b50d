#pragma once
#include <functional>
#include <string>
#include <vector>

#include "screen/KeyEvent.h"

/// What the first page tells: three things to try on the user's own files, and the hot key.
struct QuickStartContent {
    struct Try {
        std::string query;        // typed into the search field by a click
        std::string explanation;  // what it finds
    };
    std::vector<Try> tries = {};
    std::string hotKey = {};         // as text; empty: none yet
    std::string hotKeyMessage = {};  // why it does not work, or that it does
    bool isHotKeyMessageAnError = false;
};

/// Who is told what the user does on the page. Main thread.
class QuickStartViewDelegate {
  public:
    virtual ~QuickStartViewDelegate() = default;
    /// The recorder takes keys from now on, or no more: before it tells what was pressed.
    virtual void hotKeyRecording(bool isRecording) = 0;
    /// A key combination was pressed in the recorder.
    virtual void hotKeyRecorded(const KeyEvent& event) = 0;
    virtual void tryChosen(size_t index) = 0;
    virtual void quickStartClosed() = 0;
};

/// The page of the first run. Main thread.
class QuickStartView {
  public:
    virtual ~QuickStartView() = default;
    virtual void setDelegate(QuickStartViewDelegate* delegate) = 0;
    virtual void setContent(const QuickStartContent& content) = 0;
    virtual void show() = 0;
    virtual void hide() = 0;
    virtual bool isVisible() const = 0;
};
