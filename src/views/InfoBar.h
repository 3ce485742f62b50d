#pragma once
#include <QBasicTimer>
#include <QWidget>

#include "screen/InfoBarView.h"
#include "views/IndicatorRow.h"

struct Theme;

/// The line at the bottom of the window, and a small turning ring at its right end while something
/// goes on for longer than a moment. A message may stand over it; one that is too long moves.
/// Owner:   SearchWindow. Threads: main. Timers run only while the bar is seen and moves.
class InfoBar : public QWidget, public InfoBarView {
  public:
    static constexpr int kHeight = 20;

    InfoBar();
    /// With fonts in units.
    void setTheme(const Theme* theme);

    IndicatorsView& indicators() { return *indicators_; }

    // InfoBarView
    void setText(const std::string& text) override;
    void setToolTip(const std::string& text) override;
    void setFreshness(const std::string& words, const std::string& toolTip) override;
    void setErrorLook(bool isError) override;
    void setScanning(bool scanning) override;
    void setSearching(bool searching) override;
    void setMarquee(const std::optional<StyledText>& text) override;
    void setInset(double width) override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void showEvent(QShowEvent*) override { moveWhileSeen(); }
    void hideEvent(QHideEvent*) override { moveWhileSeen(); }
    void resizeEvent(QResizeEvent*) override { layOut(); }

  private:
    struct MarqueePiece {
        QString text;
        QFont font;
        QColor colour;
        double width;
    };
    // The bar lays itself out for a text scale of 1, from left to right.
    double zoom() const;
    int unitWidth() const { return qRound(width() / zoom()); }
    QRect mirrored(const QRect& place) const;
    QRect inPixels(const QRect& units) const;
    Qt::Alignment leading() const;
    void makePieces();
    bool isBusy() const { return isScanning_ || isSearching_; }
    void busyChanged(bool wasBusy);
    void layOut();
    int rightInset() const;
    void moveWhileSeen();
    QRect ringPlace() const;
    QRect textPlace() const;
    void paintText(QPainter& painter) const;
    void paintMarquee(QPainter& painter) const;
    void paintRing(QPainter& painter) const;

    IndicatorRow* const indicators_;  // a child
    const Theme* theme_ = nullptr;
    void showToolTip();
    /// Its name is what it says, so that a change of it is announced.
    void tellReaders();
    int freshnessWidth() const;

    QString ownToolTip_, freshnessToolTip_, freshness_;
    QString text_;
    bool isError_ = false;
    std::optional<StyledText> marquee_;
    std::vector<MarqueePiece> pieces_;  // of the marquee, as they are drawn
    double marqueeWidth_ = 0, marqueeOffset_ = 0;
    int marqueeRest_ = 0;  // frames until it moves
    int inset_ = 0;
    bool isScanning_ = false, isSearching_ = false;
    bool hasRing_ = false;
    int turn_ = 0;  // of the ring, in degrees
    QBasicTimer beforeRing_, frames_;
};
