#include "views/PreviewBody.h"

#include <QFontDatabase>
#include <QPainter>
#include <algorithm>

#include "views/MarkedText.h"

namespace {

using Kind = PreviewContent::Kind;

constexpr int kHeader = 44, kHeaderIcon = 32, kGap = 12;
constexpr int kFactLine = 21, kFactNames = 96, kLeastMiddle = 120;
constexpr int kLargeIcon = 96, kListIcon = 18, kListLine = 26, kTextPixels = 12;
constexpr double kTextRadius = 6;

QString readable(const std::string& text) {
    QString lines = QString::fromStdString(text);
    return plainLines(lines.replace(QLatin1Char('\t'), QStringLiteral("    ")).toStdString());
}

}  // namespace

PreviewBody::PreviewBody(QWidget* parent)
    : QWidget(parent), text_(new QPlainTextEdit(this)), list_(new QListWidget(this)) {
    setAccessibleName(QStringLiteral("Preview"));
    text_->setReadOnly(true);
    text_->setTextInteractionFlags(Qt::NoTextInteraction);
    text_->setUndoRedoEnabled(false);
    text_->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    list_->setSelectionMode(QAbstractItemView::NoSelection);
    list_->setTextElideMode(Qt::ElideMiddle);
    list_->setUniformItemSizes(true);
    list_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    for (QAbstractScrollArea* area :
         {static_cast<QAbstractScrollArea*>(text_), static_cast<QAbstractScrollArea*>(list_)}) {
        area->setFocusPolicy(Qt::NoFocus);
        // The wheel moves them; the style's bars would stand out.
        area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        area->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        area->setFrameShape(QFrame::NoFrame);
        area->viewport()->setAutoFillBackground(false);
        area->hide();
    }
}

void PreviewBody::setTheme(const Theme* theme) {
    theme_ = theme;
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    fixed.setPixelSize(theme->scaled(kTextPixels));
    text_->setFont(fixed);
    const int icon = scaled(kListIcon);
    list_->setIconSize({icon, icon});
    QPalette colours = theme->textColours(palette());
    colours.setColor(QPalette::Button, theme->background);
    text_->setPalette(colours);
    list_->setPalette(colours);
    list_->setFont(theme->info13);
    layOut();
    update();
}

void PreviewBody::setContent(const PreviewContent& content) {
    content_ = content;
    setAccessibleDescription(QString::fromStdString(content.name));
    text_->setPlainText(content.kind == Kind::text ? readable(content.text) : QString());
    list_->clear();
    if (content.kind == Kind::folder) fillList();
    text_->setVisible(content.kind == Kind::text);
    list_->setVisible(content.kind == Kind::folder && list_->count() > 0);
    layOut();
    update();
}

void PreviewBody::fillList() {
    for (const PreviewContent::Entry& entry : content_.entries) {
        const QPixmap icon = icons_.pixmap(entry.iconName, scaled(kListIcon), devicePixelRatioF());
        auto* item = new QListWidgetItem(QIcon(icon), plainText(entry.name));
        item->setSizeHint({0, scaled(kListLine)});
        list_->addItem(item);
    }
}

int PreviewBody::scaled(int units) const {
    return theme_ ? theme_->scaled(units) : units;
}

uint32_t PreviewBody::picturePixels() const {
    const int side = std::max({width(), height() - scaled(kHeader), kLeastMiddle});
    return uint32_t(std::clamp(qRound(side * devicePixelRatioF()), 1, 2048));
}

void PreviewBody::layOut() {
    const int facts = int(content_.facts.size()) * scaled(kFactLine);
    facts_ = QRect(0, height() - facts, width(), facts);
    int bottom = facts > 0 ? facts_.top() - scaled(kGap) : height();
    message_ = {};
    if (theme_ && !content_.message.empty()) {
        const QFontMetrics metrics(theme_->info13);
        const QRect room(0, 0, width(), 4 * metrics.lineSpacing());
        const int lines =
            metrics.boundingRect(room, Qt::TextWordWrap, plainText(content_.message)).height();
        message_ = QRect(0, bottom - lines, width(), lines);
        bottom = message_.top() - scaled(kGap);
    }
    const int header = scaled(kHeader);
    middle_ = QRect(0, header, width(), std::max(0, bottom - header));
    text_->setGeometry(middle_.adjusted(scaled(6), scaled(4), -scaled(2), -scaled(4)));
    list_->setGeometry(middle_);
}

