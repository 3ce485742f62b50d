#pragma once
#include <cstdint>
#include <string>

/// Buttons that show what limits the result. From left to right.
enum class IndicatorButton : uint8_t {
    enableMetadata,  // with a text; a term asks for what is not read
    resetFilterButton,
    searchPathOrFile,
    showFiles,
    showFolders,
};
constexpr size_t kIndicatorButtons = 5;

struct IndicatorContent {
    bool isShown = false;
    bool isOn = false;  // file names only; files; folders
    std::string toolTip = {};
    friend bool operator==(const IndicatorContent&, const IndicatorContent&) = default;
};

/// Who is told of a click. Main thread.
class IndicatorsViewDelegate {
  public:
    virtual ~IndicatorsViewDelegate() = default;
    virtual void indicatorClicked(IndicatorButton button) = 0;
};

/// The row of these buttons at the right end of the info bar. Main thread.
class IndicatorsView {
  public:
    virtual ~IndicatorsView() = default;
    virtual void setDelegate(IndicatorsViewDelegate* delegate) = 0;
    virtual void setIndicator(IndicatorButton button, const IndicatorContent& content) = 0;
};
