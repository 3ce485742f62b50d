#include "views/HelpSheet.h"

#include <QApplication>
#include <QLineEdit>
#include <QPainter>
#include <QScreen>
#include <QTimer>
#include <utility>

#include "views/Controls.h"
#include "views/HelpList.h"
#include "views/MarkedText.h"
#include "views/Scroller.h"
#include "views/SheetWindow.h"

namespace {

constexpr int kPadding = 24, kPassingPadding = 18, kEdge = 24;  // the last: to the screen's edge
constexpr int kColumnWidth = 390, kPassingColumn = 290, kPassingColumns = 3;
constexpr int kFilterHeight = 34, kMostList = 560, kLeastList = 160, kBelow = 14;

QRect availableAround(const QRect& place) {
    const QScreen* const at = QGuiApplication::screenAt(place.center());
    return (at ? at : QGuiApplication::primaryScreen())
        ->availableGeometry()
        .adjusted(kEdge / 2, kEdge / 2, -kEdge / 2, -kEdge / 2);
}

QPoint movedInto(const QRect& screen, QPoint corner, QSize size) {
    const auto bounded = [](int at, int low, int high) {
        return std::max(low, std::min(at, high));
    };
    return {bounded(corner.x(), screen.left(), screen.right() + 1 - size.width()),
            bounded(corner.y(), screen.top(), screen.bottom() + 1 - size.height())};
}

/// As many as fit into a width; a single one may be narrower.
HelpList::Columns columnsIn(int width, HelpList::Columns wanted) {
    while (wanted.count > 1 && HelpList::widthOf(wanted) > width) wanted.count--;
    wanted.width -= std::max(0, HelpList::widthOf(wanted) - width);
    return wanted;
}

QFont titleFont(const Theme& theme) {
    return theme.textFont(17, QFont::DemiBold);
}

/// A line of text in a rounded frame.
class FilterEdit : public QLineEdit {
  public:
    FilterEdit(const Theme* theme, QWidget* parent) : QLineEdit(parent), theme_(theme) {
        setFrame(false);
        setContextMenuPolicy(Qt::NoContextMenu);
        setPlaceholderText(QStringLiteral("Type to filter, Escape closes"));
        setAccessibleName(QStringLiteral("Filter"));
        takeTheme();
    }
    void takeTheme() {
        setFixedHeight(theme_->scaled(kFilterHeight));
        setTextMargins(theme_->scaled(8), 0, theme_->scaled(8), 0);
        setFont(theme_->textFont(15));
        setPalette(theme_->textColours(palette()));
    }

  protected:
    void paintEvent(QPaintEvent* event) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        drawFocusRing(painter, QRectF(rect()).adjusted(1, 1, -1, -1), 7, *theme_);
        painter.end();
        QLineEdit::paintEvent(event);
    }

  private:
    const Theme* const theme_;
};

}  // namespace

// ---- The sheet

class HelpSheet::Page : public SheetWindow {
  public:
    Page(const WindowSystem& system, std::function<QRect()> searchWindow)
        : SheetWindow(system, kPadding), searchWindow_(std::move(searchWindow)) {
        setObjectName(QStringLiteral("help"));
        title_ = makeLabel(this, {}, titleFont(theme()), theme().fieldText);
        filter_ = new FilterEdit(&theme(), this);
        list_ = new HelpList(HelpList::Look::full, &theme(), this);
        if (isRightToLeft()) title_->setAlignment(Qt::AlignRight | Qt::AlignAbsolute);
        column().addWidget(title_);
        column().addSpacing(theme().scaled(12));
        column().addWidget(filter_);
        column().addSpacing(theme().scaled(16));
        column().addWidget(list_);
        connect(filter_, &QLineEdit::textChanged, this, [this](const QString& text) {
            if (delegate) delegate->helpFilterDidChange(text.toStdString());
        });
    }
    void open(const HelpContent& content) {
        filter_->clear();
        title_->setText(plainText(content.title));
        setWindowTitle(title_->text());
        const QRect screen = availableAround(searchWindow_());
        const double zoom = theme().zoom;
        columns_ = columnsIn(screen.width() - 2 * (theme().scaled(kPadding) + kEdge),
                             {2, theme().scaled(kColumnWidth), zoom});
        list_->setContent(content, columns_);
        list_->setFixedHeight(kLeastList);
        fit();
        const int room = screen.height() - 2 * kEdge - (sheet().height() - kLeastList);
        const int most = std::max(kLeastList, std::min(room, theme().scaled(kMostList)));
        list_->setFixedHeight(std::clamp(list_->contentHeight(), kLeastList, most));
        showCentred(Keyboard::asked);
        filter_->setFocus(Qt::OtherFocusReason);
    }
    void setContent(const HelpContent& content) { list_->setContent(content, columns_); }
    HelpList& list() { return *list_; }

