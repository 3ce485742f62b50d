#include "views/preferences/EntryField.h"

#include <QKeyEvent>

EntryField::EntryField(QWidget* parent, std::function<void(const QString&)> entered)
    : QLineEdit(parent) {
    connect(this, &QLineEdit::editingFinished, this, [this, entered = std::move(entered)] {
        if (!isModified()) return;
        setModified(false);
        entered(text());
    });
}

void EntryField::setShown(const QString& text) {
    shown_ = text;
    if (!isModified() && text != this->text()) setText(text);
}

void EntryField::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && isModified()) {
        setText(shown_);  // which is no change of the user's
        selectAll();
        return;
    }
    QLineEdit::keyPressEvent(event);
    // The window is not to be closed by the key that ends an entry.
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) event->accept();
}
