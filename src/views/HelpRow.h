#pragma once
#include <QLabel>
#include <vector>

#include "screen/HelpView.h"
#include "views/Theme.h"

/// A line of the help: what is done, and at the other end the caps of the keys that do it. Ways to
/// press them stand beside each other where there is room, else below each other.
/// Owner:   HelpList. Threads: main. Units: logical pixels.
class HelpRow : public QLabel {
  public:
    enum class Look {
        full,
        ruled,    // with a line below
        compact,  // only the first way to press it
    };
    HelpRow(const HelpLine& line, Look look, const Theme* theme, QWidget* parent);
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
    double inZoom(double length) const { return length * theme_->zoom; }
    double capWidth(const QString& cap) const;
    /// Of all side by side, and of the widest.
    double keysWidth() const;
    double widestKeys() const;
    double orWidth() const;
    bool isStacked(int width) const;
    int nameWidth(int width) const;
    void drawName(QPainter& painter) const;
    void drawKeys(QPainter& painter) const;
    void drawCombination(QPainter& painter, const Combination& keys, double x, double middle) const;

    const Theme* const theme_;
    const Look look_;
    QFont capFont_;
    std::vector<Combination> keys_;
};
