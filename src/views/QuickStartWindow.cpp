#include "views/QuickStartWindow.h"

#include <QHBoxLayout>
#include <QKeyEvent>

#include "views/Controls.h"
#include "views/HotKeyRecorder.h"
#include "views/MarkedText.h"
#include "views/SheetWindow.h"
#include "views/TryRow.h"

namespace {

constexpr int kPadding = 34, kWidth = 560;

}  // namespace

class QuickStartWindow::Page : public SheetWindow {
  public:
    explicit Page(const WindowSystem& system);
    void setContent(const QuickStartContent& content);
    /// Without a hot key, the first keys pressed are to be it.
    void begin();

    QuickStartViewDelegate* delegate = nullptr;
    const double madeFor = theme().zoom;  // its pieces have sizes for this text scale

  protected:
    void closeAsked() override {
        if (delegate) delegate->quickStartClosed();
    }
    void themeChanged() override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QLabel* addLabel(const QString& text, const QFont& font, const QColor& colour, int below);
    void addTries();
    void addEnd();
    void replaceTries(const std::vector<QuickStartContent::Try>& tries);
    void showMessage();

    QLabel *title_ = nullptr, *subtitle_ = nullptr, *keyHeading_ = nullptr, *message_ = nullptr;
    QLabel *triesHeading_ = nullptr, *promise_ = nullptr;
    HotKeyRecorder* recorder_ = nullptr;
    QVBoxLayout* tries_ = nullptr;
    std::vector<TryRow*> rows_;
    SheetButton* start_ = nullptr;
    QString messageText_;
    bool messageIsError_ = false, hasHotKey_ = false;
};

QLabel* QuickStartWindow::Page::addLabel(const QString& text, const QFont& font,
                                         const QColor& colour, int below) {
    QLabel* const label = makeLabel(this, text, font, colour, theme().scaled(kWidth));
    column().addWidget(label);
    column().addSpacing(theme().scaled(below));
    return label;
}

QuickStartWindow::Page::Page(const WindowSystem& system) : SheetWindow(system, kPadding) {
    setObjectName(QStringLiteral("quickStart"));
    setWindowTitle(QStringLiteral("Welcome to Trovast"));
    const Theme& look = theme();
    title_ = addLabel(QStringLiteral("Trovast"), look.field, look.fieldText, 4);
    subtitle_ = addLabel(
        QStringLiteral("Type a few letters of a name. Files and folders come up as you type."),
        look.textFont(15), look.info, 28);
    const QFont heading = look.textFont(14, QFont::DemiBold);
    keyHeading_ = addLabel(QStringLiteral("Call it up from anywhere"), heading, look.fieldText, 8);
    recorder_ = new HotKeyRecorder(system.keySymbols, &theme(), this);
    recorder_->setRecordingChanged([this](bool isRecording) {
        if (delegate) delegate->hotKeyRecording(isRecording);
    });
    recorder_->setRecorded([this](const KeyEvent& event) {
        if (delegate) delegate->hotKeyRecorded(event);
    });
    column().addWidget(recorder_);
    column().addSpacing(look.scaled(6));
    message_ = addLabel({}, look.info13, look.info, 22);
    triesHeading_ =
        addLabel(QStringLiteral("Try it on your own files"), heading, look.fieldText, 6);
    addTries();
    column().addSpacing(look.scaled(26));
    addEnd();
}

void QuickStartWindow::Page::begin() {
    if (hasHotKey_)
        start_->setFocus();
    else
        recorder_->record();
}

void QuickStartWindow::Page::addTries() {
    tries_ = new QVBoxLayout;
    tries_->setSpacing(theme().scaled(2));
    column().addLayout(tries_);
}

void QuickStartWindow::Page::addEnd() {
    auto* const row = new QHBoxLayout;
    promise_ = makeLabel(
        this, QStringLiteral("Nothing leaves this computer; the index is kept in memory only."),
        theme().info13, theme().info);
    start_ = new SheetButton(QStringLiteral("Start"), SheetButton::Kind::main, &theme(), this);
    connect(start_, &QAbstractButton::clicked, this, [this] { closeAsked(); });
    row->addWidget(promise_);
    row->addStretch();
    row->addWidget(start_);
    column().addLayout(row);
}

void QuickStartWindow::Page::replaceTries(const std::vector<QuickStartContent::Try>& tries) {
    for (TryRow* row : rows_) delete row;
    rows_.clear();
    for (size_t i = 0; i < tries.size(); ++i) {
        auto* const row =
            new TryRow(plainText(tries[i].query), plainText(tries[i].explanation), &theme(), this);
        connect(row, &QAbstractButton::clicked, this, [this, i] {
            if (delegate) delegate->tryChosen(i);
        });
        tries_->addWidget(row);
        rows_.push_back(row);
    }
    triesHeading_->setVisible(!tries.empty());
    QWidget* before = recorder_;
    for (TryRow* row : rows_) {
        setTabOrder(before, row);
        before = row;
    }
    setTabOrder(before, start_);
}

void QuickStartWindow::Page::showMessage() {
    message_->setText(messageText_);
    message_->setFixedHeight(std::max(message_->heightForWidth(message_->width()),
                                      QFontMetrics(theme().info13).height()));
    setLabelColour(*message_, messageIsError_ ? theme().error : theme().info);
}

void QuickStartWindow::Page::setContent(const QuickStartContent& content) {
    const auto triesShown = [&] {
        if (rows_.size() != content.tries.size()) return false;
        for (size_t i = 0; i < rows_.size(); ++i)
            if (rows_[i]->text() != plainText(content.tries[i].query) ||
                rows_[i]->accessibleDescription() != plainText(content.tries[i].explanation))
                return false;
        return true;
    };
    if (!triesShown()) replaceTries(content.tries);
    recorder_->setHotKey(plainText(content.hotKey));
    messageText_ = plainText(content.hotKeyMessage);
    messageIsError_ = content.isHotKeyMessageAnError;
    hasHotKey_ = !content.hotKey.empty();
    showMessage();
    if (isVisible()) fit();
}

void QuickStartWindow::Page::themeChanged() {
    for (QLabel* label : {title_, keyHeading_, triesHeading_})
        setLabelColour(*label, theme().fieldText);
    for (QLabel* label : {subtitle_, promise_}) setLabelColour(*label, theme().info);
    showMessage();
}

void QuickStartWindow::Page::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn)
        closeAsked();
    else if (event->key() == Qt::Key_Down)
        focusNextChild();
    else if (event->key() == Qt::Key_Up)
        focusPreviousChild();
    else
        SheetWindow::keyPressEvent(event);
}

QuickStartWindow::QuickStartWindow(const WindowSystem& system)
    : system_(system), page_(std::make_unique<Page>(system)) {}

QuickStartWindow::~QuickStartWindow() = default;

void QuickStartWindow::setDelegate(QuickStartViewDelegate* delegate) {
    page_->delegate = delegate;
}

void QuickStartWindow::setContent(const QuickStartContent& content) {
    content_ = content;
    page_->setContent(content);
}

void QuickStartWindow::show() {
    if (!isVisible() && page_->theme().zoom != page_->madeFor) {
        QuickStartViewDelegate* const delegate = page_->delegate;
        page_ = std::make_unique<Page>(system_);
        page_->delegate = delegate;
        page_->setContent(content_);
    }
    page_->begin();
    page_->showCentred(SheetWindow::Keyboard::asked);
}

void QuickStartWindow::hide() {
    page_->hide();
}

bool QuickStartWindow::isVisible() const {
    return page_->isVisible();
}

QWidget* QuickStartWindow::widget() {
    return page_.get();
}
