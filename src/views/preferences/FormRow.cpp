#include <QHBoxLayout>

#include "views/Controls.h"
#include "views/HotKeyRecorder.h"
#include "views/MarkedText.h"
#include "views/preferences/CrossButton.h"
#include "views/preferences/EntryField.h"
#include "views/preferences/FormPane.h"
#include "views/preferences/PopUpButton.h"

// The rows of a form, one kind after the other.

namespace {

constexpr int kInsetOfBox = 29, kLabelWidth = 190, kNumberWidth = 110;

class ToggleRow : public FormPane::Row {
  public:
    ToggleRow(const PreferencesRow& row, const PaneContext* context, QWidget* parent)
        : Row(context, parent) {
        box_ = new SheetCheckBox(plainText(row.label), context->theme, this);
        layout()->addWidget(box_);
        addTexts(row, context->theme->scaled(kInsetOfBox));
        connect(box_, &QAbstractButton::clicked, this, [this, id = row.id](bool isOn) {
            if (context_->delegate) context_->delegate->toggled(id, isOn);
        });
    }
    void show(const PreferencesRow& row) override {
        box_->setChecked(row.isOn);
        showMessage(row);
    }

  private:
    SheetCheckBox* box_;
};

/// Its label stands before the control.
class LabelledRow : public FormPane::Row {
  protected:
    LabelledRow(const PreferencesRow& row, const PaneContext* context, QWidget* parent)
        : Row(context, parent), label_(plainText(row.label)) {}
    void addControl(const PreferencesRow& row, QWidget* control) {
        auto* const line = new QHBoxLayout;
        line->setSpacing(0);
        QLabel* const text = paneLabel(this, *context_, Tone::text);
        setPaneText(*text, label_, context_->theme->scaled(kLabelWidth));
        line->addWidget(text);
        line->addWidget(control);
        line->addStretch();
        static_cast<QVBoxLayout*>(layout())->addLayout(line);
        addTexts(row, 0);
    }
    const QString label_;
};

class NumberRow : public LabelledRow {
  public:
    NumberRow(const PreferencesRow& row, const PaneContext* context, QWidget* parent)
        : LabelledRow(row, context, parent) {
        field_ = new EntryField(this, [this, id = row.id](const QString& text) {
            if (context_->delegate) context_->delegate->numberEntered(id, text.toStdString());
        });
        field_->setFont(context->theme->info13);
        field_->setFixedWidth(context->theme->scaled(kNumberWidth));
        field_->setAlignment(Qt::AlignRight);
        field_->setAccessibleName(label_);
        addControl(row, field_);
    }
    void show(const PreferencesRow& row) override {
        field_->setShown(plainText(row.value));
        showMessage(row);
    }

  private:
    EntryField* field_;
};

class ChoiceRow : public LabelledRow {
  public:
    ChoiceRow(const PreferencesRow& row, const PaneContext* context, QWidget* parent)
        : LabelledRow(row, context, parent) {
        QStringList items;
        for (const std::string& choice : row.choices) items << plainText(choice);
        button_ = new PopUpButton(label_, items, context->theme, this);
        button_->setPicked([this, id = row.id](int item) {
            if (context_->delegate) context_->delegate->choiceMade(id, size_t(item));
        });
        addControl(row, button_);
    }
    void show(const PreferencesRow& row) override {
        if (row.chosen < row.choices.size())
            button_->setChosen(plainText(row.choices[row.chosen]), {int(row.chosen)});
        showMessage(row);
    }

