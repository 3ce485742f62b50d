#include "platform/simulated/SimulatedScreen.h"

#include <algorithm>
#include <utility>

#include "util/Unicode.h"

namespace {
bool isText(const KeyEvent& event) {
    return !event.characters.empty() && event.characters.front() >= 0x20 &&
           !(event.modifierFlags & (kModifierCommand | kModifierControl));
}
}  // namespace

void SimulatedWindow::show() {
    visible = true;
    if (delegate) delegate->windowDidBecomeKey();
}

void SimulatedWindow::setFrame(Rect frame, bool, std::function<void()> ended) {
    move(frame);
    if (ended) ended();
}

void SimulatedWindow::move(Rect frame) {
    const Rect old = std::exchange(place, frame);
    if (!delegate) return;
    if (old.width != frame.width || old.height != frame.height) delegate->windowDidResize();
    if (old.x != frame.x || old.y + old.height != frame.y + frame.height) delegate->windowDidMove();
}

void SimulatedField::tell() {
    if (delegate) delegate->searchFieldSelectionDidChange(selected);
}

void SimulatedField::setText(const std::u16string& text) {
    content = text;
    selected = {content.size(), 0};
    tell();
}

void SimulatedField::setSelection(TextRange range) {
    const size_t begin = std::min(range.location, content.size());
    selected = {begin, std::min(range.length, content.size() - begin)};
    tell();
}

void SimulatedField::type(std::u16string_view text) {
    for (const char16_t unit : text)
        if (takesTyping) replaceSelection({&unit, 1});
}

bool SimulatedField::edit(uint64_t keyCode) {
    if (keyCode != kKeyDelete) return false;
    if (selected.length == 0 && selected.location > 0) selected = {selected.location - 1, 1};
    if (selected.length > 0) replaceSelection({});
    return true;
}

void SimulatedField::replaceSelection(std::u16string_view text) {
    content.replace(selected.location, selected.length, text);
    selected = {selected.location + text.size(), 0};
    tell();
}

bool SimulatedIndicators::click(IndicatorButton button) {
    if (!delegate || !(*this)[button].isShown) return false;
    delegate->indicatorClicked(button);
    return true;
}

AlertAnswer SimulatedAlerts::runModal(const Alert& alert) {
    AlertAnswer answer{.button = alert.buttons.empty() ? 0 : alert.buttons.size() - 1,
                       .suppressed = alert.suppression && suppresses};
    if (!answers.empty()) {
        const auto found = std::find(alert.buttons.begin(), alert.buttons.end(), answers.front());
        if (found != alert.buttons.end())
            answer.button = static_cast<size_t>(found - alert.buttons.begin());
        answers.pop_front();
    }
    shown.push_back({alert, alert.buttons.empty() ? std::string() : alert.buttons[answer.button]});
    return answer;
}

void SimulatedHelp::show(Kind k, const HelpContent& c) {
    kind = k;
    content = c;
    filter.clear();
    scrolled.clear();
}

void SimulatedHelp::press(const KeyEvent& event) {
    if (event.keyCode == kKeyDelete && !filter.empty())
        filter.pop_back();
    else if (isText(event))
        filter += toUtf8(event.characters);
    if (delegate) delegate->helpFilterDidChange(filter);
}

void SimulatedMenu::end(const std::optional<MenuChoice>& choice) {
    if (const auto tell = std::exchange(ended, nullptr)) tell(choice);
}

bool SimulatedMenu::choose(const std::string& submenu, const std::string& identifier) {
    const auto find = [](const std::vector<MenuItem>& among, const std::string& wanted) {
        const auto found = std::find_if(among.begin(), among.end(), [&](const MenuItem& item) {
            return item.identifier == wanted && !item.title.empty() && item.isEnabled;
        });
        return found == among.end() ? nullptr : &*found;
    };
    const MenuItem* const menu = submenu.empty() ? nullptr : find(items, submenu);
    if (!isOpen() || (!submenu.empty() && !menu)) return false;
    if (!find(menu ? menu->items : items, identifier)) return false;
    end(MenuChoice{.submenu = submenu, .identifier = identifier});
    return true;
}

bool SimulatedScreen::send(const KeyEvent& event) {
    if (keyEvents.monitor && keyEvents.monitor(event)) return true;
    if (event.kind != KeyEvent::Kind::down) return false;
    if (menu.isOpen()) {
        if (event.keyCode == kKeyEscape) menu.close();
        return true;
    }
    if (help.kind == HelpView::Kind::sheet) {
        help.press(event);
        return false;
    }
    if (field.press(event)) return true;
    if (field.edit(event.keyCode)) return false;
    if (isText(event)) field.type(event.characters);
    return false;
}
