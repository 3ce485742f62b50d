#include "views/ResultTable.h"

#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QStyle>
#include <algorithm>
#include <cmath>
#include <utility>

#include "views/ResultTableAccess.h"

namespace {
constexpr size_t kKeptContents = 64;
constexpr double kWheelNotch = 120;  // of QWheelEvent's angle
constexpr double kRowsANotch = 2;
constexpr int kEditorHeight = 24;
}  // namespace

ResultTable::ResultTable()
    : scroller_(new Scroller(this, [this](double offset) { setOffset(offset); })) {
    QAccessible::installFactory(ResultTableAccess::make);  // before the first word about it
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);  // what is behind is not painted for each key stroke
    setAccessibleName(QStringLiteral("Results"));
    scroller_->hide();
    qApp->installEventFilter(this);
    icons_.setLoadedBlock([this] { update(); });
}

void ResultTable::setTheme(const Theme* theme) {
    const double top = clipOrigin().y;
    theme_ = theme;
    painter_.emplace(theme, icons_);
    icons_.prepare(RowPainter::kIconSize, devicePixelRatioF() * theme->zoom);
    scroller_->setTheme(theme);
    setClipOrigin({0, top});
    updateScroller();
    update();
}

void ResultTable::setHasKeyboard(bool has) {
    hasKeyboard_ = has;
    update();
}

void ResultTable::setData(const ResultTableData* rows) {
    data_ = rows;
    reloadData();
}

void ResultTable::reloadData() {
    announced_.clear();
    count_ = data_ ? data_->numberOfRows() : 0;
    contents_.clear();
    selection_.clear();
    anchor_ = 0;
    setOffset(offset_);
    updateScroller();
    update();
}

void ResultTable::reloadRows(const std::vector<size_t>& rows) {
    const size_t count = data_ ? data_->numberOfRows() : 0;
    for (const size_t row : rows) {
        contents_.erase(row);
        updateRow(row);
    }
    if (count == count_) return;
    count_ = count;
    contents_.erase(contents_.lower_bound(count), contents_.end());
    selection_.erase(selection_.lower_bound(count), selection_.end());
    setOffset(offset_);
    updateScroller();
    update();
}

void ResultTable::setRowHeight(double height) {
    rowHeight_ = height;
    setOffset(offset_);
    updateScroller();
    update();
}

void ResultTable::setHasVerticalScroller(bool has) {
    scroller_->setVisible(has);
}

void ResultTable::selectRow(size_t row, bool extend) {
    if (row >= count_) return;
    std::set<size_t> rows;
    if (extend && allowsMultiple_)
        rows = selection_;
    else
        anchor_ = row;
    rows.insert(row);
    lastSelected_ = row;
    setSelection(std::move(rows));
}

std::optional<size_t> ResultTable::selectedRow() const {
    if (selection_.empty()) return std::nullopt;
    return selection_.count(lastSelected_) ? lastSelected_ : *selection_.begin();
}

void ResultTable::selectRows(size_t first, size_t last) {
    if (!allowsMultiple_) {
        selectRow(last, false);
        return;
    }
    std::set<size_t> rows;
    for (size_t row = first; row <= last && row < count_; ++row) rows.insert(rows.end(), row);
    anchor_ = first;
    setSelection(std::move(rows));
}

void ResultTable::deselectAll() {
    if (allowsEmpty_) setSelection({});
}

bool ResultTable::isRowVisible(size_t row) const {
    if (row >= count_) return false;
    const QRectF place = rowPlace(row);
    return place.bottom() > 0 && place.top() < height();
}

std::vector<size_t> ResultTable::selectedRows() const {
    return {selection_.begin(), selection_.end()};
}

void ResultTable::setSelection(std::set<size_t> rows) {
    if (rows == selection_) return;
    const std::set<size_t> before = std::exchange(selection_, std::move(rows));
    const size_t top = rowAt(margin()).value_or(0);
    for (size_t row = top; row < count_ && isRowVisible(row); ++row)
        if (before.count(row) != selection_.count(row)) updateRow(row);
    tellReaders();
    if (delegate_) delegate_->tableViewSelectionDidChange();
}

void ResultTable::followLinkOf(const RowContent& content) {
    const std::string& path = content.linkPath;
    if (!followLink_ || !content.isLink || path.empty()) return;
    const auto [pending, isFirst] = pendingLinks_.emplace(path, AskAgain::no);
    if (isFirst)
        askForLink(path);
    else
        pending->second = AskAgain::yes;
}

