#pragma once

#include <QSocketNotifier>
#include <QTimer>

#include <functional>
#include <memory>
#include <netinet/in.h>
#include <optional>
#include <sys/socket.h>
#include <vector>

#include "services/route_messages.h"

struct mnl_socket;

namespace velmara {

/// The default routes of both families, IPv4 first, of all tables; nothing if the kernel cannot be
/// asked. Asks over rtnetlink and waits for the answer, which takes well under a millisecond on a
/// machine with a desktop's few routes.
std::optional<std::vector<RouteFacts>> defaultRoutes();

/// The route that a packet to an address (AF_INET or AF_INET6) would take; nothing if the kernel
/// cannot be asked.
std::optional<RouteFacts> routeTo(const sockaddr_storage& address);

/// A socket of libmnl that closes itself.
using NetlinkSocket = std::unique_ptr<mnl_socket, int (*)(mnl_socket*)>;

/// Tells that interfaces, addresses or routes of this machine changed, as the kernel announces it
/// (rtnetlink multicast groups). No polling. What comes within a tenth of a second is told once.
/// Lives in the event loop of the main thread.
class RouteChanges {
 public:
  /// The handler may destroy this object.
  explicit RouteChanges(std::function<void()> changed);

  /// False if the kernel could not be asked to announce changes.
  bool isListening() const { return notifier_ != nullptr; }

 private:
  void takeMessages();

  std::function<void()> changed_;
  NetlinkSocket socket_;
  std::unique_ptr<QSocketNotifier> notifier_;
  QTimer gathering_;
};

}  // namespace velmara
