#include "platform/linux/TerminationSignals.h"

#include <pthread.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <csignal>

class TerminationSignals::Notifier {
  public:
    Notifier(int signals, std::function<void()> quit)
        : signals_(signals), notifier_(signals, QSocketNotifier::Read) {
        QObject::connect(&notifier_, &QSocketNotifier::activated, [this, quit = std::move(quit)] {
            signalfd_siginfo info;
            if (read(signals_, &info, sizeof info) == sizeof info) quit();
        });
    }
    ~Notifier() { close(signals_); }

  private:
    const int signals_;
    QSocketNotifier notifier_;
};

TerminationSignals::TerminationSignals(std::function<void()> quit) {
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) sigaddset(&set, signal);
    // For this thread and all that it makes: whoever blocks them all, the descriptor gets them.
    if (pthread_sigmask(SIG_BLOCK, &set, nullptr) != 0) return;
    const int signals = signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK);
    if (signals < 0) {
        pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
        return;
    }
    notifier_ = std::make_unique<Notifier>(signals, std::move(quit));
}

TerminationSignals::~TerminationSignals() = default;
