#include "views/preferences/RulesPane.h"

#include <QVBoxLayout>

#include "views/Controls.h"
#include "views/MarkedText.h"
#include "views/preferences/CrossButton.h"
#include "views/preferences/EntryField.h"
#include "views/preferences/PopUpButton.h"

namespace {

constexpr int kWidth = 530, kBits = 3;

QStringList typeNames() {
    QStringList names;
    for (const std::string& name : patternTypes()) names << plainText(name);
    return names;
}

QStringList fileTypeNames() {
    return {QStringLiteral("Files"), QStringLiteral("Folders"), QStringLiteral("Bundles")};
}

}  // namespace

/// One rule. Its place in the list is told by the list.
class RulesPane::Line : public QWidget {
  public:
    Line(const PaneContext* context, size_t list, size_t at, bool hasFileTypes, QWidget* parent)
        : QWidget(parent) {
        const auto tell = [context](auto what) {
            if (context->delegate) what(*context->delegate);
        };
        const auto here = [&](const char* name) {
            return QStringLiteral("%1 of rule %2").arg(QString::fromLatin1(name)).arg(at + 1);
        };
        pattern = new EntryField(this, [=](const QString& text) {
            tell([&](auto& user) { user.patternEntered(list, at, text.toStdString()); });
        });
        pattern->setFont(context->theme->info13);
        pattern->setPlaceholderText(QStringLiteral("Name, or path in the folder"));
        pattern->setAccessibleName(here("Pattern"));
        type_ = new PopUpButton(here("Kind"), typeNames(), context->theme, this);
        type_->setPicked([=](int type) {
            tell([&](auto& user) { user.patternTypeChosen(list, at, size_t(type)); });
        });
        if (hasFileTypes) {
            fileTypes_ = new PopUpButton(here("Items"), fileTypeNames(), context->theme, this);
            fileTypes_->setPicked([=](int bit) {
                tell([&](auto& user) { user.fileTypeClicked(list, at, uint8_t(1U << bit)); });
            });
        }
        auto* const remove =
            new CrossButton(QStringLiteral("Remove rule %1").arg(at + 1), context->theme, this);
        connect(remove, &QAbstractButton::clicked, this,
                [=] { tell([&](auto& user) { user.ruleRemoved(list, at); }); });
        warning_ = paneLabel(this, *context, Tone::error);

        auto* const column = new QVBoxLayout(this);
        column->setContentsMargins({});
        column->setSpacing(context->theme->scaled(2));
        auto* const row = new QHBoxLayout;
        row->setSpacing(context->theme->scaled(6));
        row->addWidget(pattern, 1);
        row->addWidget(type_);
        if (fileTypes_) row->addWidget(fileTypes_);
        row->addWidget(remove);
        column->addLayout(row);
        column->addWidget(warning_);
        setFixedWidth(context->theme->scaled(kWidth));
    }

    void show(const PreferencesRule& rule) {
        pattern->setShown(plainText(rule.pattern));
        const QStringList types = typeNames();
        const bool isKnown = rule.patternType < size_t(types.size());
        type_->setChosen(isKnown ? types[int(rule.patternType)] : QStringLiteral("Unknown"),
                         isKnown ? std::set<int>{int(rule.patternType)} : std::set<int>());
        setPaneText(*warning_, plainText(rule.warning), width());
        if (!fileTypes_) return;
        std::set<int> ticked;
        for (int bit = 0; bit < kBits; ++bit)
            if (rule.fileTypes & (1U << bit)) ticked.insert(bit);
        fileTypes_->setChosen(
            ticked.empty() ? QStringLiteral("None") : plainText(rule.fileTypesText), ticked);
    }

    EntryField* pattern;

  private:
    PopUpButton *type_, *fileTypes_ = nullptr;
    QLabel* warning_;
};

