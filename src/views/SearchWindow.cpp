#include "views/SearchWindow.h"

#include <QApplication>
#include <QCursor>
#include <QLineEdit>
#include <QScreen>
#include <QStyle>
#include <utility>

namespace {

constexpr int kResizing = 100;        // milliseconds
constexpr int kScreensSettle = 1000;  // these too
constexpr int kLeastWidth = 320;
constexpr QSize kFirstSize(638, 64);
constexpr int kFullHeight = 555;  // of a sheet with ten rows

/// Qt counts y downward from the desktop's top left, Rect upward from here: the bottom left of the
/// primary screen.
QPoint origin() {
    const QRect primary = QGuiApplication::primaryScreen()->geometry();
    return {primary.x(), primary.y() + primary.height()};
}

/// The one that shares most with a place; none, if none does.
const QScreen* screenAround(const QRect& place) {
    const QScreen* best = nullptr;
    qint64 most = 0;
    for (const QScreen* each : QGuiApplication::screens()) {
        const QRect shared = each->geometry() & place;
        const qint64 area = qint64(shared.width()) * shared.height();
        if (shared.isEmpty() || area <= most) continue;
        best = each;
        most = area;
    }
    return best;
}

}  // namespace

// The program counts for a text scale of 1: all that holds text is larger by the scale.
Rect SearchWindow::toRect(const QRect& place) const {
    const double zoom = theme_.zoom;
    const QPoint from = origin();
    return {(place.x() - from.x()) / zoom, (from.y() - place.y() - place.height()) / zoom,
            place.width() / zoom, place.height() / zoom};
}

QRect SearchWindow::toQRect(const Rect& rect) const {
    const double zoom = theme_.zoom;
    const QPoint from = origin();
    return {from.x() + qRound(rect.x * zoom), qRound(from.y() - (rect.y + rect.height) * zoom),
            qRound(rect.width * zoom), qRound(rect.height * zoom)};
}

SearchWindow::SearchWindow(WindowSystem system)
    : system_(std::move(system)),
      field_(std::make_unique<SearchField>(&panel_, system_.keySymbols)),
      tableClip_(new QWidget(&panel_)),
      table_(new ResultTable),
      infoBar_(new InfoBar),
      buttons_(new WindowButtons(&panel_)),
      preview_(system_, {.sheet = [this] { return toQRect(frame()); },
                         .screen = [this] { return screen()->availableGeometry(); },
                         .window = [this] { return &panel_; }}) {
    table_->setParent(tableClip_);
    infoBar_->setParent(&panel_);
    panel_.setEvents({.activationChanged =
                          [this](bool hasKeyboard) {
                              table_->setHasKeyboard(hasKeyboard);
                              if (delegate_ && hasKeyboard) delegate_->windowDidBecomeKey();
                          },
                      .moved = [this] { moved(); },
                      .dragBegan = [this] { settling_.stop(); },
                      .closeAsked =
                          [this] {
                              if (delegate_) delegate_->windowWillClose();
                          },
                      .lookChanged = [this] { renewTheme(); }});
    buttons_->setEvents({.close =
                             [this] {
                                 if (delegate_) delegate_->windowWillClose();
                             },
                         .sticky =
                             [this] {
                                 if (delegate_) delegate_->stickyButtonClicked();
                             }});
    table_->setLinkFollower(system_.followLink);
    // The keyboard stays in the field: what it moves through is told there.
    table_->setAnnouncer(
        [this](const QString& words) { field_->widget()->setAccessibleDescription(words); });
    makeGrips();
    watchScreens();
    renewTheme();
    panel_.setComposited(system_.isComposited && system_.isComposited());
    panel_.setFocusProxy(field_->widget());
    placeSheet({QPoint(), kFirstSize * theme_.zoom}, Room::renewed);
    resizing_.setDuration(kResizing);
    resizing_.setEasingCurve(QEasingCurve::OutCubic);
    QObject::connect(&resizing_, &QVariantAnimation::finished, &panel_,
                     [this] { animationEnded(); });
    QObject::connect(&resizing_, &QVariantAnimation::valueChanged, &panel_,
                     [this](const QVariant& place) { placeSheet(place.toRect(), Room::kept); });
}

SearchWindow::~SearchWindow() {
    panel_.setEvents({});
}

void SearchWindow::renewTheme() {
    DesktopLook look = system_.lookNow();
    if (look_) look.isDark = look_->isDark;
    const double before = theme_.zoom;
    theme_ =
        Theme::make(look_ ? look_->background.hue : Theme::kOwnHue, look, QApplication::font());
    unitTheme_ = theme_.inUnits();
    panel_.setTheme(&theme_);
    field_->setTheme(&theme_);
    buttons_->setTheme(&unitTheme_);
    table_->setTheme(&unitTheme_);
    infoBar_->setTheme(&unitTheme_);
    preview_.setTheme(&theme_);
    if (theme_.zoom == before || panel_.sheet().isEmpty()) return;
    resizing_.stop();
    QRect sheet = believedPlace();
    sheet.setSize(sheet.size() * (theme_.zoom / before));
    placeSheet(sheet, Room::renewed);
    animationEnded();
}

