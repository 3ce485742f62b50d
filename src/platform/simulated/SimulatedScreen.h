#pragma once
#include <array>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/simulated/SimulatedTable.h"
#include "screen/Alerts.h"
#include "screen/DiskAccessView.h"
#include "screen/HelpView.h"
#include "screen/IndicatorsView.h"
#include "screen/InfoBarView.h"
#include "screen/KeyEvent.h"
#include "screen/MenuView.h"
#include "screen/PreferencesView.h"
#include "screen/PreviewView.h"
#include "screen/QuickStartView.h"
#include "screen/QuitProgressView.h"
#include "screen/SearchFieldView.h"
#include "screen/WindowView.h"

/// The program's own windows without a screen: each keeps what it was told, and lets whoever drives
/// it be the user. The screen has its origin at the bottom left.
/// Owner:   SimulatedDesktop. Threads: main.

class SimulatedWindow : public WindowView {
  public:
    void setDelegate(WindowViewDelegate* d) override { delegate = d; }
    void show() override;
    void hide() override { visible = false; }
    bool isVisible() const override { return visible; }
    void setResizable(bool resizable) override { isResizable = resizable; }
    void setLook(const ModeLook& newLook) override { look = newLook; }
    void setSticky(bool isSticky) override { sticky = isSticky; }
    Rect frame() const override { return place; }
    void setFrame(Rect frame, bool animated, std::function<void()> ended) override;
    Rect screenFrame() const override { return screen; }
    Rect visibleScreenFrame() const override { return screen; }
    Rect visibleScreenFrameFor(Rect) const override { return screen; }
    /// The user moves or sizes it.
    void move(Rect frame);

    WindowViewDelegate* delegate = nullptr;
    bool visible = false, isResizable = false;
    bool sticky = false;
    ModeLook look;
    Rect place{0, 0, 638, 64};
    Rect screen{0, 0, 1440, 900};
};

class SimulatedField : public SearchFieldView {
  public:
    void setDelegate(SearchFieldViewDelegate* d) override { delegate = d; }
    std::u16string text() const override { return content; }
    void setText(const std::u16string& text) override;
    void setStyles(const std::vector<StyledRange>& newStyles) override { styles = newStyles; }
    void setPlaceholder(const std::string& text) override { placeholder = text; }
    TextRange selection() const override { return selected; }
    void setSelection(TextRange range) override;
    void selectAll() override { setSelection({0, content.size()}); }
    void focus() override { hasFocus = true; }
    void setEnabled(bool enabled) override { takesTyping = enabled; }
    bool isEnabled() const override { return takesTyping; }

    /// Unit by unit, in place of what is selected.
    void type(std::u16string_view text);
    /// A key that only the editor knows: Backspace. False: it does not.
    bool edit(uint64_t keyCode);
    bool press(const KeyEvent& event) { return delegate && delegate->searchFieldKeyDown(event); }

    SearchFieldViewDelegate* delegate = nullptr;
    std::u16string content;
    TextRange selected;
    std::vector<StyledRange> styles;
    std::string placeholder;
    bool hasFocus = false, takesTyping = true;

  private:
    void replaceSelection(std::u16string_view text);
    void tell();
};

class SimulatedInfoBar : public InfoBarView {
  public:
    void setText(const std::string& t) override { text = t; }
    void setToolTip(const std::string& t) override { toolTip = t; }
    void setFreshness(const std::string& words, const std::string& tip) override {
        freshness = words;
        freshnessToolTip = tip;
    }
    void setErrorLook(bool isError) override { errorLook = isError; }
    void setScanning(bool is) override { scanning = is; }
    void setSearching(bool is) override { searching = is; }
    void setMarquee(const std::optional<StyledText>& t) override { marquee = t; }
    void setInset(double width) override { inset = width; }

    std::string text, toolTip, freshness, freshnessToolTip;
    std::optional<StyledText> marquee;
    bool errorLook = false, scanning = false, searching = false;
    double inset = 0;
};

/// In the order of IndicatorButton.
constexpr std::array<std::string_view, kIndicatorButtons> kIndicatorNames = {
    "enableMetadata", "resetFilterButton", "searchPathOrFile", "showFiles", "showFolders"};

class SimulatedIndicators : public IndicatorsView {
  public:
    void setDelegate(IndicatorsViewDelegate* d) override { delegate = d; }
    void setIndicator(IndicatorButton button, const IndicatorContent& content) override {
        buttons[static_cast<size_t>(button)] = content;
    }
    /// Only a button that is shown can be clicked; whether it was.
    bool click(IndicatorButton button);
    const IndicatorContent& operator[](IndicatorButton button) const {
        return buttons[static_cast<size_t>(button)];
    }

    IndicatorsViewDelegate* delegate = nullptr;
    std::array<IndicatorContent, kIndicatorButtons> buttons;
};

/// Answers at once: from the prepared list of titles, else with the last button.
class SimulatedAlerts : public Alerts {
  public:
    AlertAnswer runModal(const Alert& alert) override;