QString PreviewBody::elided(const QString& text, const QFont& font, int width) const {
    const QFontMetricsF metrics(font);
    return elidedAroundMarks(
               {text, {}}, width,
               [&metrics](const QString& part) { return metrics.horizontalAdvance(part); })
        .text;
}

void PreviewBody::paintEvent(QPaintEvent*) {
    if (!theme_) return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    int x = 0;
    const int icon = scaled(kHeaderIcon);
    if (!content_.iconName.empty()) {
        painter.drawPixmap(0, 0, icons_.pixmap(content_.iconName, icon, devicePixelRatioF()));
        x = icon + scaled(kGap);
    }
    const QFont font = headingFont(theme_->pathFont);
    painter.setFont(font);
    painter.setPen(theme_->fieldText);
    painter.drawText(
        QRect(x, 0, width() - x, icon), Qt::AlignVCenter | Qt::AlignLeft,
        elided(plainText(content_.name, theme_->hasControlPictures), font, width() - x));
    drawMiddle(painter);
    painter.setFont(theme_->info13);
    painter.setPen(theme_->info);
    if (!message_.isEmpty())
        painter.drawText(message_, Qt::TextWordWrap | Qt::AlignHCenter,
                         plainText(content_.message));
    drawFacts(painter);
}

void PreviewBody::drawMiddle(QPainter& painter) {
    if (middle_.isEmpty()) return;
    if (text_->isVisibleTo(this)) {
        painter.setPen(QPen(theme_->separator, 1));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(middle_).adjusted(0.5, 0.5, -0.5, -0.5), kTextRadius,
                                kTextRadius);
        return;
    }
    if (list_->isVisibleTo(this)) return;
    QPixmap shown;
    if (content_.kind == Kind::picture && content_.picture)
        shown = fitted(*content_.picture, middle_.size(), devicePixelRatioF());
    else if (!content_.iconName.empty())
        shown = icons_.pixmap(content_.iconName, scaled(kLargeIcon), devicePixelRatioF());
    if (content_.kind == Kind::loading) painter.setOpacity(0.35);
    const QSizeF size = QSizeF(shown.size()) / shown.devicePixelRatioF();
    const QPointF corner = QRectF(middle_).center() - QPointF(size.width(), size.height()) / 2;
    painter.drawPixmap(corner.toPoint(), shown);
    painter.setOpacity(1);
    if (content_.kind != Kind::picture) return;
    painter.setPen(QPen(theme_->border, 1));  // a white page has an edge
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(corner.toPoint(), size).adjusted(0.5, 0.5, -0.5, -0.5));
}

void PreviewBody::drawFacts(QPainter& painter) {
    if (content_.facts.empty()) return;
    painter.setPen(QPen(theme_->separator, 1));
    const double between = facts_.top() - scaled(kGap) / 2 + 0.5;
    painter.drawLine(QPointF(0, between), QPointF(width(), between));
    const QFont& font = theme_->info13;
    const int names = scaled(kFactNames), line = scaled(kFactLine);
    const int value = names + scaled(kGap);
    int y = facts_.top();
    for (const PreviewContent::Fact& fact : content_.facts) {
        painter.setPen(theme_->info);
        painter.drawText(QRect(0, y, names, line), Qt::AlignRight | Qt::AlignVCenter,
                         QString::fromStdString(fact.name));
        painter.setPen(theme_->fieldText);
        painter.drawText(QRect(value, y, width() - value, line), Qt::AlignLeft | Qt::AlignVCenter,
                         elided(plainText(fact.value), font, width() - value));
        y += line;
    }
}
