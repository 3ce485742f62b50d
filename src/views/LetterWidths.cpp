#include "views/LetterWidths.h"

LetterWidths::LetterWidths(const QFont& font) : metrics_(font) {
    for (char16_t c = 0; c < ascii_.size(); ++c)
        ascii_[c] = float(metrics_.horizontalAdvance(QChar(c)));
}

double LetterWidths::of(char32_t letter) const {
    constexpr qsizetype kKept = 4096;
    const auto found = others_.constFind(letter);
    if (found != others_.constEnd()) return double(*found);
    if (others_.size() >= kKept) others_.clear();
    const auto width = float(metrics_.horizontalAdvance(QString::fromUcs4(&letter, 1)));
    others_.insert(letter, width);
    return double(width);
}

double LetterWidths::operator()(const QString& text) const {
    double width = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.unicode() < ascii_.size())
            width += double(ascii_[c.unicode()]);
        else if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            width += of(QChar::surrogateToUcs4(c, text[++i]));
        else
            width += of(c.unicode());
    }
    return width;
}
