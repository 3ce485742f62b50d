#pragma once
#include <string>
#include <vector>

#include "screen/Geometry.h"
#include "screen/KeyEvent.h"
#include "screen/StyledText.h"

/// Who is told what the user does in the search field. Main thread.
class SearchFieldViewDelegate {
  public:
    virtual ~SearchFieldViewDelegate() = default;
    /// After each change of the text or of the cursor, whoever made it.
    virtual void searchFieldSelectionDidChange(TextRange selection) = 0;
    /// Before the field itself: true, the key is used up.
    virtual bool searchFieldKeyDown(const KeyEvent& event) = 0;
};

/// The search field. Main thread.
class SearchFieldView {
  public:
    virtual ~SearchFieldView() = default;
    virtual void setDelegate(SearchFieldViewDelegate* delegate) = 0;
    virtual std::u16string text() const = 0;
    virtual void setText(const std::u16string& text) = 0;
    /// How parts of the text look, ascending; what is between them is plain. Holds for the text of
    /// this moment. Leaves text, cursor and selection alone.
    virtual void setStyles(const std::vector<StyledRange>& styles) = 0;
    virtual void setPlaceholder(const std::string& text) = 0;
    virtual TextRange selection() const = 0;
    virtual void setSelection(TextRange range) = 0;
    virtual void selectAll() = 0;
    virtual void focus() = 0;
    /// Takes typing. A field that does not still shows its text.
    virtual void setEnabled(bool enabled) = 0;
    virtual bool isEnabled() const = 0;
};
