#include "platform/linux/TerminationSignals.h"

#include <glib-unix.h>

#include <array>
#include <csignal>
#include <cstdlib>

/// By handlers, not by a blocked mask: a mask would pass on to every program that we start.
class TerminationSignals::Notifier {
  public:
    explicit Notifier(std::function<void()> quit) : quit_(std::move(quit)) {
        constexpr std::array kSignals{SIGTERM, SIGINT, SIGHUP};
        for (size_t i = 0; i < kSignals.size(); ++i)
            sources_[i] = g_unix_signal_add(kSignals[i], &Notifier::received, this);
    }
    ~Notifier() {
        for (const guint source : sources_) g_source_remove(source);
    }
    Notifier(const Notifier&) = delete;
    Notifier& operator=(const Notifier&) = delete;

  private:
    static gboolean received(gpointer notifier) {
        static_cast<Notifier*>(notifier)->quit_();
        return G_SOURCE_CONTINUE;
    }

    const std::function<void()> quit_;
    std::array<guint, 3> sources_{};
};

TerminationSignals::TerminationSignals(std::function<void()> quit) {
    // Qt's event loop is GLib's unless the user says so; then nobody would hear of the signals.
    if (!std::getenv("QT_NO_GLIB")) notifier_ = std::make_unique<Notifier>(std::move(quit));
}

TerminationSignals::~TerminationSignals() = default;
