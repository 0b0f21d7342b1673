#include "platform/ending_signals.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

#include "platform/descriptor.h"

namespace velmara {
namespace {

constexpr int kSignals[] = {SIGTERM, SIGINT, SIGHUP};

// Where the handler, which may do next to nothing, writes the number.
std::atomic<int> writingEnd = -1;

void handle(int signal) {
  const auto number = static_cast<unsigned char>(signal);
  // There is nobody to tell if it fails; the second signal ends the process.
  [[maybe_unused]] const ssize_t written = ::write(writingEnd, &number, 1);
}

}  // namespace

class EndingSignals::Pipe {
 public:
  explicit Pipe(const int (&ends)[2]) : read_(ends[0]), write_(ends[1]) {
    writingEnd = write_.get();
    QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] {
      unsigned char number = 0;
      if (::read(read_.get(), &number, 1) == 1) QCoreApplication::exit(128 + number);
    });
    struct sigaction action {};
    action.sa_handler = handle;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    ::sigemptyset(&action.sa_mask);
    for (const int signal : kSignals) {
      struct sigaction before {};
      ::sigaction(signal, nullptr, &before);
      if (before.sa_handler != SIG_IGN) ::sigaction(signal, &action, nullptr);
    }
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  ~Pipe() {
    for (const int signal : kSignals) {
      struct sigaction now {};
      ::sigaction(signal, nullptr, &now);
      if (now.sa_handler == handle) std::signal(signal, SIG_DFL);
    }
    writingEnd = -1;
  }

 private:
  const Descriptor read_;
  const Descriptor write_;
  QSocketNotifier notifier_{read_.get(), QSocketNotifier::Read};
};

EndingSignals::EndingSignals() {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) == 0) pipe_ = std::make_unique<Pipe>(ends);
}

EndingSignals::~EndingSignals() = default;

}  // namespace velmara
