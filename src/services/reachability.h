#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <vector>

#include "platform/notification_center.h"
#include "services/netlink.h"

namespace velmara {

/// A word of the bits below.
using ReachabilityFlags = std::uint32_t;

/// The bits of the flag word.
namespace reachability_flags {
/// kReachable, kConnectionRequired, kIsLocalAddress and kIsDirect are set here; the rules know the
/// others too.
inline constexpr ReachabilityFlags kTransientConnection = 0x1;
inline constexpr ReachabilityFlags kReachable = 0x2;
inline constexpr ReachabilityFlags kConnectionRequired = 0x4;
inline constexpr ReachabilityFlags kConnectionOnTraffic = 0x8;
inline constexpr ReachabilityFlags kInterventionRequired = 0x10;
inline constexpr ReachabilityFlags kConnectionOnDemand = 0x20;
inline constexpr ReachabilityFlags kIsLocalAddress = 0x10000;
inline constexpr ReachabilityFlags kIsDirect = 0x20000;
}  // namespace reachability_flags

/// What the flags come down to.
enum NetworkStatus {
  kNotReachable = 0,
  kReachableViaWiFi = 1,  ///< over any route with a gateway
  kReachableViaWWAN = 2,  ///< over a direct route: that bit stands for this status, on purpose
};

/// "Reachability Flag Status: WR tcCiDl RULE" with "-" for each bit that is clear, and a line end.
std::string reachabilityFlagLine(ReachabilityFlags flags, std::string_view rule);

/// The network rule, and the rule of a local Wi-Fi monitor. Neither logs.
NetworkStatus statusByNetworkRule(ReachabilityFlags flags);
NetworkStatus statusByLocalWiFiRule(ReachabilityFlags flags);

/// The flags of the route that traffic would take: among those over an interface that is up the one
/// of the lowest metric, the first of equal ones; those over dormant ones only if there is no
/// other. A route is direct without a gateway, local to the machine's own address, and requires a
/// connection over an interface that is dormant.
ReachabilityFlags flagsOfBestRoute(std::span<const RouteFacts> routes);

/// The addresses of a host, found by waiting for it.
std::vector<sockaddr_storage> systemAddressesOf(const std::string& host);

/// What monitors work with; the defaults are the application's. The resolver is called on the
/// global queue.
struct ReachabilitySetup {
  /// Where changes are posted, and who finds the addresses of a host; the latter may wait.
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
  /// Announces no more changes; may be called at any time.
  void stopNotifier();

  /// Reads the flags now, logs them and decides by the monitor's rule; kNotReachable, without a
  /// log line, if they cannot be read.
  NetworkStatus currentReachabilityStatus();

  /// Reads the flags now; whether a connection must be made first.
  bool connectionRequired();

  /// The two rules; each logs the flags before it decides.
  NetworkStatus networkStatusForFlags(ReachabilityFlags flags);
  NetworkStatus localWiFiStatusForFlags(ReachabilityFlags flags);

  /// Whether the local Wi-Fi rule decides; else the other.
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
