#pragma once
#include <optional>
#include <string>

#include "screen/StyledText.h"

/// The line at the bottom of the window. Plain text. Main thread.
class InfoBarView {
  public:
    virtual ~InfoBarView() = default;
    virtual void setText(const std::string& text) = 0;
    virtual void setToolTip(const std::string& text) = 0;
    /// How true the list is: a few words at the right end, none if empty, and what the tool tip
    /// says where there is no other.
    virtual void setFreshness(const std::string& words, const std::string& toolTip) = 0;
    /// Red, for an error.
    virtual void setErrorLook(bool isError) = 0;
    /// A scan goes on in the background, and a search.
    virtual void setScanning(bool scanning) = 0;
    virtual void setSearching(bool searching) = 0;
    /// A message over the bar, moving if it is longer than that; none: the bar is seen.
    virtual void setMarquee(const std::optional<StyledText>& text) = 0;
    /// How much of the window's width at the right end is for buttons.
    virtual void setInset(double width) = 0;
};
