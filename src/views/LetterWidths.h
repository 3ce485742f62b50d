#pragma once
#include <QFontMetricsF>
#include <QHash>
#include <QString>
#include <array>

/// How wide texts of one font are, letter by letter, each letter measured once. Shaping a whole
/// text for its exact width costs fifty times as much, and rows ask for hundreds of widths; kerning
/// makes the difference, which is a pixel or two. Owner:   RowPainter. Threads: main. Units: the
/// font's.
class LetterWidths {
  public:
    explicit LetterWidths(const QFont& font);
    double operator()(const QString& text) const;

  private:
    double of(char32_t letter) const;

    const QFontMetricsF metrics_;
    std::array<float, 128> ascii_;
    mutable QHash<char32_t, float> others_;
};
