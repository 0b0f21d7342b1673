#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace velmara {

using ReachabilityFlags = std::uint32_t;

/// The bits of the flag word.
namespace reachability_flags {
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

/// Whether an interface carries traffic.
enum class LinkState {
  kDown,     ///< switched off, or its cable is out
  kDormant,  ///< switched on, but it must dial or log in first
  kUp,
};

/// What the kernel says about one route.
struct RouteFacts {
  enum class Kind {
    kNone,    ///< there is none, or it refuses
    kRemote,  ///< to elsewhere
    kLocal,   ///< to this machine itself
  };
  Kind kind = Kind::kNone;
  bool hasGateway = false;
  LinkState link = LinkState::kDown;
  std::uint32_t metric = 0;  ///< the lower, the rather it is taken
};

/// Reachable over an interface that is up; direct without a gateway; local for the machine's own
/// address; with a connection required over an interface that is dormant.
ReachabilityFlags flagsOfRoute(const RouteFacts& route);

/// The flags of the route that traffic would take: among those over an interface that is up the one
/// of the lowest metric, the first of equal ones; those over dormant ones only if there is no
/// other.
ReachabilityFlags flagsOfBestRoute(std::span<const RouteFacts> routes);

}  // namespace velmara
