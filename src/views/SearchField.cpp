#include "views/SearchField.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QTextCharFormat>
#include <algorithm>

#include "screen/linuxSecondKeys.h"
#include "views/KeyTranslation.h"
#include "views/MarkedText.h"
#include "views/Theme.h"

namespace {

constexpr int kTextLeft = 60;  // in line with the rows' texts
constexpr int kRightInset = 6;

void drawMagnifier(QPainter& painter, const QPointF& centre, const QColor& colour) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, 2.2, Qt::SolidLine, Qt::RoundCap));
    painter.setBrush(Qt::NoBrush);
    const QPointF lens = centre + QPointF(-1.8, -1.8);
    painter.drawEllipse(lens, 6.6, 6.6);
    painter.drawLine(lens + QPointF(4.9, 4.9), lens + QPointF(10.2, 10.2));
}

}  // namespace

class SearchField::Edit : public QLineEdit {
  public:
    Edit(QWidget* parent, KeySymbols keySymbols)
        : QLineEdit(parent), keySymbols_(std::move(keySymbols)) {
        setFrame(false);
        setAttribute(Qt::WA_MacShowFocusRect, false);
        setAccessibleName(QStringLiteral("Search"));
        const auto changed = [this] { tellOfChange(); };
        QObject::connect(this, &QLineEdit::textChanged, this, changed);
        QObject::connect(this, &QLineEdit::cursorPositionChanged, this, changed);
        QObject::connect(this, &QLineEdit::selectionChanged, this, changed);
    }

    TextRange selection() const {
        if (!hasSelectedText()) return {size_t(cursorPosition()), 0};
        return {size_t(selectionStart()), size_t(selectionLength())};
    }

    void setTheme(const Theme* theme) {
        theme_ = theme;
        setFont(theme->field);
        layOut();
        setPalette(theme->textColours(palette()));
        showStyles();
    }

    void setStyles(const std::vector<StyledRange>& styles) {
        if (styles.empty() && styles_.empty()) return;
        styles_ = styles;
        showStyles();
    }

    SearchFieldViewDelegate* delegate = nullptr;

  protected:
    bool event(QEvent* event) override {
        if (event->type() == QEvent::KeyPress) {
            auto* key = static_cast<QKeyEvent*>(event);
            // Before Qt moves the focus for Tab.
            if (isUsedUp(withSecondKeysTranslated(keyEventFrom(*key, keySymbols_)))) {
                event->accept();
                return true;
            }
            const bool isTab = key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab;
            if (isTab || isCombinationWithText(*key)) return true;
        }
        return QLineEdit::event(event);
    }
    void changeEvent(QEvent* event) override {
        QLineEdit::changeEvent(event);
        if (event->type() == QEvent::LayoutDirectionChange) layOut();
    }
    void inputMethodEvent(QInputMethodEvent* event) override {
        preedit_ = event->preeditString();
        preeditAttributes_ = event->attributes();
        QLineEdit::inputMethodEvent(event);
        if (!styles_.empty()) showStyles();
    }
    void paintEvent(QPaintEvent* event) override {
        QLineEdit::paintEvent(event);
        if (!theme_) return;
        QPainter painter(this);
        const double centre = 32 * theme_->zoom;
        painter.translate(isRightToLeft() ? width() - centre : centre, height() / 2.0);
        painter.scale(theme_->zoom, theme_->zoom);
        drawMagnifier(painter, {0, 0}, theme_->symbol);
    }

  private:
    void layOut() {
        const double zoom = theme_ ? theme_->zoom : 1;
        const int begin = qRound((kTextLeft - 2) * zoom), end = qRound(kRightInset * zoom);
        // Beside the symbol, whatever the script.
        setAlignment((isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignAbsolute |
                     Qt::AlignVCenter);
        setTextMargins(isRightToLeft() ? end : begin, 0, isRightToLeft() ? begin : end, 0);
    }
    bool isUsedUp(const KeyEvent& key) {
        // A modifier going down is no key stroke.
        if (key.kind == KeyEvent::Kind::flagsChanged) return false;
        return delegate && delegate->searchFieldKeyDown(key);
    }

    /// The one way to colour parts of a QLineEdit: as an input method marks what it composes.
    /// Nothing is committed, and what is being composed stays as it is.
    void showStyles() {
        if (!theme_ || isReadOnly()) return;
        QList<QInputMethodEvent::Attribute> attributes = preeditAttributes_;
        const auto cursor = int(cursorPosition());
        for (const StyledRange& each : styles_) {
            QTextCharFormat format;
            format.setForeground(colourOf(each.style));
            // Places count from the cursor, and what is composed stands at the cursor.
            const int begin = int(each.range.location) - cursor;
            const int end = begin + int(each.range.length);
            const int composed = int(preedit_.size());
            const auto add = [&](int from, int to) {
                if (from < to)
                    attributes.append({QInputMethodEvent::TextFormat, from, to - from, format});
            };
            add(begin, std::min(end, 0));
            add(std::max(begin, 0) + composed, end + composed);
        }
        QInputMethodEvent event(preedit_, attributes);
        QLineEdit::inputMethodEvent(&event);
    }
    const QColor& colourOf(TermStyle style) const {
        switch (style) {
            case TermStyle::regexp:
                return theme_->regexpTerm;
            case TermStyle::error:
                return theme_->errorTerm;
            case TermStyle::incomplete:
                return theme_->incompleteTerm;
            case TermStyle::plain:
                break;
        }
        return theme_->fieldText;
    }

    /// One change comes as up to three signals, the first of which finds everything in place.
    void tellOfChange() {
        const TextRange now = selection();
        if (text() == toldText_ && now == toldSelection_) return;
        toldText_ = text();
        toldSelection_ = now;
        if (delegate) delegate->searchFieldSelectionDidChange(now);
    }

    const KeySymbols keySymbols_;
    const Theme* theme_ = nullptr;
    std::vector<StyledRange> styles_;
    QString preedit_;
    QList<QInputMethodEvent::Attribute> preeditAttributes_;
    QString toldText_;
    TextRange toldSelection_;
};

SearchField::SearchField(QWidget* parent, KeySymbols keySymbols)
    : edit_(new Edit(parent, std::move(keySymbols))) {}

QWidget* SearchField::widget() const {
    return edit_;
}

void SearchField::setTheme(const Theme* theme) {
    edit_->setTheme(theme);
}

void SearchField::setDelegate(SearchFieldViewDelegate* delegate) {
    edit_->delegate = delegate;
}

std::u16string SearchField::text() const {
    return edit_->text().toStdU16String();
}

void SearchField::setText(const std::u16string& text) {
    edit_->setText(QString::fromStdU16String(text));
}

void SearchField::setStyles(const std::vector<StyledRange>& styles) {
    edit_->setStyles(styles);
}

void SearchField::setPlaceholder(const std::string& text) {
    edit_->setPlaceholderText(plainText(text));
}

TextRange SearchField::selection() const {
    return edit_->selection();
}

void SearchField::setSelection(TextRange range) {
    edit_->setSelection(int(range.location), int(range.length));
}

void SearchField::selectAll() {
    edit_->selectAll();
}

void SearchField::focus() {
    edit_->setFocus(Qt::OtherFocusReason);
}

void SearchField::setEnabled(bool enabled) {
    // Not the widget as a whole: keys still reach the delegate, and the text keeps its colour.
    edit_->setReadOnly(!enabled);
}

bool SearchField::isEnabled() const {
    return !edit_->isReadOnly();
}
