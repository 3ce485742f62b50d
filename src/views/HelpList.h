#pragma once
#include <QWidget>

#include "screen/HelpView.h"

struct Theme;
class Scroller;

/// The groups of the help, in columns that are about equally long; what does not fit is scrolled
/// to. Owner:   HelpSheet. Threads: main. Units: logical pixels.
class HelpList : public QWidget {
  public:
    HelpList(const Theme* theme, QWidget* parent);
    struct Columns {
        int count;
        int width;  // of each
    };
    /// From the top. The widget's width becomes that of the columns.
    void setContent(const HelpContent& content, Columns columns);
    int contentHeight() const { return contentHeight_; }
    /// The same, in the colours that the theme has now.
    void renew();
    void scroll(HelpView::Scroll how);
    /// The width in which each line would stand on its own, at most this.
    static int naturalWidth(const HelpContent& content, const Theme* theme, int most);

  protected:
    void wheelEvent(QWheelEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void layOut();
    int addGroup(const HelpGroup& group, int x, int y);
    int heightOf(const HelpGroup& group) const;
    void addEmptyText();
    void setOffset(double offset);
    double shownHeight() const;

    const Theme* const theme_;
    HelpContent content_;
    Columns columns_{1, 0};
    QWidget* page_;  // what is scrolled
    Scroller* const scroller_;
    int contentHeight_ = 0;
    double offset_ = 0;
};