void SearchWindow::setLook(const ModeLook& look) {
    if (look_ && *look_ == look) return;
    look_ = look;
    renewTheme();
}

void SearchWindow::makeGrips() {
    const auto began = [this] {
        if (isResizing()) setFrame(frame(), false);
        settling_.stop();
        dragged_ = sheetPlace();
    };
    leftGrip_ = new EdgeGrip(&panel_, {began, [this](int x) { drag(true, x); }});
    rightGrip_ = new EdgeGrip(&panel_, {began, [this](int x) { drag(false, x); }});
    setResizable(false);
}

void SearchWindow::setResizable(bool resizable) {
    leftGrip_->setVisible(resizable);
    rightGrip_->setVisible(resizable);
}

void SearchWindow::watchScreens() {
    settling_.setSingleShot(true);
    settling_.setInterval(kScreensSettle);
    QObject::connect(&settling_, &QTimer::timeout, &panel_, [this] { settled(); });
    const auto changed = [this] { settling_.start(); };
    const auto watch = [this, changed](const QScreen* screen) {
        QObject::connect(screen, &QScreen::geometryChanged, &panel_, changed);
    };
    for (const QScreen* screen : QGuiApplication::screens()) watch(screen);
    QObject::connect(qGuiApp, &QGuiApplication::screenAdded, &panel_, watch);
    QObject::connect(qGuiApp, &QGuiApplication::screenAdded, &panel_, changed);
    QObject::connect(qGuiApp, &QGuiApplication::screenRemoved, &panel_, changed);
    QObject::connect(qGuiApp, &QGuiApplication::primaryScreenChanged, &panel_, changed);
}

void SearchWindow::drag(bool leftEdge, int distance) {
    QRect sheet = dragged_;
    const int least = theme_.scaled(kLeastWidth);
    if (leftEdge)
        sheet.setLeft(std::min(sheet.left() + distance, sheet.right() + 1 - least));
    else
        sheet.setRight(std::max(sheet.right() + distance, sheet.left() + least - 1));
    placeSheet(sheet, Room::kept);
}

void SearchWindow::moved() {
    if (isPlacing_) return;
    // When monitors come and go, others push the window about: that is no place of the user's. It
    // counts as standing where it was, and goes back there when they have come to rest.
    if (settling_.isActive())
        settling_.start();
    else
        own_ = sheetPlace();
    tellOfPlace();
}

void SearchWindow::settled() {
    told_ = isResizing() ? frame() : toRect(own_);
    if (!isResizing() && sheetPlace() != own_) placeSheet(own_, Room::kept);
}

void SearchWindow::tellOfPlace() {
    if (isPlacing_) return;
    preview_.neighbourMoved();
    const Rect now = frame();
    const Rect before = told_;
    const bool isResized = now.width != before.width || now.height != before.height;
    if (settling_.isActive() && !isResized) return;
    told_ = now;
    if (!delegate_) return;
    if (isResized) delegate_->windowDidResize();
    if (now.x != before.x || now.y + now.height != before.y + before.height)
        delegate_->windowDidMove();
}

void SearchWindow::animationEnded() {
    layOut();
    for (const auto& ended : std::exchange(ended_, {})) ended();
}

void SearchWindow::layOut() {
    const QRect sheet = panel_.sheet();
    const int fieldHeight = qRound(SearchField::kHeight * theme_.zoom);
    const int barHeight = qRound(InfoBar::kHeight * theme_.zoom);
    const int barTop = sheet.height() - barHeight;
    const QRect fieldPlace(sheet.x(), sheet.y(), sheet.width(), fieldHeight);
    const int ofButtons = qRound(WindowButtons::kWidth * theme_.zoom);
    const auto place = [&](QWidget* part, const QRect& inField) {
        part->setGeometry(QStyle::visualRect(panel_.layoutDirection(), fieldPlace, inField));
    };
    place(field_->widget(), fieldPlace.adjusted(0, 0, -ofButtons, 0));
    place(buttons_, fieldPlace.adjusted(fieldPlace.width() - ofButtons, 0, 0, 0));
    infoBar_->setGeometry(sheet.x(), sheet.y() + barTop, sheet.width(), barHeight);
    const int tableWidth = sheet.width() - 2 * Panel::kBorder;
    tableClip_->setGeometry(sheet.x() + Panel::kBorder, sheet.y() + fieldHeight, tableWidth,
                            std::max(0, barTop - fieldHeight));
    // While the window moves to a new height the table has it already, behind the clip: what the
    // program scrolls to now must be in sight then.
    const int height = isResizing() ? target_.height() : sheet.height();
    table_->setGeometry(0, 0, tableWidth, std::max(0, height - barHeight - fieldHeight));
    leftGrip_->setGeometry(sheet.x(), sheet.y(), EdgeGrip::kWidth, sheet.height());
    rightGrip_->setGeometry(sheet.right() + 1 - EdgeGrip::kWidth, sheet.y(), EdgeGrip::kWidth,
                            sheet.height());
}