    HelpViewDelegate* delegate = nullptr;

  protected:
    void closeAsked() override {
        if (delegate) delegate->helpWantsToClose();
    }
    QPoint cornerFor(QSize sheet) const override {
        const QRect window = searchWindow_();
        const QPoint corner(window.center().x() - sheet.width() / 2, window.top());
        return movedInto(availableAround(window), corner, sheet);
    }
    void themeChanged() override {
        setLabelColour(*title_, theme().fieldText);
        title_->setFont(titleFont(theme()));
        filter_->takeTheme();
        list_->renew();
    }
    void changeEvent(QEvent* event) override {
        SheetWindow::changeEvent(event);
        if (event->type() != QEvent::ActivationChange || isActiveWindow()) return;
        // Back to the search window by a click on it. The keyboard of another program is no reason.
        QTimer::singleShot(0, this, [this] {
            const QWidget* const active = QApplication::activeWindow();
            if (isVisible() && active && active != this) closeAsked();
        });
    }

  private:
    const std::function<QRect()> searchWindow_;
    QLabel* title_ = nullptr;
    FilterEdit* filter_ = nullptr;
    HelpList* list_ = nullptr;
    HelpList::Columns columns_{1, 0, 1};
};

// ---- The passing one

class HelpSheet::Passing : public SheetWindow {
  public:
    Passing(const WindowSystem& system, std::function<QRect()> searchWindow)
        : SheetWindow(system, kPassingPadding), searchWindow_(std::move(searchWindow)) {
        setObjectName(QStringLiteral("helpForSelection"));
        setWindowFlag(Qt::WindowDoesNotAcceptFocus);
        setWindowFlag(Qt::WindowTransparentForInput);
        title_ = makeLabel(this, {}, titleFont(theme()), theme().fieldText);
        list_ = new HelpList(HelpList::Look::compact, &theme(), this);
        if (isRightToLeft()) title_->setAlignment(Qt::AlignRight | Qt::AlignAbsolute);
        column().addWidget(title_);
        column().addSpacing(theme().scaled(10));
        column().addWidget(list_);
    }
    void open(const HelpContent& content) {
        const QRect screen = availableAround(searchWindow_());
        const int room = screen.width() - 2 * (theme().scaled(kPassingPadding) + kEdge);
        const auto columns =
            columnsIn(room, {kPassingColumns, theme().scaled(kPassingColumn), theme().zoom});
        list_->setContent(content, columns);
        list_->setFixedHeight(std::min(list_->contentHeight(), screen.height() - 4 * kEdge));
        title_->setText(title_->fontMetrics().elidedText(plainText(content.title), Qt::ElideMiddle,
                                                         HelpList::widthOf(columns)));
        showCentred(Keyboard::left);
    }

  protected:
    QPoint cornerFor(QSize sheet) const override {
        // Where it hides least: below, or else over the last rows.
        const QRect window = searchWindow_();
        const QPoint corner(window.center().x() - sheet.width() / 2, window.bottom() + kBelow);
        return movedInto(availableAround(window), corner, sheet);
    }
    void themeChanged() override {
        setLabelColour(*title_, theme().fieldText);
        title_->setFont(titleFont(theme()));
        list_->renew();
    }

  private:
    const std::function<QRect()> searchWindow_;
    QLabel* title_ = nullptr;
    HelpList* list_ = nullptr;
};

// ---- Both

HelpSheet::HelpSheet(WindowSystem system, std::function<QRect()> searchWindow)
    : system_(std::move(system)),
      page_(std::make_unique<Page>(system_, searchWindow)),
      passing_(std::make_unique<Passing>(system_, searchWindow)) {}

HelpSheet::~HelpSheet() = default;

void HelpSheet::setDelegate(HelpViewDelegate* delegate) {
    page_->delegate = delegate;
}

void HelpSheet::show(Kind kind, const HelpContent& content) {
    hide();
    if (kind == Kind::passing) {
        passing_->open(content);
        return;
    }
    before_ = QApplication::activeWindow();
    page_->open(content);
}

void HelpSheet::setContent(const HelpContent& content) {
    if (page_->isVisible()) page_->setContent(content);
}

void HelpSheet::scroll(Scroll how) {
    page_->list().scroll(how);
}

void HelpSheet::hide() {
    passing_->hide();
    if (!page_->isVisible()) return;
    page_->hide();
    if (!before_ || !before_->isVisible()) return;
    before_->activateWindow();
    if (system_.activate) system_.activate(before_->winId());
}

std::optional<HelpView::Kind> HelpSheet::shown() const {
    if (page_->isVisible()) return Kind::sheet;
    if (passing_->isVisible()) return Kind::passing;
    return std::nullopt;
}

QWidget* HelpSheet::widget(Kind kind) {
    return kind == Kind::sheet ? static_cast<QWidget*>(page_.get()) : passing_.get();
}
