#include "services/netlink.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <functional>
#include <libmnl/libmnl.h>
#include <linux/if.h>
#include <linux/rtnetlink.h>
#include <map>
#include <memory>
#include <sys/time.h>
#include <utility>

namespace velmara {
namespace {

using Visit = std::function<void(const nlmsghdr&)>;

constexpr std::size_t kLargestAnswer = std::size_t{32} * 1024;  // of one message in a dump

NetlinkSocket openSocket(unsigned groups, int flags) {
  NetlinkSocket socket(mnl_socket_open2(NETLINK_ROUTE, SOCK_CLOEXEC | flags), mnl_socket_close);
  if (socket != nullptr && mnl_socket_bind(socket.get(), groups, MNL_SOCKET_AUTOPID) != 0) {
    socket.reset();
  }
  return socket;
}

// Asks one question over a socket of its own, so that no late answer to another can come between.
// 0, or the error that the kernel or the socket gave.
int ask(nlmsghdr& message, Visit visit) {
  const NetlinkSocket socket = openSocket(0, 0);
  if (socket == nullptr) return errno;
  // The kernel answers at once; this only keeps a fault from holding up the window.
  const timeval longest{.tv_sec = 1, .tv_usec = 0};
  ::setsockopt(mnl_socket_get_fd(socket.get()), SOL_SOCKET, SO_RCVTIMEO, &longest, sizeof(longest));
  constexpr unsigned kSequence = 1;
  message.nlmsg_seq = kSequence;
  if (mnl_socket_sendto(socket.get(), &message, message.nlmsg_len) < 0) return errno;

  const auto eachMessage = [](const nlmsghdr* header, void* data) {
    (*static_cast<Visit*>(data))(*header);
    return MNL_CB_OK;
  };
  std::vector<char> buffer(kLargestAnswer);
  const bool isDump = (message.nlmsg_flags & NLM_F_DUMP) == NLM_F_DUMP;
  for (;;) {
    const ssize_t count = mnl_socket_recvfrom(socket.get(), buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return errno;
    const int next = mnl_cb_run(buffer.data(), static_cast<std::size_t>(count), kSequence,
                                mnl_socket_get_portid(socket.get()), eachMessage, &visit);
    if (next < 0) return errno;
    if (next == MNL_CB_STOP || !isDump) return 0;
  }
}

// One request under construction.
struct Message {
  alignas(nlmsghdr) std::array<char, 512> bytes{};
  nlmsghdr* header = nullptr;

  Message(unsigned short type, unsigned short flags) : header(mnl_nlmsg_put_header(bytes.data())) {
    header->nlmsg_type = type;
    header->nlmsg_flags = static_cast<unsigned short>(NLM_F_REQUEST | flags);
  }
  template <typename Header>
  Header& payload() {
    return *static_cast<Header*>(mnl_nlmsg_put_extra_header(header, sizeof(Header)));
  }
};

// A dump that something changed during is not to be trusted; it is asked for again.
std::optional<Links> interfaces() {
  constexpr int kMostTries = 4;
  for (int attempt = 0; attempt < kMostTries; ++attempt) {
    Message message(RTM_GETLINK, NLM_F_DUMP);
    message.payload<ifinfomsg>().ifi_family = AF_UNSPEC;
    Links links;
    const int error = ask(*message.header, [&](const nlmsghdr& answer) { addLink(answer, links); });
    if (error == 0) return links;
    if (error != EINTR) return std::nullopt;
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::vector<RouteFacts>> defaultRoutes() {
  const std::optional<Links> links = interfaces();
  if (!links) return std::nullopt;
  std::vector<RouteFacts> routes;
  for (const int family : {AF_INET, AF_INET6}) {
    Message message(RTM_GETROUTE, NLM_F_DUMP);
    message.payload<rtmsg>().rtm_family = static_cast<unsigned char>(family);
    const int error = ask(*message.header, [&](const nlmsghdr& answer) {
      if (!isDefaultRoute(answer)) return;
      const std::vector<RouteFacts> facts = routesIn(answer, *links);
      routes.insert(routes.end(), facts.begin(), facts.end());
    });
    // A change during the dump announces itself by a message of its own, so what came is good
    // enough. A kernel without one family has the other.
    if (error != 0 && error != EINTR && error != EAFNOSUPPORT && error != EOPNOTSUPP) {
      return std::nullopt;
    }
  }
  return routes;
}

std::optional<RouteFacts> routeTo(const sockaddr_storage& address) {
  const std::optional<Links> links = interfaces();
  if (!links) return std::nullopt;
  Message message(RTM_GETROUTE, 0);
  auto& request = message.payload<rtmsg>();
  request.rtm_family = static_cast<unsigned char>(address.ss_family);
  if (address.ss_family == AF_INET) {
    sockaddr_in target{};
    std::memcpy(&target, &address, sizeof(target));
    request.rtm_dst_len = 32;
    mnl_attr_put(message.header, RTA_DST, sizeof(target.sin_addr), &target.sin_addr);
  } else {
    sockaddr_in6 target{};
    std::memcpy(&target, &address, sizeof(target));
    request.rtm_dst_len = 128;
    mnl_attr_put(message.header, RTA_DST, sizeof(target.sin6_addr), &target.sin6_addr);
    if (target.sin6_scope_id != 0) mnl_attr_put_u32(message.header, RTA_OIF, target.sin6_scope_id);
  }
  std::optional<RouteFacts> found;
  const int error = ask(*message.header, [&](const nlmsghdr& answer) {
    const std::vector<RouteFacts> facts = routesIn(answer, *links);
    if (!facts.empty()) found = facts.front();
  });
  // The kernel says by an error that there is no route.
  if (error == ENETUNREACH || error == EHOSTUNREACH || error == EACCES || error == EINVAL) {
    return RouteFacts{};
  }
  return error == 0 ? found : std::nullopt;
}

RouteChanges::RouteChanges(std::function<void()> changed)
    : changed_(std::move(changed)),
      socket_(openSocket(RTMGRP_LINK | RTMGRP_IPV4_IFADDR | RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_IFADDR |
                             RTMGRP_IPV6_ROUTE,
                         SOCK_NONBLOCK)) {
  constexpr std::chrono::milliseconds kGatherTime(100);
  gathering_.setSingleShot(true);
  gathering_.setInterval(kGatherTime);
  QObject::connect(&gathering_, &QTimer::timeout, [this] {
    const auto running = changed_;
    running();
  });
  if (socket_ == nullptr) return;
  notifier_ =
      std::make_unique<QSocketNotifier>(mnl_socket_get_fd(socket_.get()), QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { takeMessages(); });
}

// That something came is all there is to know: who listens looks at the whole anew. A bound keeps
// an endless stream from holding up the event loop; the kernel drops what does not fit its buffer
// and says so by an error, which is a change like any other.
void RouteChanges::takeMessages() {
  constexpr int kMostAtOnce = 256;
  std::array<char, 1> nothing{};
  bool came = false;
  for (int count = 0; count < kMostAtOnce; ++count) {
    const ssize_t got = mnl_socket_recvfrom(socket_.get(), nothing.data(), nothing.size());
    // Of a message that was cut off, as all are, the library says so by an error of its own.
    if (got < 0 && errno != ENOBUFS && errno != ENOSPC) break;
    came = true;
  }
  if (came && !gathering_.isActive()) gathering_.start();
}

}  // namespace velmara
