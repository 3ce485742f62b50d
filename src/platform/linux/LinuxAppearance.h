#pragma once
#include <QObject>
#include <QTimer>

#include "platform/Appearance.h"

/// Light or dark, as the desktop's palette is.
/// Owner:   main, after QApplication is made. Threads: main.
class LinuxAppearance : public QObject, public Appearance {
  public:
    LinuxAppearance();
    bool isDark() const override;
    [[nodiscard]] Subscription observe(std::function<void()> block) override;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QTimer settle_;  // one change of the desktop's settings comes as several events
    Signal<> changed_;
};
