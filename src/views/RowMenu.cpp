#include "views/RowMenu.h"

#include <QApplication>
#include <QKeyEvent>
#include <QTimer>
#include <algorithm>
#include <utility>

#include "views/MarkedText.h"

namespace {

constexpr int kWidestTitle = 340;  // at a text scale of 1

QString menuText(const MenuItem& item, const Theme& theme) {
    const QFontMetrics metrics(theme.info13);
    QString title =
        metrics.elidedText(plainText(item.title), Qt::ElideMiddle, theme.scaled(kWidestTitle));
    title.replace(QLatin1Char('&'), QStringLiteral("&&"));  // one would mark a letter
    return item.keys.empty() ? title : title + QLatin1Char('\t') + plainText(item.keys);
}

void showState(QAction& action, const MenuItem& item) {
    action.setEnabled(item.isEnabled);
    action.setToolTip(plainToolTip(item.toolTip));
}

/// Its keys can be pressed by the program.
class KeyedMenu : public QMenu {
  public:
    using QMenu::QMenu;
    /// The first line that is enabled; its submenu stays shut.
    void chooseFirst() {
        setActiveAction(nullptr);
        QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
        keyPressEvent(&down);
    }
};

}  // namespace

RowMenu::RowMenu(WindowSystem system) : system_(std::move(system)) {
    icons_.setLoadedBlock([this] { showIcons(); });
}

RowMenu::~RowMenu() {
    delete menu_;
}

QMenu* RowMenu::makeMenu(QWidget* parent) {
    const bool isRounded = system_.isComposited && system_.isComposited();
    auto* const menu = new KeyedMenu(parent);
    menu->setAttribute(Qt::WA_TranslucentBackground, isRounded);
    menu->setWindowFlag(Qt::FramelessWindowHint);
    menu->setWindowFlag(Qt::NoDropShadowWindowHint, !isRounded);
    menu->setStyle(&style_);
    menu->setFont(style_.theme().info13);
    menu->setToolTipsVisible(true);
    return menu;
}

void RowMenu::popUp(const std::vector<MenuItem>& items, const Look& look, const Place& place,
                    Ended ended) {
    close();
    DesktopLook desktop = system_.lookNow();
    desktop.isDark = look.isDark;
    style_.setTheme(Theme::make(look.hue, desktop, QApplication::font()),
                    system_.isComposited && system_.isComposited());
    choice_.reset();
    ended_ = std::move(ended);
    QMenu* const menu = makeMenu(QApplication::activeWindow());
    menu_ = menu;
    menu->setAccessibleName(QStringLiteral("Actions"));
    fill(*menu, items, {});
    // What was picked is told after the menu has hidden itself.
    QObject::connect(menu, &QMenu::aboutToHide, menu, [this, menu] {
        QTimer::singleShot(0, menu, [this, menu] {
            if (menu == menu_) finish();
        });
    });
    menu->popup(QPoint(qRound(place.corner.x), qRound(place.corner.y)));
    isByKey_ = place.isByKey;
    if (isByKey_) chooseFirst();
}

void RowMenu::chooseFirst() {
    static_cast<KeyedMenu*>(menu_.data())->chooseFirst();
}

QAction* RowMenu::addItem(QMenu& menu, const MenuItem& item, const std::string& submenu) {
    const QString text = menuText(item, style_.theme());
    if (item.isSubmenu) {
        QMenu* const inner = makeMenu(&menu);
        inner->setTitle(text);
        fill(*inner, item.items, item.identifier);
        QObject::connect(inner, &QMenu::aboutToShow, inner, [this] { showIcons(); });
        return menu.addMenu(inner);
    }
    QAction* const action = menu.addAction(text);
    QObject::connect(action, &QAction::triggered, action,
                     [this, choice = MenuChoice{submenu, item.identifier}] { choice_ = choice; });
    if (!item.iconName.empty()) {
        wanted_.push_back({action, item.iconName});
    }
    return action;
}

void RowMenu::fill(QMenu& menu, const std::vector<MenuItem>& items, const std::string& submenu) {
    for (const MenuItem& item : items) {
        if (item.title.empty())
            menu.addSeparator();
        else
            showState(*addItem(menu, item, submenu), item);
    }
}

void RowMenu::update(const std::vector<MenuItem>& items) {
    if (!menu_) return;
    const auto actions = menu_->actions();
    const size_t count = std::min(items.size(), size_t(actions.size()));
    for (size_t i = 0; i < count; ++i) {
        QAction& action = *actions[qsizetype(i)];
        if (QMenu* const inner = action.menu()) {
            inner->clear();
            fill(*inner, items[i].items, items[i].identifier);
            if (inner->isVisible()) showIcons();
        }
        if (!action.isSeparator()) showState(action, items[i]);
    }
    const QAction* const chosen = menu_->activeAction();
    if (!chosen || chosen->isEnabled()) return;
    if (QMenu* const inner = chosen->menu()) inner->hide();
    // The pointer stays where it is: nothing else is chosen by it.
    if (isByKey_)
        chooseFirst();
    else
        menu_->setActiveAction(nullptr);
}

/// What has been loaded; the rest is asked for.
void RowMenu::showIcons() {
    if (!menu_) return;
    const double scale = menu_->devicePixelRatioF();
    for (const Wanted& wanted : wanted_) {
        if (!wanted.action) continue;
        const QPixmap picture = icons_.applicationPixmap(wanted.icon, style_.icon(), scale);
        wanted.action->setIcon(
            picture.isNull() ? icons_.pixmapAtOnce("application-x-executable", style_.icon(), scale)
                             : picture);
    }
}

void RowMenu::close() {
    if (!isOpen()) return;
    if (menu_) menu_->hide();
    finish();
}

void RowMenu::finish() {
    if (menu_) menu_->deleteLater();
    menu_.clear();
    wanted_.clear();
    icons_.clear();  // the theme may be another one next time
    const auto choice = std::exchange(choice_, std::nullopt);
    if (const Ended ended = std::exchange(ended_, nullptr)) ended(choice);
}
