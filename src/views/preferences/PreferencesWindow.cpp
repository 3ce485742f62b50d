#include "views/preferences/PreferencesWindow.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QStackedWidget>

#include "views/SheetWindow.h"
#include "views/preferences/CrossButton.h"
#include "views/preferences/FormPane.h"
#include "views/preferences/KeyboardPane.h"
#include "views/preferences/PaneList.h"
#include "views/preferences/RulesPane.h"

namespace {

constexpr int kPadding = 18, kBetween = 18, kPaneWidth = 556, kPaneHeight = 512;

/// A hair line between the list and the pane.
class Separator : public QWidget {
  public:
    Separator(const Theme* theme, QWidget* parent) : QWidget(parent), theme_(theme) {
        setFixedWidth(1);
    }

  protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), theme_->separator); }

  private:
    const Theme* const theme_;
};

}  // namespace

class PreferencesWindow::Sheet : public SheetWindow {
  public:
    explicit Sheet(const WindowSystem& system);
    FormPane* formPane(PreferencesPane pane) {
        return pane == PreferencesPane::general ? general : search;
    }
    void showPane(PreferencesPane pane);
    void begin();
    /// What has the keyboard loses it, and with it what is typed there is entered.
    void enterAll() {
        if (QWidget* const widget = focusWidget()) widget->clearFocus();
    }

    const double madeFor = theme().zoom;  // its pieces have sizes for this text scale
    PaneContext context;
    FormPane *general, *search;
    KeyboardPane* keyboard;
    RulesPane* rules;

  protected:
    void closeAsked() override {
        if (context.delegate) context.delegate->preferencesClosed();
    }
    void themeChanged() override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void addPanes();

    QWidget* body_;
    PaneList* list_;
    QLabel* title_;
    QStackedWidget* panes_;
};

PreferencesWindow::Sheet::Sheet(const WindowSystem& system)
    : SheetWindow(system, kPadding), context{&theme(), system.keySymbols} {
    // Unlike our other windows it may lie behind those of other programs.
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    setObjectName(QStringLiteral("preferences"));
    setWindowTitle(QStringLiteral("Trovast Preferences"));
    // Not of the window itself, which takes a change of style for one of the desktop's looks.
    body_ = new QWidget(this);
    body_->setStyleSheet(paneStyle(theme()));
    column().addWidget(body_);
    list_ = new PaneList(&theme(), body_);
    list_->setChosenBlock([this](PreferencesPane pane) {
        if (context.delegate) context.delegate->paneChosen(pane);
    });
    title_ = paneLabel(body_, context, Tone::text);
    auto* const close = new CrossButton(QStringLiteral("Close"), &theme(), body_);
    close->setFocusPolicy(Qt::NoFocus);  // Escape is nearer
    connect(close, &QAbstractButton::clicked, this, [this] { closeAsked(); });
    addPanes();

    auto* const head = new QHBoxLayout;
    head->addWidget(title_);
    head->addStretch();
    head->addWidget(close);
    auto* const right = new QVBoxLayout;
    right->setSpacing(theme().scaled(12));
    right->addLayout(head);
    right->addWidget(panes_);
    auto* const all = new QHBoxLayout(body_);
    all->setContentsMargins({});
    all->setSpacing(theme().scaled(kBetween));
    all->addWidget(list_);
    all->addWidget(new Separator(&theme(), body_));
    all->addLayout(right);
}

void PreferencesWindow::Sheet::addPanes() {
    panes_ = new QStackedWidget(body_);
    panes_->setFixedSize(theme().scaled(kPaneWidth), theme().scaled(kPaneHeight));
    general = new FormPane(&context, panes_);
    search = new FormPane(&context, panes_);
    keyboard = new KeyboardPane(&context, panes_);
    rules = new RulesPane(&context, panes_);
    for (QWidget* pane : std::initializer_list<QWidget*>{general, search, keyboard, rules})
        panes_->addWidget(pane);  // in the order of PreferencesPane
}

void PreferencesWindow::Sheet::showPane(PreferencesPane pane) {
    list_->setPane(pane);
    title_->setText(PaneList::nameOf(pane));
    title_->setFont(theme().textFont(17, QFont::DemiBold));
    panes_->setCurrentIndex(int(pane));
}

void PreferencesWindow::Sheet::begin() {
    if (isVisible()) return;
    keyboard->begin();
    list_->takeKeyboard();
}

void PreferencesWindow::Sheet::themeChanged() {
    body_->setStyleSheet(paneStyle(theme()));
    renewTones(*this, theme());
}

void PreferencesWindow::Sheet::keyPressEvent(QKeyEvent* event) {
    const bool closes = event->matches(QKeySequence::Close);
    if (closes)
        closeAsked();
    else
        SheetWindow::keyPressEvent(event);
}

PreferencesWindow::PreferencesWindow(const WindowSystem& system)
    : system_(system), sheet_(std::make_unique<Sheet>(system)) {}

PreferencesWindow::~PreferencesWindow() = default;

void PreferencesWindow::setDelegate(PreferencesViewDelegate* delegate) {
    sheet_->context.delegate = delegate;
}

void PreferencesWindow::setForm(PreferencesPane pane, const PreferencesForm& form) {
    sheet_->formPane(pane)->setForm(form);
}

void PreferencesWindow::setShortcuts(const std::vector<PreferencesShortcut>& shortcuts) {
    sheet_->keyboard->setShortcuts(shortcuts);
}

void PreferencesWindow::setRules(const std::vector<PreferencesRuleList>& lists) {
    sheet_->rules->setRules(lists);
}

void PreferencesWindow::showPane(PreferencesPane pane) {
    if (!isVisible() && sheet_->theme().zoom != sheet_->madeFor) {
        PreferencesViewDelegate* const delegate = sheet_->context.delegate;
        sheet_ = std::make_unique<Sheet>(system_);
        sheet_->context.delegate = delegate;
    }
    sheet_->showPane(pane);
}

void PreferencesWindow::show() {
    sheet_->begin();
    sheet_->showCentred(SheetWindow::Keyboard::asked);
}

void PreferencesWindow::hide() {
    sheet_->enterAll();
    sheet_->hide();
}

bool PreferencesWindow::isVisible() const {
    return sheet_->isVisible();
}

bool PreferencesWindow::isRecording() const {
    return sheet_->general->isRecording() || sheet_->keyboard->isRecording();
}

QWidget* PreferencesWindow::widget() {
    return sheet_.get();
}
