#include "views/ShapedLines.h"

#include <algorithm>

namespace {

constexpr size_t kKept = 256;  // two screenfuls with metadata

std::unique_ptr<QTextLayout> shaped(const MarkedText& text, const ShapedLines::Style& style) {
    auto layout = std::make_unique<QTextLayout>(text.text, style.font);
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    option.setTextDirection(style.direction);
    // Always beside the icon, where the eye looks for it, whatever the script.
    option.setAlignment(Qt::AlignLeft | Qt::AlignAbsolute);
    layout->setTextOption(option);
    QList<QTextLayout::FormatRange> formats;
    QTextCharFormat marked;
    marked.setFont(style.markFont);
    marked.setForeground(style.markColour);
    marked.setFontUnderline(true);
    for (const TextRange& mark : text.marks)
        formats.append({int(mark.location), int(mark.length), marked});
    layout->setFormats(formats);
    layout->setCacheEnabled(true);  // else drawing does all of it again
    layout->beginLayout();
    QTextLine line = layout->createLine();
    line.setLineWidth(1e6);
    line.setPosition({0, 0});
    layout->endLayout();
    return layout;
}

}  // namespace

bool ShapedLines::Key::operator==(const Key& other) const {
    return text.text == other.text.text && text.marks == other.text.marks &&
           style.markColour == other.style.markColour && style.direction == other.style.direction &&
           style.font == other.style.font && style.markFont == other.style.markFont;
}

const QTextLayout& ShapedLines::line(const MarkedText& text, const Style& style) {
    Key key{text, style};
    auto found = lines_.find(key);
    if (found == lines_.end()) {
        if (lines_.size() >= kKept) lines_.clear();
        found = lines_.emplace(std::move(key), shaped(text, style)).first;
    }
    return *found->second;
}
