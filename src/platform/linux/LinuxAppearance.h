#pragma once
#include <QObject>
#include <QTimer>

#include "platform/Appearance.h"
#include "platform/linux/PortalSettings.h"

/// Looks as the desktop's settings say, or else its palette and fonts. After a change each of our
/// windows gets a ThemeChange.
/// Owner:   main, after QApplication is made. Threads: main.
class LinuxAppearance : public QObject, public Appearance {
  public:
    LinuxAppearance();
    bool isDark() const override;
    bool wantsHighContrast() const override;
    bool wantsLessMotion() const override;
    double textScale() const override;
    [[nodiscard]] Subscription observe(std::function<void()> block) override;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QTimer settle_;  // one change of the desktop's settings comes as several events
    Signal<> changed_;
    PortalSettings portal_;
};