void ResultTable::askForLink(const std::string& path) {
    followLink_(path, [self = QPointer<ResultTable>(this), path](bool leads) {
        if (!self) return;
        const bool isNew =
            leads ? self->brokenLinks_.erase(path) != 0 : self->brokenLinks_.insert(path).second;
        if (isNew) self->update();
        const auto pending = self->pendingLinks_.find(path);
        if (pending == self->pendingLinks_.end()) return;
        if (std::exchange(pending->second, AskAgain::no) == AskAgain::yes)
            self->askForLink(path);
        else
            self->pendingLinks_.erase(pending);
    });
}

RowContent ResultTable::contentFor(size_t row) const {
    const auto found = contents_.find(row);
    if (found != contents_.end()) return found->second;
    return data_ && row < data_->numberOfRows() ? data_->row(row) : RowContent();
}

std::optional<RowAction> ResultTable::actionOf(size_t row, const RowContent& shown) const {
    return data_ && isSelected(row) ? data_->actionOf(row, shown) : std::nullopt;
}

void ResultTable::scrollRowToVisible(size_t row) {
    if (row >= count_) return;
    const double top = double(row) * pitch(), bottom = top + pitch() + 2 * margin();
    if (top < offset_ || bottom - top > height())
        setOffset(top);
    else if (bottom > offset_ + height())
        setOffset(bottom - height());
}

void ResultTable::beginEditingRow(const RowEdit& edit) {
    endEditingRow();
    editor_ = new RowEditor(
        this,
        [this](RowEditCommand command, const std::u16string& text) {
            return delegate_ && delegate_->rowEditDoCommand(command, text);
        },
        [this] { endEditingRow(); });
    const QRect row = rowPlace(edit.row).toRect();
    const int height = qRound(kEditorHeight * zoom());
    const int top = edit.pathPart ? row.bottom() - height : row.top() + qRound(zoom());
    const int left = qRound(RowPainter::kTextLeft * zoom()) - RowEditor::kPadding;
    const int right = qRound(RowPainter::kRightInset * zoom()) - RowEditor::kPadding;
    const QRect place(left, top, width() - left - right, height);
    editor_->setGeometry(QStyle::visualRect(layoutDirection(), rect(), place));
    if (theme_) editor_->setTheme(*theme_, edit.pathPart.has_value());
    editor_->begin(edit);
}

void ResultTable::endEditingRow() {
    RowEditor* editor = std::exchange(editor_, nullptr);
    if (!editor) return;
    editor->hide();
    editor->deleteLater();  // it may be on the stack
    if (delegate_) delegate_->rowEditDidEnd();
}

void ResultTable::setClipOrigin(Point origin) {
    setOffset(origin.y * zoom());
}

void ResultTable::setOffset(double offset) {
    const double most = std::max(0.0, contentHeight() - height());
    const double bounded = std::round(std::clamp(offset, 0.0, most));
    if (bounded == offset_) return;
    offset_ = bounded;
    updateScroller();
    update();
    if (delegate_) delegate_->clipViewBoundsDidChange();
}

void ResultTable::updateScroller() {
    scroller_->setRange(contentHeight(), height(), offset_);
}

QRectF ResultTable::rowPlace(size_t row) const {
    // On whole pixels, so that no row is blurred.
    const double top = std::round(margin() + kRowSpacing / 2 * zoom() + double(row) * pitch());
    return {0, top - offset_, double(width()), std::round(rowHeight_ * zoom())};
}

std::optional<size_t> ResultTable::rowAt(double y) const {
    const double row = std::floor((y + offset_ - margin()) / pitch());
    if (row < 0 || row >= double(count_)) return std::nullopt;
    return size_t(row);
}

void ResultTable::updateRow(size_t row) {
    update(rowPlace(row).toAlignedRect());
}

void ResultTable::drawClickedRow(QPainter& painter, const QRectF& place) const {
    constexpr double kRadius = 6, kLine = 1.5;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(theme_->accent, kLine));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(place.adjusted(5, 1, -5, -1), kRadius, kRadius);
    painter.restore();
}

const RowContent& ResultTable::content(size_t row) {
    auto found = contents_.find(row);
    if (found == contents_.end()) {
        found = contents_.emplace(row, data_->row(row)).first;
        followLinkOf(found->second);
    }
    return found->second;
}

