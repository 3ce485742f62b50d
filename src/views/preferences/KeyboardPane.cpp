#include "views/preferences/KeyboardPane.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>

#include "views/Controls.h"
#include "views/preferences/ShortcutTable.h"

KeyboardPane::KeyboardPane(const PaneContext* context, QWidget* parent)
    : QWidget(parent), context_(context) {
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 2, 0, 0);
    column->setSpacing(8);
    filter_ = new QLineEdit(this);
    filter_->setFont(context->theme->info13);
    filter_->setPlaceholderText(QStringLiteral("Filter by name or key"));
    filter_->setAccessibleName(QStringLiteral("Filter"));
    filter_->setClearButtonEnabled(true);
    filter_->installEventFilter(this);
    connect(filter_, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (context_->delegate) context_->delegate->filterChanged(text.toStdString());
    });
    table_ = new ShortcutTable(context, this);
    table_->setChosenChanged([this] { chosenChanged(); });
    column->addWidget(filter_);
    column->addWidget(table_, 1);

    auto* const row = new QHBoxLayout;
    row->setSpacing(8);
    const auto add = [&](const QString& text) {
        auto* const button = new SheetButton(text, SheetButton::Kind::plain, context->theme, this);
        row->addWidget(button);
        return button;
    };
    record_ = add(QStringLiteral("Record"));
    remove_ = add(QStringLiteral("Remove"));
    reset_ = add(QStringLiteral("Reset"));
    row->addStretch();
    resetAll_ = add(QStringLiteral("Reset All…"));
    column->addLayout(row);
    connect(record_, &QAbstractButton::clicked, this, [this] { table_->record(); });
    connect(remove_, &QAbstractButton::clicked, this, [this] { table_->removeKeys(); });
    connect(reset_, &QAbstractButton::clicked, this, [this] {
        const PreferencesShortcut* const line = table_->chosen();
        if (line && context_->delegate)
            context_->delegate->shortcutReset(std::string(line->identifier));
    });
    connect(resetAll_, &QAbstractButton::clicked, this, [this] {
        if (context_->delegate) context_->delegate->allShortcutsReset();
    });
    chosenChanged();
}

void KeyboardPane::setShortcuts(const std::vector<PreferencesShortcut>& shortcuts) {
    table_->setShortcuts(shortcuts);
}

bool KeyboardPane::isRecording() const {
    return table_->isRecording();
}

void KeyboardPane::begin() {
    const QSignalBlocker quiet(filter_);
    filter_->clear();
}

void KeyboardPane::chosenChanged() {
    const PreferencesShortcut* const line = table_->chosen();
    record_->setEnabled(line != nullptr);
    remove_->setEnabled(line && !line->keys.empty());
    reset_->setEnabled(line && line->isChanged);
}

bool KeyboardPane::eventFilter(QObject* watched, QEvent* event) {
    if (watched != filter_ || event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    const bool goesDown = key == Qt::Key_Down || key == Qt::Key_Return || key == Qt::Key_Enter;
    if (goesDown) table_->setFocus();
    if (key == Qt::Key_Escape && !filter_->text().isEmpty()) {
        filter_->clear();
        return true;
    }
    return goesDown;
}
