#pragma once
#include <QWidget>
#include <functional>

struct Theme;

/// Two small buttons at the end of the search field: stay in front, and close. They never take the
/// keyboard, which has keys of its own for both.
/// Owner:   SearchWindow. Threads: main.
class WindowButtons : public QWidget {
  public:
    static constexpr int kWidth = 56;  // at a text scale of 1

    explicit WindowButtons(QWidget* parent);
    struct Events {
        std::function<void()> close = {}, sticky = {};
    };
    void setEvents(Events events) { events_ = std::move(events); }
    /// With fonts in units.
    void setTheme(const Theme* theme);
    void setSticky(bool sticky);

  protected:
    void resizeEvent(QResizeEvent*) override { layOut(); }
    void changeEvent(QEvent* event) override;

  private:
    class Button;
    void layOut();

    Events events_;
    const Theme* theme_ = nullptr;
    Button *sticky_, *close_;  // children
};
