// Linked to a program, ends it once its first window is painted, and prints how many milliseconds
// after VELMARA_STARTED (nanoseconds of the monotonic clock) that was.
#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace {

void report() {
  const char* started = std::getenv("VELMARA_STARTED");
  if (started == nullptr) ::_exit(2);
  const std::chrono::nanoseconds now = std::chrono::steady_clock::now().time_since_epoch();
  std::printf("%.3f\n", static_cast<double>(now.count() - std::atoll(started)) / 1e6);
  std::fflush(stdout);
  ::_exit(0);
}

class FirstPaint : public QObject {
 public:
  bool eventFilter(QObject* watched, QEvent* event) override {
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (event->type() == QEvent::Paint && widget != nullptr && widget->isWindow()) {
      // After what is painted with it has gone to the screen.
      QTimer::singleShot(0, report);
    }
    return false;
  }
};

void watch() {
  static FirstPaint filter;
  QCoreApplication::instance()->installEventFilter(&filter);
}

}  // namespace

Q_COREAPP_STARTUP_FUNCTION(watch)
