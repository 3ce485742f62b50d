#pragma once
#include <QAbstractButton>
#include <functional>
#include <set>

struct Theme;

/// A button that shows what is chosen, and a menu of all there is when it is pressed.
/// Owner:   the pane that it stands in. Threads: main. The theme outlives it.
class PopUpButton : public QAbstractButton {
  public:
    PopUpButton(const QString& name, QStringList items, const Theme* theme, QWidget* parent);
    void setPicked(std::function<void(int item)> picked) { picked_ = std::move(picked); }
    /// What stands on it, and which items are ticked.
    void setChosen(const QString& text, std::set<int> ticked);
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void openMenu();

    const QString name_;
    const QStringList items_;
    const Theme* const theme_;
    std::function<void(int)> picked_;
    std::set<int> ticked_;
};
