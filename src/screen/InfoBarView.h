#pragma once
#include <string>

/// The line at the bottom of the window. Plain text. Main thread.
class InfoBarView {
  public:
    virtual ~InfoBarView() = default;
    virtual void setText(const std::string& text) = 0;
    virtual void setToolTip(const std::string& text) = 0;
    /// Red, for an error.
    virtual void setErrorLook(bool isError) = 0;
    /// Something goes on in the background: a scan.
    virtual void setBusy(bool busy) = 0;
};
