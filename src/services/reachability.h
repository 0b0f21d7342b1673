#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <sys/socket.h>
#include <vector>

#include "platform/notification_center.h"
#include "services/netlink.h"
#include "services/reachability_flags.h"

namespace velmara {

/// The addresses of a host, found by waiting for it.
std::vector<sockaddr_storage> systemAddressesOf(const std::string& host);

/// What monitors work with; the defaults are the application's. The resolver is called on the
/// global queue.
struct ReachabilitySetup {
  NotificationCenter& center = defaultCenter();
  std::function<std::vector<sockaddr_storage>(const std::string& host)> resolver =
      systemAddressesOf;
};

/// Watches whether the machine has a route to the internet, to an address or to a host, and posts
/// "kNetworkReachabilityChangedNotification" with itself (a std::shared_ptr<Reachability>) as the
/// object when that changes. Every evaluation of the flags is logged in one line. Main thread.
class Reachability : public std::enable_shared_from_this<Reachability> {
 public:
  /// A monitor for a host. Its name is resolved in the background, again whenever the network
  /// changes; until it is, its flags cannot be read. Null for what cannot be a host's name.
  static std::shared_ptr<Reachability> reachabilityWithHostName(
      const std::string& name, const ReachabilitySetup& setup = {});

  /// A monitor for an IPv4 or IPv6 address; the port is of no interest. Null for another family or
  /// a length that does not fit. The all-zero address stands for the internet.
  static std::shared_ptr<Reachability> reachabilityWithAddress(const sockaddr& address,
                                                               socklen_t length,
                                                               const ReachabilitySetup& setup = {});

  /// A monitor for the internet: it looks at the default routes of both families.
  static std::shared_ptr<Reachability> reachabilityForInternetConnection(
      const ReachabilitySetup& setup = {});

  /// A monitor for the link-local network 169.254.0.0, with the local Wi-Fi rule.
  static std::shared_ptr<Reachability> reachabilityForLocalWiFi(
      const ReachabilitySetup& setup = {});

  Reachability(const Reachability&) = delete;
  Reachability& operator=(const Reachability&) = delete;
  ~Reachability() = default;

  /// Whether changes are now announced.
  bool startNotifier();
  void stopNotifier();

  /// Reads the flags now, logs them and decides by the monitor's rule; kNotReachable, without a
  /// log line, if they cannot be read.
  NetworkStatus currentReachabilityStatus();

  /// Reads the flags now; whether a connection must be made first.
  bool connectionRequired();

  /// The two rules; each logs the flags before it decides.
  NetworkStatus networkStatusForFlags(ReachabilityFlags flags);
  NetworkStatus localWiFiStatusForFlags(ReachabilityFlags flags);

  bool localWiFiRef = false;

 private:
  explicit Reachability(const ReachabilitySetup& setup) : setup_(setup) {}
  std::optional<ReachabilityFlags> readFlags() const;
  void resolve();
  void resolved(std::vector<sockaddr_storage> addresses);
  void networkChanged();
  void announceIfChanged();

  ReachabilitySetup setup_;
  std::string host_;                         ///< of a host monitor
  std::vector<sockaddr_storage> addresses_;  ///< what is watched; empty for the internet
  bool isInternet_ = false;
  bool isResolving_ = false;
  bool lookAgain_ = false;
  std::unique_ptr<RouteChanges> changes_;
  std::optional<ReachabilityFlags> lastFlags_;
};

}  // namespace velmara
