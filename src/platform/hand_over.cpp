#include "platform/hand_over.h"

#include <QCryptographicHash>
#include <QFile>
#include <QSocketNotifier>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstring>
#include <fcntl.h>
#include <list>
#include <optional>
#include <string_view>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

#include "platform/descriptor.h"
#include "platform/log.h"

namespace velmara {
namespace {

// A message is this, an absolute path and a zero byte; the answer is one byte.
constexpr std::string_view kGreeting("velmara open 1\n");
constexpr std::size_t kMostBytes = kGreeting.size() + PATH_MAX;
constexpr char kTaken = 'y';
constexpr char kRefused = 'n';
// Whoever says nothing more gives his place to the next.
constexpr std::size_t kMostCallers = 8;

std::string messageOf(const std::string& photo) {
  return std::string(kGreeting) + photo + '\0';
}

// The path in a whole message; nothing if it is not well formed.
std::optional<std::string> photoIn(std::string_view message) {
  if (message.size() > kMostBytes || !message.starts_with(kGreeting)) return std::nullopt;
  message.remove_prefix(kGreeting.size());
  const bool isPath = message.starts_with('/') && message.find('\0') == message.size() - 1;
  return isPath ? std::optional(std::string(message.substr(0, message.size() - 1))) : std::nullopt;
}

sockaddr_un socketAddress(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  return address;
}

bool isOtherSideOurs(int socket) {
  ucred other{};
  socklen_t size = sizeof other;
  return ::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &other, &size) == 0 &&
         other.uid == ::geteuid();
}

timeval timeOf(Seconds seconds) {
  const double whole = std::floor(seconds.count());
  return {static_cast<time_t>(whole),
          static_cast<suseconds_t>((seconds.count() - whole) * 1'000'000.0)};
}

void note(const std::string& what) {
  logLine("hand over: " + what + ": " + std::strerror(errno));
}

// Makes the name free for a socket of ours, or says that it is not.
bool isNameFree(const std::string& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0) return errno == ENOENT;
  const bool isLeftOver = S_ISSOCK(status.st_mode) && status.st_uid == ::geteuid();
  errno = EEXIST;
  return isLeftOver && ::unlink(path.c_str()) == 0;
}

}  // namespace

