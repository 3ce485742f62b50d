#pragma once
#include <QColor>
#include <QFont>
#include <QString>
#include <QTextLayout>
#include <memory>
#include <unordered_map>

#include "views/MarkedText.h"

/// Lines of text with their glyphs chosen and placed, kept for the next time that they are drawn:
/// a list is drawn again for each row that the selection moves over.
/// Owner:   RowPainter. Threads: main.
class ShapedLines {
  public:
    struct Style {
        QFont font, markFont;
        QColor markColour;
        Qt::LayoutDirection direction;
    };
    /// Good until the next call.
    const QTextLayout& line(const MarkedText& text, const Style& style);

  private:
    struct Key {
        MarkedText text;
        Style style;
        bool operator==(const Key& other) const;
    };
    struct Hash {
        size_t operator()(const Key& key) const { return qHash(key.text.text); }
    };
    std::unordered_map<Key, std::unique_ptr<QTextLayout>, Hash> lines_;
};
