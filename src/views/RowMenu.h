#pragma once
#include <QAction>
#include <QMenu>
#include <QPointer>
#include <vector>

#include "screen/MenuView.h"
#include "views/IconCache.h"
#include "views/RowMenuStyle.h"
#include "views/WindowSystem.h"

/// The context menu. Icons of applications come once their submenu is open.
/// Owner:   main. Threads: main.
class RowMenu : public MenuView {
  public:
    explicit RowMenu(WindowSystem system);
    ~RowMenu() override;

    // MenuView
    void popUp(const std::vector<MenuItem>& items, const Look& look, const Place& place,
               Ended ended) override;
    void update(const std::vector<MenuItem>& items) override;
    void close() override;
    bool isOpen() const override { return ended_ != nullptr; }

    /// Null: none is open.
    QMenu* menu() const { return menu_; }

  private:
    struct Wanted {
        QPointer<QAction> action;
        std::string icon;
    };
    QMenu* makeMenu(QWidget* parent);
    void fill(QMenu& menu, const std::vector<MenuItem>& items, const std::string& submenu);
    QAction* addItem(QMenu& menu, const MenuItem& item, const std::string& submenu);
    /// Of those that are enabled.
    void chooseFirst();
    void showIcons();
    void finish();

    const WindowSystem system_;
    RowMenuStyle style_;
    QPointer<QMenu> menu_;
    bool isByKey_ = false;  // who opened it
    IconCache icons_;
    std::vector<Wanted> wanted_;  // of applications
    std::optional<MenuChoice> choice_;
    Ended ended_;  // while it is open
};