const QScreen* SearchWindow::screen() const {
    // Qt tells of a move before it knows of the other screen.
    if (const QScreen* const around = panel_.isVisible() ? screenAround(sheetPlace()) : nullptr)
        return around;
    const QScreen* atCursor = QGuiApplication::screenAt(QCursor::pos());
    return atCursor ? atCursor : QGuiApplication::primaryScreen();
}

QRect SearchWindow::sheetPlace() const {
    const QRect sheet = panel_.sheet();
    return sheet.translated(panel_.pos());
}

QRect SearchWindow::roomFor(const QRect& sheet) const {
    // A native window that changes its size shows for a moment what nobody has painted yet. Where
    // the part that is not used can neither be seen nor clicked, it keeps room for a full list.
    const QMargins shadow = panel_.shadowMargins();
    QRect room = sheet;
    if (shadow.isNull() || system_.takeClicksIn) {
        const int bottom = screen()->availableGeometry().bottom() - shadow.bottom();
        room.setBottom(std::max(
            sheet.bottom(), std::min(sheet.top() + qRound(kFullHeight * theme_.zoom) - 1, bottom)));
    }
    return room.marginsAdded(shadow);
}

void SearchWindow::makeRoom(const QRect& sheet, Room room) {
    const QRect needed = roomFor(sheet), now = panel_.geometry();
    const bool isLargeEnough = now.topLeft() == needed.topLeft() && now.width() == needed.width() &&
                               now.bottom() >= needed.bottom();
    if (room == Room::renewed || !isLargeEnough) panel_.setGeometry(needed);
}

void SearchWindow::placeSheet(const QRect& sheet, Room room) {
    isPlacing_ = true;
    own_ = sheet;
    makeRoom(sheet, room);
    panel_.setSheetSize(sheet.size());
    isPlacing_ = false;
    layOut();
    panel_.letClicksThrough(system_);
    tellOfPlace();
}

void SearchWindow::prepareWindow() {
    const QRect sheet = believedPlace();
    panel_.setComposited(system_.isComposited && system_.isComposited());
    placeSheet(sheet, Room::renewed);
    if (!system_.prepare) return;
    const QMarginsF shadow = QMarginsF(panel_.shadowMargins()) * panel_.devicePixelRatioF();
    const QColor ground = shadow.isNull() ? theme_.background : QColor(Qt::transparent);
    system_.prepare(panel_.winId(), shadow.toMargins(), ground);
}

void SearchWindow::show() {
    if (!panel_.isVisible()) prepareWindow();
    panel_.show();
    panel_.letClicksThrough(system_);
    panel_.raise();
    panel_.activateWindow();
    if (system_.activate) system_.activate(panel_.winId());
}

void SearchWindow::hide() {
    if (isResizing()) setFrame(frame(), false);
    panel_.hide();
}

Rect SearchWindow::frame() const {
    if (isResizing()) return toRect(target_);
    return toRect(believedPlace());
}

void SearchWindow::setFrame(Rect frame, bool animated, std::function<void()> ended) {
    const QRect wanted = toQRect(frame);
    if (isResizing() && animated && wanted == target_) {
        if (ended) ended_.push_back(std::move(ended));
        return;
    }
    resizing_.stop();
    // What waited for another place waits no longer.
    auto waiting = std::exchange(ended_, {});
    if (ended) ended_.push_back(std::move(ended));
    target_ = wanted;
    const QRect now = sheetPlace();
    const bool moves = animated && !theme_.lessMotion && panel_.isVisible() && target_ != now;
    if (moves) {
        isPlacing_ = true;
        makeRoom(target_, Room::kept);  // once, not for each step
        isPlacing_ = false;
        resizing_.setStartValue(now);
        resizing_.setEndValue(target_);
        resizing_.start();
        layOut();
        tellOfPlace();
    } else {
        placeSheet(target_, panel_.isVisible() ? Room::kept : Room::renewed);
    }
    for (const auto& block : waiting) block();
    if (!moves) animationEnded();
}

Rect SearchWindow::screenFrame() const {
    return toRect(screen()->geometry());
}

Rect SearchWindow::visibleScreenFrame() const {
    return toRect(screen()->availableGeometry());
}

Rect SearchWindow::visibleScreenFrameFor(Rect place) const {
    const QScreen* const around = screenAround(toQRect(place));
    return toRect((around ? around : screen())->availableGeometry());
}