std::string handOverAddress(const std::string& display) {
  const std::string folder = qgetenv("XDG_RUNTIME_DIR").toStdString();
  struct stat status {};
  if (!folder.starts_with('/') || ::lstat(folder.c_str(), &status) != 0) return {};
  const bool isPrivate = S_ISDIR(status.st_mode) && status.st_uid == ::geteuid() &&
                         (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
  // A display's name may hold anything, and a socket's may not be long.
  const QByteArray name =
      QCryptographicHash::hash(QByteArray::fromStdString(display), QCryptographicHash::Sha256)
          .toHex()
          .left(16);
  std::string address = folder + "/velmara-" + name.toStdString();
  return isPrivate && address.size() < sizeof(sockaddr_un::sun_path) ? address : std::string();
}

bool handOver(const std::string& address, const std::string& photo, Seconds patience) {
  const std::string message = messageOf(photo);
  if (address.empty() || !photoIn(message)) return false;
  const Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  const timeval time = timeOf(patience);
  ::setsockopt(socket.get(), SOL_SOCKET, SO_SNDTIMEO, &time, sizeof time);
  ::setsockopt(socket.get(), SOL_SOCKET, SO_RCVTIMEO, &time, sizeof time);
  const sockaddr_un name = socketAddress(address);
  if (::connect(socket.get(), reinterpret_cast<const sockaddr*>(&name), sizeof name) != 0 ||
      !isOtherSideOurs(socket.get()) ||
      ::send(socket.get(), message.data(), message.size(), MSG_NOSIGNAL) !=
          static_cast<ssize_t>(message.size())) {
    return false;
  }
  char answer = kRefused;
  if (::recv(socket.get(), &answer, 1, 0) == 1) return answer == kTaken;
  // Too late. From here on no answer can be sent, and without that the photo is not opened there;
  // one that was sent just before counts.
  ::shutdown(socket.get(), SHUT_RDWR);
  return ::recv(socket.get(), &answer, 1, MSG_DONTWAIT) == 1 && answer == kTaken;
}

class HandOverSeat::Listener {
 public:
  Listener(std::string address, Window window)
      : address_(std::move(address)),
        window_(std::move(window)),
        lock_(::open((address_ + ".lock").c_str(), O_CREAT | O_RDWR | O_CLOEXEC | O_NOFOLLOW,
                     S_IRUSR | S_IWUSR)),
        socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
    listen();
  }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;
  ~Listener() {
    if (isListening()) ::unlink(address_.c_str());
  }

  bool isListening() const { return notifier_ != nullptr; }

 private:
  // A notifier may not be deleted while it tells, and must not watch a descriptor that is closed.
  struct SilenceAndDelete {
    void operator()(QSocketNotifier* notifier) const {
      notifier->setEnabled(false);
      notifier->deleteLater();
    }
  };
  using Notifier = std::unique_ptr<QSocketNotifier, SilenceAndDelete>;

  struct Caller {
    explicit Caller(int fd) : socket(fd) {}
    Descriptor socket;
    std::string message;
    Notifier notifier;
  };

  void listen() {
    // Held until the process ends, however it ends: so a socket without it is a dead one.
    if (lock_.get() < 0) return note("no lock");
    if (::flock(lock_.get(), LOCK_EX | LOCK_NB) != 0) return note("another window listens");
    if (!isNameFree(address_)) return note(address_ + " is something else");
    const sockaddr_un name = socketAddress(address_);
    if (::bind(socket_.get(), reinterpret_cast<const sockaddr*>(&name), sizeof name) != 0 ||
        ::listen(socket_.get(), kMostCallers) != 0) {
      return note("cannot listen");
    }
    notifier_ = notify(socket_.get(), [this] { acceptCaller(); });
  }

  template <typename Action>
  static Notifier notify(int fd, Action action) {
    Notifier notifier(new QSocketNotifier(fd, QSocketNotifier::Read));
    QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(), action);
    return notifier;
  }

  void acceptCaller() {
    const int fd = ::accept4(socket_.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (fd < 0) return;
    const auto caller = callers_.emplace(callers_.end(), fd);
    if (!isOtherSideOurs(fd)) return void(callers_.erase(caller));
    caller->notifier = notify(fd, [this, caller] { hear(caller); });
    if (callers_.size() > kMostCallers) callers_.pop_front();
  }

  void hear(std::list<Caller>::iterator caller) {
    char bytes[kMostBytes];
    const ssize_t count = ::recv(caller->socket.get(), bytes, sizeof bytes, 0);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
    if (count > 0) caller->message.append(bytes, static_cast<std::size_t>(count));
    const std::string& message = caller->message;
    const bool isWhole = message.find('\0') != std::string::npos || message.size() > kMostBytes;
    if (count > 0 && !isWhole) return;
    const std::optional<std::string> photo = photoIn(message);
    const char answer = photo && window_.mayOpen() ? kTaken : kRefused;
    // Whoever cannot be told has given up, and opens the photo himself.
    const bool isTold = ::send(caller->socket.get(), &answer, 1, MSG_NOSIGNAL) == 1;
    callers_.erase(caller);
    if (isTold && answer == kTaken) window_.open(*photo);
  }

  const std::string address_;
  const Window window_;
  const Descriptor lock_;
  const Descriptor socket_;
  std::list<Caller> callers_;
  Notifier notifier_;
};

HandOverSeat::HandOverSeat(std::string address, Window window) {
  if (!address.empty()) {
    listener_ = std::make_unique<Listener>(std::move(address), std::move(window));
  }
}

HandOverSeat::~HandOverSeat() = default;

bool HandOverSeat::isListening() const {
  return listener_ != nullptr && listener_->isListening();
}

}  // namespace velmara
