#pragma once
#include <QPointer>
#include <QWidget>

#include "screen/SearchFieldView.h"
#include "views/KeyTranslation.h"

class QLineEdit;
struct Theme;

/// The search field: the symbol of the mode and one line of large text over the whole width. Keys
/// go to the delegate first, Tab too. Owner:   SearchWindow. Threads: main.
class SearchField : public SearchFieldView {
  public:
    static constexpr int kHeight = 43;

    SearchField(QWidget* parent, KeySymbols keySymbols);
    QWidget* widget() const;
    void setTheme(const Theme* theme);

    // SearchFieldView
    void setDelegate(SearchFieldViewDelegate* delegate) override;
    std::u16string text() const override;
    void setText(const std::u16string& text) override;
    void setStyles(const std::vector<StyledRange>& styles) override;
    void setPlaceholder(const std::string& text) override;
    TextRange selection() const override;
    void setSelection(TextRange range) override;
    void selectAll() override;
    void focus() override;
    void setEnabled(bool enabled) override;
    bool isEnabled() const override;

  private:
    class Edit;
    Edit* const edit_;  // belongs to the parent widget
};
