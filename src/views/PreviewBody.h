#pragma once
#include <QListWidget>
#include <QPlainTextEdit>
#include <QWidget>

#include "screen/PreviewView.h"
#include "views/IconCache.h"
#include "views/Theme.h"

/// What stands in the preview's panel: name, the content itself, a message, and a table of facts.
/// Owner:   PreviewPanel. Threads: main. Units: logical pixels.
class PreviewBody : public QWidget {
  public:
    explicit PreviewBody(QWidget* parent);
    void setTheme(const Theme* theme);
    void setContent(const PreviewContent& content);
    /// The longest side that a picture can have here, in device pixels.
    uint32_t picturePixels() const;
    /// When the icon theme has changed.
    void clearIcons() { icons_.clear(); }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent*) override { layOut(); }

  private:
    void layOut();
    /// A length at a text scale of 1, as it is at this one.
    int scaled(int units) const;
    void fillList();
    void drawMiddle(QPainter& painter);
    void drawFacts(QPainter& painter);
    QString elided(const QString& text, const QFont& font, int width) const;

    const Theme* theme_ = nullptr;
    PreviewContent content_;
    IconCache icons_;
    QPlainTextEdit* const text_;  // these belong to the widget
    QListWidget* const list_;
    QRect middle_, message_, facts_;
};
