#pragma once
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// A question to the user. Plain text.
struct Alert {
    enum class Style { warning, informational, critical };
    Style style = Style::warning;
    std::string title = {};
    std::string text = {};
    std::vector<std::string> buttons = {};        // the first is the default
    std::optional<size_t> buttonOfEscape = {};    // none: the last one
    std::optional<size_t> buttonOfSpace = {};     // none: the one that has the focus
    std::optional<std::string> suppression = {};  // text of a box "do not ask again"
};

/// The answer: which button, and whether the box was ticked.
struct AlertAnswer {
    size_t button = 0;
    bool suppressed = false;
};

/// Questions that stand in front of the window until they are answered. Main thread: blocks, the
/// main queue goes on meanwhile.
class Alerts {
  public:
    virtual ~Alerts() = default;
    virtual AlertAnswer runModal(const Alert& alert) = 0;
};
