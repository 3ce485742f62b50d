#include "views/PreviewPanel.h"

#include <QWindow>
#include <algorithm>

namespace {

constexpr int kGap = 10, kPadding = 18;
constexpr int kLeastWidth = 260, kMostWidth = 440, kHeight = 520;

}  // namespace

PreviewPanel::PreviewPanel(const WindowSystem& system, Neighbour neighbour)
    : system_(system), neighbour_(std::move(neighbour)), body_(new PreviewBody(&panel_)) {
    panel_.setObjectName(QStringLiteral("previewPanel"));
    panel_.setAccessibleName(QStringLiteral("Preview"));
    // In a Wayland session, whether by X11 or not, only a tool tip leaves the keyboard for sure.
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        panel_.setWindowFlags(Qt::ToolTip | Qt::FramelessWindowHint);
    panel_.setWindowFlag(Qt::WindowDoesNotAcceptFocus);
    panel_.setAttribute(Qt::WA_ShowWithoutActivating);
    panel_.setFocusPolicy(Qt::NoFocus);
    panel_.setEvents({.lookChanged = [this] { body_->clearIcons(); }});
}

void PreviewPanel::setTheme(const Theme* theme) {
    zoom_ = theme->zoom;
    panel_.setTheme(theme);
    body_->setTheme(theme);
    if (panel_.isVisible()) place();
}

QRect PreviewPanel::placeBeside(const QRect& sheet, const QRect& screen, double zoom) {
    const int most = std::min(qRound(kMostWidth * zoom), screen.width() - 2 * kGap);
    const int right = screen.right() - sheet.right() - 2 * kGap;
    const int left = sheet.left() - screen.left() - 2 * kGap;
    const int width = std::min(std::max({left, right, qRound(kLeastWidth * zoom)}), most);
    QRect place(0, sheet.top(), width,
                std::min(qRound(kHeight * zoom), screen.height() - 2 * kGap));
    if (right >= left)
        place.moveLeft(sheet.right() + 1 + kGap);
    else
        place.moveRight(sheet.left() - 1 - kGap);
    // Where there is no room on either side it covers a part of the window.
    place.moveLeft(std::max(screen.left(), std::min(place.left(), screen.right() + 1 - width)));
    place.moveTop(std::max(screen.top() + kGap,
                           std::min(place.top(), screen.bottom() - kGap - place.height())));
    return place;
}

void PreviewPanel::place() {
    const QRect sheet = placeBeside(neighbour_.sheet(), neighbour_.screen(), zoom_);
    panel_.setGeometry(sheet.marginsAdded(panel_.shadowMargins()));
    panel_.setSheetSize(sheet.size());
    const int side = qRound(kPadding * zoom_), above = qRound((kPadding - 4) * zoom_);
    body_->setGeometry(panel_.sheet().adjusted(side, above, -side, -above));
    panel_.letClicksThrough(system_);
}

void PreviewPanel::neighbourMoved() {
    if (panel_.isVisible()) place();
}

void PreviewPanel::show() {
    if (panel_.isVisible()) return;
    panel_.setComposited(system_.isComposited && system_.isComposited());
    place();
    const WId window = panel_.winId();
    if (QWidget* const above = neighbour_.window())
        panel_.windowHandle()->setTransientParent(above->windowHandle());
    if (system_.prepare) {
        const QMarginsF shadow = QMarginsF(panel_.shadowMargins()) * panel_.devicePixelRatioF();
        system_.prepare(window, shadow.toMargins(), Qt::transparent);
    }
    panel_.show();
    panel_.letClicksThrough(system_);
}
