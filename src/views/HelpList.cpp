#include "views/HelpList.h"

#include <QWheelEvent>
#include <algorithm>

#include "views/Controls.h"
#include "views/HelpRow.h"
#include "views/MarkedText.h"
#include "views/Scroller.h"
#include "views/Theme.h"

namespace {

constexpr int kColumnGap = 40, kGroupGap = 18, kTitleHeight = 24, kEmptyHeight = 120;
constexpr double kLine = 30, kWheelNotch = 120, kLinesANotch = 2;

HelpRow::Rule ruleOf(const HelpGroup& group, const HelpLine& line) {
    return &line == &group.lines.back() ? HelpRow::Rule::none : HelpRow::Rule::below;
}

QFont titleFont(const Theme& theme) {
    QFont font = theme.info13;
    font.setWeight(QFont::DemiBold);
    return font;
}

}  // namespace

HelpList::HelpList(const Theme* theme, QWidget* parent)
    : QWidget(parent),
      theme_(theme),
      page_(new QWidget(this)),
      scroller_(new Scroller(this, [this](double offset) { setOffset(offset); })) {
    scroller_->setTheme(theme);
    setAccessibleName(QStringLiteral("Keys"));
}

int HelpList::naturalWidth(const HelpContent& content, const Theme* theme, int most) {
    int width = 0;
    for (const HelpGroup& group : content.groups)
        for (const HelpLine& line : group.lines)
            width =
                std::max(width, HelpRow(line, HelpRow::Rule::none, theme, nullptr).naturalWidth());
    return std::min(width, most);
}

void HelpList::setContent(const HelpContent& content, Columns columns) {
    content_ = content;
    columns_ = columns;
    setFixedWidth(columns.count * columns.width + (columns.count - 1) * kColumnGap +
                  Scroller::kWidth);
    layOut();
    setOffset(0);
}

void HelpList::renew() {
    const double offset = offset_;
    layOut();
    setOffset(offset);
}

int HelpList::heightOf(const HelpGroup& group) const {
    int height = kTitleHeight + kGroupGap;
    for (const HelpLine& line : group.lines)
        height +=
            HelpRow(line, HelpRow::Rule::none, theme_, nullptr).heightForWidth(columns_.width);
    return height;
}

int HelpList::addGroup(const HelpGroup& group, int x, int y) {
    const auto place = [&](QWidget* widget, int height) {
        const int left = isRightToLeft() ? width() - x - columns_.width : x;
        widget->setGeometry(left, y, columns_.width, height);
        widget->show();
        y += height;
    };
    QLabel* const title =
        makeLabel(page_, plainText(group.title), titleFont(*theme_), theme_->accent);
    title->setAlignment(Qt::AlignLeading | Qt::AlignVCenter);
    place(title, kTitleHeight);
    for (const HelpLine& line : group.lines) {
        auto* const row = new HelpRow(line, ruleOf(group, line), theme_, page_);
        place(row, row->heightForWidth(columns_.width));
    }
    return y + kGroupGap;
}

void HelpList::addEmptyText() {
    QLabel* const label =
        makeLabel(page_, plainText(content_.whenEmpty), theme_->info13, theme_->info);
    label->setAlignment(Qt::AlignCenter);
    label->setGeometry(0, 0, width() - Scroller::kWidth, kEmptyHeight);
    label->show();
    contentHeight_ = kEmptyHeight;
}

void HelpList::layOut() {
    delete page_;
    page_ = new QWidget(this);
    page_->stackUnder(scroller_);
    contentHeight_ = 0;
    int total = 0;
    for (const HelpGroup& group : content_.groups) total += heightOf(group);
    int column = 0, y = 0;
    for (const HelpGroup& group : content_.groups) {
        // A group goes where the larger part of it would stand.
        const int share = total / columns_.count;
        const bool isFull = y > 0 && y + heightOf(group) / 2 > share;
        if (isFull && column + 1 < columns_.count) {
            column++;
            y = 0;
        }
        y = addGroup(group, column * (columns_.width + kColumnGap), y);
        contentHeight_ = std::max(contentHeight_, y - kGroupGap);
    }
    if (content_.groups.empty()) addEmptyText();
    page_->resize(width(), contentHeight_);
    page_->show();
}

double HelpList::shownHeight() const {
    return height();
}

void HelpList::setOffset(double offset) {
    offset_ = std::clamp(offset, 0.0, std::max(0.0, contentHeight_ - shownHeight()));
    page_->move(0, -int(offset_));
    scroller_->setVisible(contentHeight_ > height());
    scroller_->setRange(contentHeight_, shownHeight(), offset_);
}

void HelpList::scroll(HelpView::Scroll how) {
    using Scroll = HelpView::Scroll;
    const double page = std::max(kLine, shownHeight() - kLine);
    switch (how) {
        case Scroll::lineUp:
            return setOffset(offset_ - kLine);
        case Scroll::lineDown:
            return setOffset(offset_ + kLine);
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
    setOffset(offset_ - (pixels != 0 ? pixels : notches * kLinesANotch * kLine));
    event->accept();
}

void HelpList::resizeEvent(QResizeEvent*) {
    const int left = isRightToLeft() ? 0 : width() - Scroller::kWidth;
    scroller_->setGeometry(left, 0, Scroller::kWidth, height());
    setOffset(offset_);
}
