#include "views/preferences/FormPane.h"

#include <QGridLayout>
#include <algorithm>

#include "views/MarkedText.h"

namespace {
constexpr int kTitleWidth = 108, kTitleGap = 18, kBetweenRows = 12, kBetweenSections = 16;
}

FormPane::FormPane(const PaneContext* context, QWidget* parent)
    : QScrollArea(parent), context_(context) {
    setUpPane(*this);
}

void FormPane::setForm(const PreferencesForm& form) {
    if (rows_.empty()) build(form);
    for (const PreferencesSection& section : form)
        for (const PreferencesRow& row : section.rows)
            if (const auto shown = rows_.find(row.id); shown != rows_.end())
                shown->second->show(row);
}

bool FormPane::isRecording() const {
    return std::any_of(rows_.begin(), rows_.end(),
                       [](const auto& row) { return row.second->isRecording(); });
}

void FormPane::build(const PreferencesForm& form) {
    QWidget* const content = makePaneContent();
    auto* const grid = new QGridLayout(content);
    const Theme& theme = *context_->theme;
    grid->setContentsMargins(0, theme.scaled(2), theme.scaled(12), theme.scaled(12));
    grid->setHorizontalSpacing(theme.scaled(kTitleGap));
    grid->setVerticalSpacing(0);
    grid->setColumnMinimumWidth(0, theme.scaled(kTitleWidth));
    grid->setColumnStretch(1, 1);
    int line = 0;
    for (const PreferencesSection& section : form) {
        if (line > 0) grid->setRowMinimumHeight(line++, theme.scaled(kBetweenSections));
        QLabel* const title = paneLabel(content, *context_, Tone::text);
        title->setFont(headingFont(theme.info13));
        title->setText(plainText(section.title));
        title->setContentsMargins(0, theme.scaled(4), 0, 0);
        grid->addWidget(title, line, 0, Qt::AlignRight | Qt::AlignTop);
        for (const PreferencesRow& row : section.rows) {
            Row* const shown = rows_[row.id] = Row::make(row, context_, content);
            grid->addWidget(shown, line++, 1, Qt::AlignTop | Qt::AlignLeft);
            if (&row != &section.rows.back())
                grid->setRowMinimumHeight(line++, theme.scaled(kBetweenRows));
        }
        if (section.explanation.empty()) continue;
        grid->setRowMinimumHeight(line++, theme.scaled(6));
        QLabel* const text = paneLabel(content, *context_, Tone::quiet);
        setPaneText(*text, plainText(section.explanation), theme.scaled(Row::kWidth));
        grid->addWidget(text, line++, 1, Qt::AlignLeft);
    }
    grid->setRowStretch(line, 1);
    setWidget(content);
}
