#include "services/reachability_flags.h"

namespace velmara {

using namespace reachability_flags;  // NOLINT(google-build-using-namespace): the bits

std::string reachabilityFlagLine(ReachabilityFlags flags, std::string_view rule) {
  const auto letter = [flags](ReachabilityFlags bit, char shown) {
    return (flags & bit) != 0 ? shown : '-';
  };
  std::string line = "Reachability Flag Status: ";
  line.append({letter(kIsDirect, 'W'), letter(kReachable, 'R'), ' '});
  line.append({letter(kTransientConnection, 't'), letter(kConnectionRequired, 'c'),
               letter(kConnectionOnTraffic, 'C'), letter(kInterventionRequired, 'i'),
               letter(kConnectionOnDemand, 'D'), letter(kIsLocalAddress, 'l')});
  return line.append(" ").append(rule).append("\n");
}

NetworkStatus statusByNetworkRule(ReachabilityFlags flags) {
  if ((flags & kReachable) == 0) return kNotReachable;
  if ((flags & kIsDirect) != 0) return kReachableViaWWAN;
  const bool connectsByItself = (flags & (kConnectionOnTraffic | kConnectionOnDemand)) != 0;
  if (connectsByItself && (flags & kInterventionRequired) == 0) return kReachableViaWiFi;
  return (flags & kConnectionRequired) == 0 ? kReachableViaWiFi : kNotReachable;
}

NetworkStatus statusByLocalWiFiRule(ReachabilityFlags flags) {
  constexpr ReachabilityFlags kBoth = kReachable | kIsDirect;
  return (flags & kBoth) == kBoth ? kReachableViaWiFi : kNotReachable;
}

ReachabilityFlags flagsOfRoute(const RouteFacts& route) {
  if (route.kind == RouteFacts::Kind::kNone || route.link == LinkState::kDown) return 0;
  ReachabilityFlags flags = kReachable;
  if (!route.hasGateway) flags |= kIsDirect;
  if (route.kind == RouteFacts::Kind::kLocal) flags |= kIsLocalAddress;
  if (route.link == LinkState::kDormant) flags |= kConnectionRequired;
  return flags;
}

ReachabilityFlags flagsOfBestRoute(std::span<const RouteFacts> routes) {
  const RouteFacts* best = nullptr;
  for (const RouteFacts& route : routes) {
    if (flagsOfRoute(route) == 0) continue;
    const bool better = best == nullptr ||
                        (route.link == LinkState::kUp && best->link == LinkState::kDormant) ||
                        (route.link == best->link && route.metric < best->metric);
    if (better) best = &route;
  }
  return best != nullptr ? flagsOfRoute(*best) : 0;
}

}  // namespace velmara
