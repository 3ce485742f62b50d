#pragma once
#include <QLabel>

#include "screen/HelpView.h"

struct Theme;

/// A line of the help: what is done, and at the other end the caps of the keys that do it. Ways to
/// press them stand beside each other where there is room, else below each other.
/// Owner:   HelpList. Threads: main. Units: logical pixels.
class HelpRow : public QLabel {
  public:
    /// ruled: a line is drawn below it.
    enum class Rule { none, below };
    HelpRow(const HelpLine& line, Rule rule, const Theme* theme, QWidget* parent);
    /// How wide it would like to be, and how high it then is.
    int naturalWidth() const;
    int heightForWidth(int width) const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    struct Combination {
        QStringList caps;
        double width;
    };
    double capWidth(const QString& cap) const;
    double keysWidth() const;  // side by side
    bool isStacked(int width) const;
    double widestKeys() const;
    int nameWidth(int width) const;
    void drawCombination(QPainter& painter, const Combination& keys, double x, double middle) const;

    const Theme* const theme_;
    const Rule rule_;
    QFont capFont_;
    std::vector<Combination> keys_;
};
