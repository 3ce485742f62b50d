#include "views/HelpList.h"

#include <QWheelEvent>
#include <algorithm>

#include "views/Controls.h"
#include "views/MarkedText.h"
#include "views/Scroller.h"
#include "views/Theme.h"

namespace {

constexpr int kColumnGap = 36, kGroupGap = 18, kTitleHeight = 24, kEmptyHeight = 120;
constexpr double kLine = 30, kWheelNotch = 120, kLinesANotch = 2;

}  // namespace

HelpList::HelpList(Look look, const Theme* theme, QWidget* parent)
    : QWidget(parent),
      look_(look),
      theme_(theme),
      page_(new QWidget(this)),
      scroller_(new Scroller(this, [this](double offset) { setOffset(offset); })) {
    scroller_->setTheme(theme);
    setAccessibleName(QStringLiteral("Keys"));
}

int HelpList::widthOf(Columns columns) {
    const int gaps = (columns.count - 1) * qRound(kColumnGap * columns.zoom);
    return columns.count * columns.width + gaps + Scroller::kWidth;
}

void HelpList::setContent(const HelpContent& content, Columns columns) {
    content_ = content;
    columns_ = columns;
    setFixedWidth(widthOf(columns));
    layOut();
    setOffset(0);
}

void HelpList::renew() {
    const double offset = offset_;
    layOut();
    setOffset(offset);
}

std::vector<HelpList::Item> HelpList::makeItems() {
    std::vector<Item> items;
    for (const HelpGroup& group : content_.groups) {
        QLabel* const title =
            makeLabel(page_, plainText(group.title), headingFont(theme_->info13), theme_->accent);
        title->setAlignment((isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignAbsolute |
                            Qt::AlignVCenter);
        items.push_back({.widget = title, .height = theme_->scaled(kTitleHeight), .isTitle = true});
        for (const HelpLine& line : group.lines) {
            const bool isLast = &line == &group.lines.back();
            const auto look = look_ == Look::compact ? HelpRow::Look::compact
                              : isLast               ? HelpRow::Look::full
                                                     : HelpRow::Look::ruled;
            auto* const row = new HelpRow(line, look, theme_, page_);
            items.push_back(
                {.widget = row, .height = row->heightForWidth(columns_.width), .isTitle = false});
        }
    }
    return items;
}

void HelpList::place(const std::vector<Item>& items) {
    const int groupGap = theme_->scaled(kGroupGap), columnGap = qRound(kColumnGap * columns_.zoom);
    const auto heightOf = [groupGap](const Item& item) {
        return item.height + (item.isTitle ? groupGap : 0);
    };
    int total = 0;
    for (const Item& item : items) total += heightOf(item);
    const int share = total / columns_.count;
    int column = 0, y = 0;
    for (size_t i = 0; i < items.size(); ++i) {
        const Item& item = items[i];
        // What stays together: a group; in the compact look a line, and a title with its first one.
        int together = heightOf(item);
        for (size_t next = i + 1; item.isTitle && next < items.size() && !items[next].isTitle;
             ++next) {
            together += items[next].height;
            if (look_ == Look::compact) break;
        }
        const bool mayBreak = item.isTitle || look_ == Look::compact;
        if (mayBreak && y > 0 && y + together / 2 > share && column + 1 < columns_.count) {
            column++;
            y = 0;
        }
        if (item.isTitle && y > 0) y += groupGap;
        const int x = column * (columns_.width + columnGap);
        item.widget->setGeometry(isRightToLeft() ? width() - x - columns_.width : x, y,
                                 columns_.width, item.height);
        y += item.height;
        contentHeight_ = std::max(contentHeight_, y);
    }
}

void HelpList::addEmptyText() {
    QLabel* const label =
        makeLabel(page_, plainText(content_.whenEmpty), theme_->info13, theme_->info);
    label->setAlignment(Qt::AlignCenter);
    contentHeight_ = theme_->scaled(kEmptyHeight);
    label->setGeometry(0, 0, width() - Scroller::kWidth, contentHeight_);
}

void HelpList::layOut() {
    delete page_;
    page_ = new QWidget(this);
    page_->stackUnder(scroller_);
    contentHeight_ = 0;
    if (content_.groups.empty())
        addEmptyText();
    else
        place(makeItems());
    page_->resize(width(), contentHeight_);
    page_->show();
}

void HelpList::setOffset(double offset) {
    offset_ = std::clamp(offset, 0.0, std::max(0.0, double(contentHeight_ - height())));
    page_->move(0, -int(offset_));
    scroller_->setVisible(contentHeight_ > height());
    scroller_->setRange(contentHeight_, height(), offset_);
}

void HelpList::scroll(HelpView::Scroll how) {
    using Scroll = HelpView::Scroll;
    const double line = kLine * theme_->zoom;
    const double page = std::max(line, height() - line);
    switch (how) {
        case Scroll::lineUp:
            return setOffset(offset_ - line);
        case Scroll::lineDown:
            return setOffset(offset_ + line);
        case Scroll::pageUp:
            return setOffset(offset_ - page);
        case Scroll::pageDown:
            return setOffset(offset_ + page);
        case Scroll::top:
            return setOffset(0);
        case Scroll::bottom:
            return setOffset(contentHeight_);
    }
}

void HelpList::wheelEvent(QWheelEvent* event) {
    const double pixels = event->pixelDelta().y();
    const double notches = event->angleDelta().y() / kWheelNotch;
    setOffset(offset_ - (pixels != 0 ? pixels : notches * kLinesANotch * kLine * theme_->zoom));
    event->accept();
}

void HelpList::resizeEvent(QResizeEvent*) {
    const int left = isRightToLeft() ? 0 : width() - Scroller::kWidth;
    scroller_->setGeometry(left, 0, Scroller::kWidth, height());
    setOffset(offset_);
}
