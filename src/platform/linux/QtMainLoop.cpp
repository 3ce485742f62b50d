#include "platform/linux/QtMainLoop.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <algorithm>
#include <mutex>

/// Posts one event, however often it is rung before that event arrives.
struct QtMainLoop::Doorbell {
    std::mutex mutex;
    QObject* receiver = nullptr;
    bool rung = false;

    void ring() {
        std::lock_guard lock(mutex);
        if (rung || !receiver) return;
        rung = true;
        QCoreApplication::postEvent(receiver, new QEvent(QEvent::User));
    }
    void answer() {
        std::lock_guard lock(mutex);
        rung = false;
    }
    void unhook() {
        std::lock_guard lock(mutex);
        receiver = nullptr;
    }
};

class QtMainLoop::Receiver : public QObject {
  public:
    Receiver(MainQueue& queue, const Clock& clock) : queue_(queue), clock_(clock) {
        timer_.setSingleShot(true);
        timer_.setTimerType(Qt::PreciseTimer);
        connect(&timer_, &QTimer::timeout, this, [this] { run(); });
    }
    void setDoorbell(Doorbell* doorbell) { doorbell_ = doorbell; }
    void run() {
        queue_.runPending();
        rearm();
    }

  protected:
    bool event(QEvent* event) override {
        if (event->type() != QEvent::User) return QObject::event(event);
        doorbell_->answer();  // first: what comes in from now on needs a new event
        run();
        return true;
    }

  private:
    void rearm() {
        using std::chrono::milliseconds;
        const auto due = queue_.nextDue();
        if (!due) {
            timer_.stop();
            return;
        }
        // Rounded up: a timer that fires early would find nothing to run, again and again.
        const auto wait = std::chrono::ceil<milliseconds>(*due - clock_.now());
        timer_.start(std::clamp(wait, milliseconds(0), milliseconds(std::chrono::hours(24))));
    }

    MainQueue& queue_;
    const Clock& clock_;
    QTimer timer_;
    Doorbell* doorbell_ = nullptr;
};

QtMainLoop::QtMainLoop(MainQueue& queue, const Clock& clock)
    : queue_(queue),
      receiver_(std::make_unique<Receiver>(queue, clock)),
      doorbell_(std::make_shared<Doorbell>()) {
    doorbell_->receiver = receiver_.get();
    receiver_->setDoorbell(doorbell_.get());
    queue_.setWake([doorbell = doorbell_] { doorbell->ring(); });
    doorbell_->ring();  // for what came before
}

QtMainLoop::~QtMainLoop() {
    queue_.setWake({});
    doorbell_->unhook();
}
