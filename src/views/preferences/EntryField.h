#pragma once
#include <QLineEdit>
#include <functional>

/// A field whose text counts when it is left, or at Return. Escape takes back what was typed.
/// Owner:   the pane that it stands in. Threads: main.
class EntryField : public QLineEdit {
  public:
    EntryField(QWidget* parent, std::function<void(const QString&)> entered);
    /// What counts now; what the user is about to type over it stays.
    void setShown(const QString& text);

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QString shown_;
};
