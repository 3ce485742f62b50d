#include "views/preferences/ShortcutTable.h"

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>
#include <algorithm>
#include <cmath>

#include "views/KeyTranslation.h"
#include "views/MarkedText.h"

namespace {

constexpr int kNames = 0, kMenu = 1, kKeys = 2, kColumns = 3;
constexpr int kRow = 30, kTitleRow = 38, kMenuWidth = 64, kKeysWidth = 190, kInset = 10;
constexpr const char* kHeadings[] = {"Action", "Menu", "Shortcut"};

}  // namespace

class ShortcutTable::Model : public QAbstractTableModel {
  public:
    using QAbstractTableModel::QAbstractTableModel;

    void setLines(std::vector<PreferencesShortcut> lines) {
        beginResetModel();
        lines_ = std::move(lines);
        endResetModel();
    }
    const PreferencesShortcut& line(int row) const { return lines_[size_t(row)]; }
    bool isTitle(int row) const { return line(row).identifier.empty(); }

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : int(lines_.size());
    }
    int columnCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : kColumns;
    }
    QVariant data(const QModelIndex& index, int role) const override {
        const PreferencesShortcut& shown = line(index.row());
        const bool isBox = index.column() == kMenu && !isTitle(index.row());
        if (role == Qt::CheckStateRole && isBox)
            return shown.isInMenu ? Qt::Checked : Qt::Unchecked;
        if (role == Qt::ToolTipRole && index.column() == kMenu)
            return QStringLiteral("Shown in the menu of a row");
        if (role != Qt::DisplayRole || index.column() == kMenu) return {};
        return plainText(index.column() == kNames ? shown.name : shown.keys);
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
        return QString::fromLatin1(kHeadings[section]);
    }
    Qt::ItemFlags flags(const QModelIndex& index) const override {
        return isTitle(index.row()) ? Qt::ItemIsEnabled : Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    }

  private:
    std::vector<PreferencesShortcut> lines_;
};

class ShortcutTable::Painter : public QStyledItemDelegate {
  public:
    explicit Painter(ShortcutTable* table) : QStyledItemDelegate(table), table_(*table) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const Theme& theme = *table_.context_->theme;
        const bool isTitle = table_.model_->isTitle(index.row());
        const bool isChosen = !isTitle && index.row() == table_.currentIndex().row();
        const bool hasKeyboard = table_.hasFocus();
        const PreferencesShortcut& line = table_.model_->line(index.row());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (isChosen) drawGround(*painter, option.rect, index.column(), hasKeyboard);
        QString text = index.data().toString();
        QColor colour = isChosen && hasKeyboard ? theme.selectedText : theme.fieldText;
        QFont font = isTitle ? headingFont(theme.info13) : theme.info13;
        const int inset = theme.scaled(kInset);
        QRect place = option.rect.adjusted(inset, 0, -inset, 0);
        if (isTitle) {
            colour = theme.info;
            place.setTop(place.top() + theme.scaled(10));
            if (index.column() != kNames) {
                // The first line says what stands in the columns.
                text =
                    index.row() == 0 ? QString::fromLatin1(kHeadings[index.column()]) : QString();
                font = theme.info13;
            }
        } else if (index.column() == kMenu) {
            drawBox(*painter, option.rect, line.isInMenu, colour);
        } else if (index.column() == kKeys) {
            if (isChosen && table_.isRecording_) text = QStringLiteral("Press the keys…");
            font.setWeight(line.isChanged ? QFont::DemiBold : QFont::Normal);
        }
        painter->setFont(font);
        painter->setPen(colour);
        painter->drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                          QFontMetrics(font).elidedText(text, Qt::ElideRight, place.width()));
        painter->restore();
    }

  private:
    void drawBox(QPainter& painter, const QRect& cell, bool isTicked, QColor colour) const {
        constexpr double kBox = 14, kRadius = 3.5;
        const double zoom = table_.context_->theme->zoom;
        QRectF box(0, 0, kBox * zoom, kBox * zoom);
        box.moveCenter(QRectF(cell).center());
        box.moveLeft(cell.left() + std::round((kInset + 10) * zoom) + 0.5);
        QColor frame = colour;
        frame.setAlphaF(isTicked ? 0.8F : 0.4F);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(frame, 1.2));
        painter.drawRoundedRect(box, kRadius, kRadius);
        if (!isTicked) return;
        painter.setPen(QPen(colour, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPolyline(QPolygonF({box.topLeft() + QPointF(3.5, 7.5) * zoom,
                                        box.topLeft() + QPointF(6, 10) * zoom,
                                        box.topLeft() + QPointF(10.5, 4.5) * zoom}));
    }
    /// One rounded ground for all columns: each paints its part of it.
    void drawGround(QPainter& painter, const QRect& cell, int column, bool hasKeyboard) const {
        constexpr double kRadius = 6;
        const Theme& theme = *table_.context_->theme;
        painter.setClipRect(cell);
        painter.setPen(Qt::NoPen);
        painter.setBrush(hasKeyboard ? theme.selection : theme.otherSelection);
        const QRectF whole =
            QRectF(cell).adjusted(column == kNames ? 0 : -20, 1, column == kKeys ? 0 : 20, -1);
        painter.drawRoundedRect(whole, kRadius, kRadius);
    }

    const ShortcutTable& table_;
};

