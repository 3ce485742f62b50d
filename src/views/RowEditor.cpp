#include "views/RowEditor.h"

#include <QKeyEvent>
#include <QPainter>

#include "views/Theme.h"

RowEditor::RowEditor(QWidget* parent,
                     std::function<bool(RowEditCommand, const std::u16string&)> command,
                     std::function<void()> ended)
    : QLineEdit(parent), command_(std::move(command)), ended_(std::move(ended)) {
    setAccessibleName(QStringLiteral("New name"));
    setFrame(false);
    constexpr int kOwnPadding = 2;  // QLineEdit's, which cannot be set
    setTextMargins(kPadding - kOwnPadding, 0, kPadding - kOwnPadding, 0);
}

void RowEditor::setTheme(const Theme& theme, bool isPath) {
    setFont(theme.zoomed(isPath ? theme.pathFont : theme.nameFont));
    frame_ = theme.accent;
    setPalette(theme.textColours(palette()));
}

void RowEditor::paintEvent(QPaintEvent* event) {
    constexpr double kRadius = 4;
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(frame_, 1));
        painter.setBrush(palette().window());
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
    }
    QLineEdit::paintEvent(event);
}

void RowEditor::begin(const RowEdit& edit) {
    setText(QString::fromStdU16String(edit.text));
    show();
    setFocus(Qt::OtherFocusReason);
    setSelection(int(edit.selection.location), int(edit.selection.length));
}

void RowEditor::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn && event->key() != Qt::Key_Escape) {
        QLineEdit::keyPressEvent(event);
        return;
    }
    event->accept();
    const auto command = isReturn ? RowEditCommand::insertNewline : RowEditCommand::cancelOperation;
    if (!command_(command, text().toStdU16String())) ended_();
}

void RowEditor::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason) ended_();  // its own menu is no other place
}
