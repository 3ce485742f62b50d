#include "views/DiskAccessDialog.h"

#include <QHBoxLayout>

#include "views/Controls.h"

namespace {
constexpr int kPadding = 26, kTextWidth = 420;
}

DiskAccessDialog::DiskAccessDialog(const WindowSystem& system) : window_(system, kPadding) {
    const Theme& theme = window_.theme();
    window_.setObjectName(QStringLiteral("diskAccess"));
    const QFont title = theme.textFont(18, QFont::DemiBold), text = theme.textFont(14);
    const int width = theme.scaled(kTextWidth);
    QVBoxLayout& column = window_.column();
    column.addWidget(makeLabel(&window_, QStringLiteral("Trovast cannot read all of your files"),
                               title, theme.fieldText, width));
    column.addSpacing(theme.scaled(8));
    column.addWidget(makeLabel(
        &window_,
        QStringLiteral("This desktop keeps some folders from programs until you allow it. Without "
                       "that, what is in these folders is not found. You can decide later."),
        text, theme.fieldText, width));
    column.addSpacing(theme.scaled(22));
    auto* const row = new QHBoxLayout;
    row->setSpacing(theme.scaled(8));
    row->addStretch();
    auto* const later =
        new SheetButton(QStringLiteral("Later"), SheetButton::Kind::plain, &theme, &window_);
    auto* const open =
        new SheetButton(QStringLiteral("Open Settings"), SheetButton::Kind::main, &theme, &window_);
    row->addWidget(later);
    row->addWidget(open);
    column.addLayout(row);
    QObject::connect(later, &QAbstractButton::clicked, &window_, [this] {
        if (window_.buttons.later) window_.buttons.later();
    });
    QObject::connect(open, &QAbstractButton::clicked, &window_, [this] {
        if (window_.buttons.openSecurityAndPrivacy) window_.buttons.openSecurityAndPrivacy();
    });
    open->setFocus();
}

void DiskAccessDialog::show(Buttons buttons) {
    window_.buttons = std::move(buttons);
    window_.showCentred(SheetWindow::Keyboard::asked);
}

void DiskAccessDialog::hide() {
    window_.hide();
}