ShortcutTable::ShortcutTable(const PaneContext* context, QWidget* parent)
    : QTableView(parent), context_(context), model_(new Model(this)) {
    setModel(model_);
    setItemDelegate(new Painter(this));
    setAccessibleName(QStringLiteral("Commands"));
    setShowGrid(false);
    setFrameShape(QFrame::NoFrame);
    setTabKeyNavigation(false);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setMinimumSectionSize(1);
    horizontalHeader()->hide();
    horizontalHeader()->setSectionResizeMode(kNames, QHeaderView::Stretch);
    horizontalHeader()->setSectionResizeMode(kKeys, QHeaderView::Fixed);
    horizontalHeader()->setSectionResizeMode(kMenu, QHeaderView::Fixed);
    setColumnWidth(kKeys, context->theme->scaled(kKeysWidth));
    setColumnWidth(kMenu, context->theme->scaled(kMenuWidth));
    connect(this, &QAbstractItemView::doubleClicked, this, [this] { record(); });
    connect(this, &QAbstractItemView::clicked, this, [this](const QModelIndex& index) {
        if (model_->isTitle(index.row())) return;
        if (index.column() == kKeys) record();
        if (index.column() == kMenu) toggleInMenu();
    });
}

ShortcutTable::~ShortcutTable() {
    changed_ = {};
}

void ShortcutTable::setShortcuts(const std::vector<PreferencesShortcut>& shortcuts) {
    const PreferencesShortcut* const before = chosen();
    const std::string identifier = before ? before->identifier : std::string();
    setRecording(false);
    model_->setLines(shortcuts);
    clearSpans();
    for (int row = 0; row < model_->rowCount(); ++row) {
        const bool isTitle = model_->isTitle(row);
        if (isTitle && row > 0) setSpan(row, 0, 1, kColumns);
        setRowHeight(row, context_->theme->scaled(isTitle ? kTitleRow : kRow));
        if (!isTitle && model_->line(row).identifier == identifier)
            setCurrentIndex(model_->index(row, kNames));
    }
    if (changed_) changed_();
}

const PreferencesShortcut* ShortcutTable::chosen() const {
    const int row = currentIndex().row();
    if (row < 0 || row >= model_->rowCount() || model_->isTitle(row)) return nullptr;
    return &model_->line(row);
}

void ShortcutTable::chooseFirst() {
    for (int row = 0; row < model_->rowCount() && !chosen(); ++row)
        if (!model_->isTitle(row)) setCurrentIndex(model_->index(row, kNames));
}

void ShortcutTable::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    setRecording(false);
    viewport()->update();
    if (changed_) changed_();
}

// ---- Recording

void ShortcutTable::setRecording(bool recording) {
    if (recording == isRecording_) return;
    isRecording_ = recording;
    if (context_->delegate) context_->delegate->recordingChanged(recording);
    viewport()->update();
    if (changed_) changed_();
}

void ShortcutTable::record() {
    if (!chosen()) return;
    setFocus();
    setRecording(true);
}

void ShortcutTable::toggleInMenu() {
    const PreferencesShortcut* const line = chosen();
    if (line && context_->delegate)
        context_->delegate->shortcutShownInMenu(std::string(line->identifier), !line->isInMenu);
}

void ShortcutTable::removeKeys() {
    const PreferencesShortcut* const line = chosen();
    if (line && context_->delegate)
        context_->delegate->shortcutRemoved(std::string(line->identifier));
}

void ShortcutTable::takeKey(const QKeyEvent& event) {
    const KeyEvent key = keyEventFrom(event, context_->keySymbols);
    if (key.kind != KeyEvent::Kind::down || key.isRepeat) return;
    setRecording(false);
    const bool isCancelled = key.keyCode == kKeyEscape && key.modifierFlags == 0;
    const PreferencesShortcut* const line = chosen();
    if (!isCancelled && key.keyCode != kNoKeyCode && line && context_->delegate)
        context_->delegate->shortcutRecorded(std::string(line->identifier), key);
}

bool ShortcutTable::event(QEvent* event) {
    // Before Qt moves the focus for Tab.
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    if (isRecording_ && isKey) {
        takeKey(*static_cast<QKeyEvent*>(event));
        event->accept();
        return true;
    }
    return QTableView::event(event);
}

// ---- Keys

void ShortcutTable::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_F2:
            record();
            return;
        case Qt::Key_Space:
            toggleInMenu();
            return;
        case Qt::Key_Delete:
        case Qt::Key_Backspace:
            removeKeys();
            return;
        case Qt::Key_Up:
        case Qt::Key_Down: {
            // Past the titles.
            const int step = event->key() == Qt::Key_Up ? -1 : 1;
            int row = currentIndex().row() + step;
            while (row >= 0 && row < model_->rowCount() && model_->isTitle(row)) row += step;
            if (row >= 0 && row < model_->rowCount()) setCurrentIndex(model_->index(row, kNames));
            return;
        }
        case Qt::Key_Escape:
            event->ignore();
            return;
        default:
            // Qt takes a letter for the beginning of a name, but not with Ctrl.
            QTableView::keyPressEvent(event);
    }
}

void ShortcutTable::focusInEvent(QFocusEvent* event) {
    QTableView::focusInEvent(event);
    chooseFirst();
    viewport()->update();
}

void ShortcutTable::focusOutEvent(QFocusEvent* event) {
    setRecording(false);
    QTableView::focusOutEvent(event);
    viewport()->update();
}

void ShortcutTable::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    if (model_->rowCount() > 0) return;
    QPainter painter(viewport());
    painter.setFont(context_->theme->info13);
    painter.setPen(context_->theme->info);
    painter.drawText(viewport()->rect().adjusted(0, 40, 0, 0), Qt::AlignHCenter | Qt::AlignTop,
                     QStringLiteral("No command has this in its name or key."));
}
