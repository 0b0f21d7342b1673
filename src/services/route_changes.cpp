#include "services/route_changes.h"

#include <array>
#include <cerrno>
#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace velmara {
namespace {

constexpr Seconds kGatherTime{0.1};

}  // namespace

RouteChanges::RouteChanges(Scheduler& timers, std::function<void()> changed)
    : timers_(timers),
      changed_(std::move(changed)),
      socket_(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE)) {
  sockaddr_nl address{};
  address.nl_family = AF_NETLINK;
  address.nl_groups =
      RTMGRP_LINK | RTMGRP_IPV4_IFADDR | RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_IFADDR | RTMGRP_IPV6_ROUTE;
  if (socket_ < 0 ||
      ::bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
    return;
  }
  notifier_ = std::make_unique<QSocketNotifier>(socket_, QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { takeMessages(); });
}

RouteChanges::~RouteChanges() {
  notifier_.reset();
  if (socket_ >= 0) ::close(socket_);
}

// That something came is all there is to know: who listens looks at the whole anew. A bound keeps
// an endless stream from holding up the event loop; the kernel drops what does not fit its buffer
// and says so by an error, which is a change like any other.
void RouteChanges::takeMessages() {
  constexpr int kMostAtOnce = 256;
  std::array<char, 1> nothing{};
  bool came = false;
  for (int count = 0; count < kMostAtOnce; ++count) {
    if (::recv(socket_, nothing.data(), nothing.size(), MSG_TRUNC) < 0 && errno != ENOBUFS) break;
    came = true;
  }
  if (!came || (gathering_ != nullptr && gathering_->isValid())) return;
  gathering_ = timers_.start(kGatherTime, false, [this] {
    const auto running = changed_;
    running();
  });
}

}  // namespace velmara