class RulesPane::List : public QWidget {
  public:
    List(const PaneContext* context, size_t number, const PreferencesRuleList& list,
         QWidget* parent)
        : QWidget(parent), context_(context), number_(number) {
        auto* const column = new QVBoxLayout(this);
        column->setContentsMargins({});
        column->setSpacing(0);
        QLabel* const title = paneLabel(this, *context, Tone::text);
        title->setFont(headingFont(context->theme->info13));
        title->setText(plainText(list.title));
        QLabel* const explanation = paneLabel(this, *context, Tone::quiet);
        setPaneText(*explanation, plainText(list.explanation), context->theme->scaled(kWidth));
        lines_ = new QVBoxLayout;
        lines_->setSpacing(context->theme->scaled(6));
        column->addWidget(title);
        column->addSpacing(context->theme->scaled(2));
        column->addWidget(explanation);
        column->addSpacing(context->theme->scaled(10));
        column->addLayout(lines_);
        column->addSpacing(context->theme->scaled(10));
        auto* const row = new QHBoxLayout;
        row->setSpacing(context->theme->scaled(8));
        add_ = new SheetButton(QStringLiteral("Add Rule"), SheetButton::Kind::plain, context->theme,
                               this);
        reset_ = new SheetButton(QStringLiteral("Reset…"), SheetButton::Kind::plain, context->theme,
                                 this);
        row->addWidget(add_);
        row->addWidget(reset_);
        row->addStretch();
        column->addLayout(row);
        connect(add_, &QAbstractButton::clicked, this, [this] {
            isAdding_ = true;
            if (context_->delegate) context_->delegate->ruleAdded(number_);
        });
        connect(reset_, &QAbstractButton::clicked, this, [this] {
            if (context_->delegate) context_->delegate->rulesReset(number_);
        });
    }

    void show(const PreferencesRuleList& list) {
        const size_t before = shown_.size();
        while (shown_.size() > list.rules.size()) {
            // It may be the one whose button was clicked.
            if (isVisible()) add_->setFocus();
            shown_.back()->hide();
            lines_->removeWidget(shown_.back());
            shown_.back()->deleteLater();
            shown_.pop_back();
        }
        while (shown_.size() < list.rules.size()) {
            auto* const line = new Line(context_, number_, shown_.size(), list.hasFileTypes, this);
            lines_->addWidget(line);
            line->QWidget::show();
            shown_.push_back(line);
        }
        for (size_t i = 0; i < shown_.size(); ++i) shown_[i]->show(list.rules[i]);
        if (std::exchange(isAdding_, false) && shown_.size() > before)
            shown_.back()->pattern->setFocus();
        putInOrder();
    }

  private:
    /// Tab goes from line to line, and then to the buttons.
    void putInOrder() {
        QWidget* before = nullptr;
        for (Line* line : shown_)
            for (QWidget* widget : line->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
                if (widget->focusPolicy() == Qt::NoFocus) continue;
                if (before) setTabOrder(before, widget);
                before = widget;
            }
        if (before) setTabOrder(before, add_);
        setTabOrder(add_, reset_);
    }

    const PaneContext* const context_;
    const size_t number_;
    QVBoxLayout* lines_;
    SheetButton *add_, *reset_;
    std::vector<Line*> shown_;
    bool isAdding_ = false;
};

RulesPane::RulesPane(const PaneContext* context, QWidget* parent)
    : QScrollArea(parent), context_(context) {
    setUpPane(*this);
    QWidget* const content = makePaneContent();
    column_ = new QVBoxLayout(content);
    const int edge = context->theme->scaled(12);
    column_->setContentsMargins(0, context->theme->scaled(2), edge, edge);
    column_->setSpacing(context->theme->scaled(26));
    column_->setAlignment(Qt::AlignTop);
    setWidget(content);
}

void RulesPane::setRules(const std::vector<PreferencesRuleList>& lists) {
    for (size_t i = 0; i < lists.size(); ++i) {
        if (i == lists_.size()) {
            lists_.push_back(new List(context_, i, lists[i], widget()));
            column_->addWidget(lists_.back());
        }
        lists_[i]->show(lists[i]);
    }
}
