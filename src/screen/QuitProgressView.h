#pragma once

/// The small window that fills while the quit key is held. Main thread.
class QuitProgressView {
  public:
    virtual ~QuitProgressView() = default;
    /// Centred, empty, fading in over 0.2 seconds.
    virtual void show() = 0;
    /// From 0 to 1.
    virtual void setProgress(double progress) = 0;
    virtual void fadeOut() = 0;
    /// At once.
    virtual void hide() = 0;
    virtual bool isVisible() const = 0;
};
