#pragma once
#include <QWidget>

#include "screen/HelpView.h"
#include "views/HelpRow.h"

class Scroller;

/// The groups of the help, in columns that are about equally long; what does not fit is scrolled
/// to.
/// Owner:   HelpSheet. Threads: main. Units: logical pixels.
class HelpList : public QWidget {
  public:
    /// full: groups stay whole. compact: smaller, and groups go on in the next column.
    enum class Look { full, compact };
    HelpList(Look look, const Theme* theme, QWidget* parent);
    struct Columns {
        int count;
        int width;  // of each
        double zoom = 1;
    };
    /// From the top. The widget's width becomes that of the columns.
    void setContent(const HelpContent& content, Columns columns);
    int contentHeight() const { return contentHeight_; }
    /// The same, in the colours and fonts that the theme has now.
    void renew();
    void scroll(HelpView::Scroll how);
    static int widthOf(Columns columns);

  protected:
    void wheelEvent(QWheelEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    struct Item {
        QWidget* widget;
        int height;
        bool isTitle;
    };
    std::vector<Item> makeItems();
    void layOut();
    void place(const std::vector<Item>& items);
    void addEmptyText();
    void setOffset(double offset);

    const Look look_;
    const Theme* const theme_;
    HelpContent content_;
    Columns columns_{1, 0};
    QWidget* page_;  // what is scrolled
    Scroller* const scroller_;
    int contentHeight_ = 0;
    double offset_ = 0;
};
