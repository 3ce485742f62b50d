#pragma once
#include <optional>
#include <string>
#include <vector>

/// The caps of keys that are pressed together: "Ctrl", "Shift", "P".
using KeyCaps = std::vector<std::string>;

/// What keys do. There may be several ways to press them, or none.
struct HelpLine {
    std::string name;
    std::vector<KeyCaps> keys;
    friend bool operator==(const HelpLine&, const HelpLine&) = default;
};

struct HelpGroup {
    std::string title;
    std::vector<HelpLine> lines;
    friend bool operator==(const HelpGroup&, const HelpGroup&) = default;
};

struct HelpContent {
    std::string title;
    std::vector<HelpGroup> groups;
    std::string whenEmpty = {};  // what is said where there are no groups
};

/// Who is told what the user does with the help. Main thread.
class HelpViewDelegate {
  public:
    virtual ~HelpViewDelegate() = default;
    virtual void helpFilterDidChange(const std::string& filter) = 0;
    /// By the user's or the desktop's doing.
    virtual void helpWantsToClose() = 0;
};

/// The list of keys over the search window. Main thread.
class HelpView {
  public:
    enum class Kind {
        sheet,    // of all keys, with the keyboard and an empty filter
        passing,  // leaves the keyboard and the mouse to the search window
    };
    enum class Scroll { lineUp, lineDown, pageUp, pageDown, top, bottom };

    virtual ~HelpView() = default;
    virtual void setDelegate(HelpViewDelegate* delegate) = 0;
    virtual void show(Kind kind, const HelpContent& content) = 0;
    /// In what is shown.
    virtual void setContent(const HelpContent& content) = 0;
    virtual void scroll(Scroll how) = 0;
    /// Gives the keyboard back to the search window if that is still there.
    virtual void hide() = 0;
    virtual std::optional<Kind> shown() const = 0;
};