void ResultTable::paintEvent(QPaintEvent* event) {
    if (!painter_) return;
    QPainter painter(this);
    painter.setLayoutDirection(layoutDirection());
    painter.fillRect(event->rect(), theme_->background);
    if (!data_ || count_ == 0) return;
    const auto first =
        rowAt(std::max(event->rect().top() - kRowSpacing * zoom() - 1, margin() - offset_));
    if (!first) return;
    for (size_t row = *first; row < count_; ++row) {
        const QRectF place = rowPlace(row);
        if (place.top() > event->rect().bottom()) break;
        auto look = RowPainter::Look::plain;
        if (selection_.count(row))
            look = hasKeyboard_ ? RowPainter::Look::selected
                                : RowPainter::Look::selectedWithoutKeyboard;
        const RowContent& shown = content(row);
        painter_->draw(painter, place, shown, look,
                       {.isBrokenLink = isBroken(shown), .action = actionOf(row, shown)});
        if (row == clickedRow_ && !selection_.count(row)) drawClickedRow(painter, place);
    }
    if (contents_.size() <= kKeptContents) return;
    const size_t top = rowAt(margin()).value_or(0);
    const auto shown = size_t(height() / pitch()) + 2;
    contents_.erase(contents_.begin(), contents_.lower_bound(top));
    contents_.erase(contents_.lower_bound(top + shown), contents_.end());
}

void ResultTable::resizeEvent(QResizeEvent* event) {
    const QRect atEnd(width() - Scroller::kWidth, 0, Scroller::kWidth, height());
    scroller_->setGeometry(QStyle::visualRect(layoutDirection(), rect(), atEnd));
    const double before = offset_;
    setOffset(offset_);
    updateScroller();
    const bool isTold = offset_ != before;
    if (delegate_ && !isTold && event->size().height() != event->oldSize().height())
        delegate_->clipViewBoundsDidChange();
}

void ResultTable::wheelEvent(QWheelEvent* event) {
    const double pixels = event->pixelDelta().y();
    const double notches = event->angleDelta().y() / kWheelNotch;
    setOffset(offset_ - (pixels != 0 ? pixels : notches * kRowsANotch * pitch()));
    event->accept();
}

void ResultTable::mousePressEvent(QMouseEvent* event) {
    const auto row = rowAt(event->position().y());
    if (!row) {
        event->ignore();  // the window moves
        return;
    }
    if (event->button() != Qt::LeftButton) return;
    std::set<size_t> rows;
    const Qt::KeyboardModifiers modifiers =
        allowsMultiple_ ? event->modifiers() : Qt::KeyboardModifiers();
    if (modifiers & Qt::ShiftModifier) {
        for (size_t i = std::min(anchor_, *row); i <= std::max(anchor_, *row); ++i) rows.insert(i);
    } else {
        anchor_ = *row;
        if (modifiers & Qt::ControlModifier) rows = selection_;
        if (!rows.insert(*row).second) rows.erase(*row);
        if (rows.empty() && !allowsEmpty_) return;
    }
    lastSelected_ = *row;
    setSelection(std::move(rows));
}

void ResultTable::mouseDoubleClickEvent(QMouseEvent* event) {
    const auto row = rowAt(event->position().y());
    if (row && event->button() == Qt::LeftButton && delegate_) delegate_->rowDoubleClicked(*row);
}

void ResultTable::contextMenuEvent(QContextMenuEvent* event) {
    // From the keyboard it is for what is selected, wherever the pointer is.
    const bool isByMouse = event->reason() == QContextMenuEvent::Mouse;
    const auto row = isByMouse ? rowAt(event->pos().y()) : std::nullopt;
    if (!delegate_ || (isByMouse && !row)) return;
    setClickedRow(row);
    const QPoint place = event->globalPos();
    delegate_->contextMenuWanted({double(place.x()), double(place.y())});
}

bool ResultTable::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::ContextMenu) return false;
    // The keys for it open the row's menu; what else has the keyboard in this window has none by
    // them, but an editor in a row.
    const auto* const widget = qobject_cast<QWidget*>(watched);
    const auto reason = static_cast<QContextMenuEvent*>(event)->reason();
    return reason == QContextMenuEvent::Keyboard && widget && widget != this &&
           widget->window() == window() && !isAncestorOf(widget);
}

void ResultTable::setClickedRow(std::optional<size_t> row) {
    if (row == clickedRow_) return;
    clickedRow_ = row;
    update();
}

Point ResultTable::menuPlaceOfRow(size_t row) const {
    const double bottom = std::clamp(rowPlace(row).bottom(), 0.0, double(height()));
    const QPoint corner(qRound(RowPainter::kTextLeft * zoom()), qRound(bottom));
    const QPoint place =
        mapToGlobal(QStyle::visualPos(layoutDirection(), QRect(0, 0, width(), height()), corner));
    return {double(place.x()), double(place.y())};
}

void ResultTable::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() != QEvent::StyleChange || !painter_) return;
    icons_.clear();  // the icon theme may be another one
    update();
}