  private:
    PopUpButton* button_;
};

class HotKeyRow : public FormPane::Row {
  public:
    HotKeyRow(const PreferencesRow& row, const PaneContext* context, QWidget* parent)
        : Row(context, parent) {
        QLabel* const label = paneLabel(this, *context, Tone::text);
        setPaneText(*label, plainText(row.label), context->theme->scaled(kWidth));
        const int above = context->theme->scaled(4), below = context->theme->scaled(2);
        label->setContentsMargins(0, above, 0, below);
        label->setFixedHeight(label->height() + above + below);
        layout()->addWidget(label);
        auto* const line = new QHBoxLayout;
        line->setSpacing(context->theme->scaled(6));
        recorder_ = new HotKeyRecorder(context->keySymbols, context->theme, this);
        recorder_->setRecorded([this](const KeyEvent& event) {
            if (context_->delegate) context_->delegate->hotKeyRecorded(event);
        });
        recorder_->setRecordingChanged([this](bool isRecording) {
            if (context_->delegate) context_->delegate->recordingChanged(isRecording);
        });
        remove_ = new CrossButton(QStringLiteral("Remove the Hot Key"), context->theme, this);
        connect(remove_, &QAbstractButton::clicked, this, [this] {
            if (context_->delegate) context_->delegate->hotKeyRemoved();
        });
        line->addWidget(recorder_);
        line->addWidget(remove_);
        static_cast<QVBoxLayout*>(layout())->addLayout(line);
        addTexts(row, 0);
    }
    void show(const PreferencesRow& row) override {
        recorder_->setHotKey(plainText(row.value));
        remove_->setEnabled(!row.value.empty());
        QSizePolicy keepsRoom = remove_->sizePolicy();
        keepsRoom.setRetainSizeWhenHidden(true);
        remove_->setSizePolicy(keepsRoom);
        remove_->setVisible(!row.value.empty());
        showMessage(row);
    }
    bool isRecording() const override { return recorder_->isRecording(); }

  private:
    HotKeyRecorder* recorder_;
    CrossButton* remove_;
};

class ButtonRow : public FormPane::Row {
  public:
    ButtonRow(const PreferencesRow& row, const PaneContext* context, QWidget* parent)
        : Row(context, parent) {
        auto* const button =
            new SheetButton(plainText(row.label), SheetButton::Kind::plain, context->theme, this);
        layout()->addWidget(button);
        addTexts(row, 0);
        connect(button, &QAbstractButton::clicked, this, [this, id = row.id] {
            if (context_->delegate) context_->delegate->buttonPressed(id);
        });
    }
    void show(const PreferencesRow& row) override { showMessage(row); }
};

}  // namespace

FormPane::Row::Row(const PaneContext* context, QWidget* parent)
    : QWidget(parent), context_(context) {
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(context->theme->scaled(3));
    setFixedWidth(context->theme->scaled(kWidth));
}

void FormPane::Row::addTexts(const PreferencesRow& row, int inset) {
    textWidth_ = width() - inset;
    auto* const texts = new QVBoxLayout;
    texts->setContentsMargins(inset, 0, 0, 0);
    texts->setSpacing(context_->theme->scaled(3));
    explanation_ = paneLabel(this, *context_, Tone::quiet);
    message_ = paneLabel(this, *context_, Tone::quiet);
    setPaneText(*explanation_, plainText(row.explanation), textWidth_);
    texts->addWidget(explanation_);
    texts->addWidget(message_);
    static_cast<QVBoxLayout*>(layout())->addLayout(texts);
}

void FormPane::Row::showMessage(const PreferencesRow& row) {
    setTone(*message_, row.isMessageAnError ? Tone::error : Tone::quiet, *context_->theme);
    setPaneText(*message_, plainText(row.message), textWidth_);
}

FormPane::Row* FormPane::Row::make(const PreferencesRow& row, const PaneContext* context,
                                   QWidget* parent) {
    switch (row.kind) {
        case PreferencesRow::Kind::toggle:
            return new ToggleRow(row, context, parent);
        case PreferencesRow::Kind::number:
            return new NumberRow(row, context, parent);
        case PreferencesRow::Kind::choice:
            return new ChoiceRow(row, context, parent);
        case PreferencesRow::Kind::hotKey:
            return new HotKeyRow(row, context, parent);
        case PreferencesRow::Kind::button:
            break;
    }
    return new ButtonRow(row, context, parent);
}