    struct Shown {
        Alert alert;
        std::string answered;
    };
    std::deque<std::string> answers;
    bool suppresses = false;
    std::vector<Shown> shown;
};

class SimulatedQuitProgress : public QuitProgressView {
  public:
    void show() override { visible = true; }
    void setProgress(double p) override { progress = p; }
    void fadeOut() override { visible = false; }
    void hide() override { visible = false; }
    bool isVisible() const override { return visible; }

    bool visible = false;
    double progress = 0;
};

class SimulatedQuickStart : public QuickStartView {
  public:
    void setDelegate(QuickStartViewDelegate* d) override { delegate = d; }
    void setContent(const QuickStartContent& c) override { content = c; }
    void show() override { visible = true; }
    void hide() override { visible = false; }
    bool isVisible() const override { return visible; }

    QuickStartViewDelegate* delegate = nullptr;
    QuickStartContent content;
    bool visible = false;
};

class SimulatedPreferences : public PreferencesView {
  public:
    void setDelegate(PreferencesViewDelegate* d) override { delegate = d; }
    void setForm(PreferencesPane p, const PreferencesForm& f) override {
        (p == PreferencesPane::general ? general : search) = f;
    }
    void setShortcuts(const std::vector<PreferencesShortcut>& s) override { shortcuts = s; }
    void setRules(const std::vector<PreferencesRuleList>& r) override { rules = r; }
    void showPane(PreferencesPane p) override { pane = p; }
    void show() override { visible = true; }
    void hide() override { visible = false; }
    bool isVisible() const override { return visible; }
    bool isRecording() const override { return recording; }

    PreferencesViewDelegate* delegate = nullptr;
    PreferencesForm general, search;
    std::vector<PreferencesShortcut> shortcuts;
    std::vector<PreferencesRuleList> rules;
    PreferencesPane pane{};
    bool visible = false, recording = false;
};

class SimulatedPreview : public PreviewView {
  public:
    void show() override { visible = true; }
    void hide() override { visible = false; }
    bool isVisible() const override { return visible; }
    void setContent(const PreviewContent& c) override { content = c; }
    uint32_t picturePixels() const override { return 400; }

    PreviewContent content;
    bool visible = false;
};

class SimulatedDiskAccessWindow : public DiskAccessView {
  public:
    void show(Buttons b) override { buttons.emplace(std::move(b)); }
    void hide() override { buttons.reset(); }

    std::optional<Buttons> buttons;  // while it is shown
};

class SimulatedHelp : public HelpView {
  public:
    void setDelegate(HelpViewDelegate* d) override { delegate = d; }
    void show(Kind k, const HelpContent& c) override;
    void setContent(const HelpContent& c) override { content = c; }
    void scroll(Scroll how) override { scrolled.push_back(how); }
    void hide() override { kind.reset(); }
    std::optional<Kind> shown() const override { return kind; }
    /// The sheet has the keyboard: Backspace, and what is typed.
    void press(const KeyEvent& event);

    HelpViewDelegate* delegate = nullptr;
    std::optional<Kind> kind;
    HelpContent content;
    std::string filter;
    std::vector<Scroll> scrolled;
};

class SimulatedMenu : public MenuView {
  public:
    void popUp(const std::vector<MenuItem>& shown, const Look&, const Place& at, Ended e) override {
        items = shown;
        place = at;
        ended = std::move(e);
    }
    void update(const std::vector<MenuItem>& shown) override { items = shown; }
    void close() override { end(std::nullopt); }
    bool isOpen() const override { return ended != nullptr; }
    /// Picks an enabled item; false: there is none of this name.
    bool choose(const std::string& submenu, const std::string& identifier);

    std::vector<MenuItem> items;  // of the last one
    Place place{};

  private:
    void end(const std::optional<MenuChoice>& choice);

    Ended ended;  // while it is open
};

class SimulatedKeyEvents : public KeyEvents {
  public:
    void setMonitor(std::function<bool(const KeyEvent&)> m) override { monitor = std::move(m); }
    std::function<bool(const KeyEvent&)> monitor;
};

struct SimulatedScreen {
    SimulatedWindow window;
    SimulatedField field;
    SimulatedTable table{[this] { return std::max(0.0, window.place.height - 65); }};
    SimulatedInfoBar infoBar;
    SimulatedIndicators indicators;
    SimulatedAlerts alerts;
    SimulatedQuitProgress quitProgress;
    SimulatedQuickStart quickStart;
    SimulatedPreview preview;
    SimulatedDiskAccessWindow diskAccess;
    SimulatedPreferences preferences;
    SimulatedHelp help;
    SimulatedMenu menu;
    SimulatedKeyEvents keyEvents;

    /// A key event as it comes from the desktop: past the monitor, past the program's own keys,
    /// into the text. True: something used it up before the text.
    bool send(const KeyEvent& event);
};
